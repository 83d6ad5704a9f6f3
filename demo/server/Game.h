#pragma once
// The game itself, without sockets: lines of clients in, lines for clients out.

#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "demo/server/Accounts.h"
#include "demo/server/Scene.h"
#include "demo/server/ServerLog.h"

namespace demo {

using ClientId = std::uint64_t;

// Where the game's words to a client go. Neither call may come back into the game.
class Outbox {
  public:
    virtual ~Outbox() = default;
    virtual void Send(ClientId client, std::string bytes) = 0;
    // Ends the connection once everything sent has left.
    virtual void Close(ClientId client) = 0;
};

struct GameOptions {
    bool still = false;         // nothing happens by itself: no wandering, no changes, no change of day
    bool logLines = false;      // what players send stands in the log, once they are logged in
    double daySeconds = 240.0;  // from day to evening and back
    unsigned seed = 1;
    int crowd = 0;             // more inhabitants for every place, around its start
    double tourSeconds = 0.0;  // how often a player is sent on to the next dream; 0: never
};

// One thread. Any line from any client is answered or ignored, never fatal.
class Game {
  public:
    Game(std::vector<Place> places, std::vector<Account> accounts, GameOptions options, Outbox& outbox, ServerLog& log);
    ~Game();
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    // A client has connected: it is greeted.
    void Joined(ClientId client);
    // A whole line from it, without the line feed.
    void Line(ClientId client, std::string_view line);
    // It has gone; others see it leave.
    void Left(ClientId client);
    // Lets time pass: inhabitants walk and talk, things change.
    void Tick(double seconds);

    [[nodiscard]] bool IsLoggedIn(ClientId client) const;
    // The scene of that name, null when there is none (tests and tools).
    [[nodiscard]] Scene* FindScene(std::string_view name);
    // The character of a logged-in player, null when nobody of that name is in the world.
    [[nodiscard]] const Figure* FindCharacter(std::string_view name) const;

  private:
    enum class Stage { Connect, Description, Colours, Ready };

    // What a client may still do before it is asked to slow down; refills with time.
    struct Allowance {
        double left;
        double most;
        double perSecond;

        bool Take();
        void Refill(double seconds);
    };

    struct Player {
        ClientId id = 0;
        Stage stage = Stage::Connect;
        Figure figure;
        const Door* travelling = nullptr;  // on the way into a dream, until the client says how that went
        Allowance moves{12, 12, 9};
        Allowance words{30, 30, 10};
        bool toldToSlowDown = false;
        double untilTour = 0.0;
        std::size_t nextStop = 0;  // of the tour
    };

    struct Wanderer {
        Inhabitant nature;
        Figure figure;
        double untilStep = 1.0;
        double untilSaying = 5.0;
        std::size_t nextSaying = 0;
    };

    // Login (Game.cpp)
    void LoginLine(Player& player, std::string_view line);
    void Connect(Player& player, std::string_view nameAndPassword);
    void EnterWorld(Player& player);

    // Coming and going (Game.cpp)
    void EnterTown(Player& player, Cell cell, bool greet);
    void Arrive(Player& player, Scene& scene, Cell cell, bool greet);
    void ShowScene(const Player& player, bool greet);
    void Depart(Player& player, const std::string& message);
    void TakeDoor(Player& player, const Door& door);
    void ChangeTimeOfDay(Scene& scene);

    // What players ask for (GameCommands.cpp)
    void Command(Player& player, std::string_view line);
    void TravelAnswer(Player& player, bool arrived);
    void Move(Player& player, int direction);
    void Turn(Player& player, int quarter);
    void Look(const Player& player, std::string_view position);
    void Say(Player& player, std::string_view text);
    void Emote(Player& player, std::string_view text);
    void Whisper(Player& player, std::string_view nameAndText);
    void Who(const Player& player);
    void Help(const Player& player);
    [[nodiscard]] std::string Describe(const Scene& scene, Cell cell, const Figure& seer) const;

    // What happens by itself (GameLife.cpp)
    void Step(Figure& figure, int direction);
    void Wander(Wanderer& wanderer, double seconds);
    void HearSpeech(const Player& speaker, std::string_view text);
    void ChangeGround(Scene& scene);
    int Random(int below);
    void Tour(Player& player, double seconds);  // Crowd.cpp

    // Telling (Game.cpp)
    void Tell(const Player& player, const std::string& line);
    void TellAll(const Scene& scene, const std::string& line);
    void TellNear(const Scene& scene, Cell cell, const std::string& text, const Figure* except);
    [[nodiscard]] bool AnyoneNear(const Scene& scene, Cell cell) const;
    Player* FindPlayer(std::string_view name);
    [[nodiscard]] bool IsInWorld(const Player& player) const { return player.figure.scene != nullptr; }

    std::vector<std::unique_ptr<Scene>> scenes;
    std::vector<std::unique_ptr<Wanderer>> wanderers;
    std::vector<Account> accounts;
    GameOptions options;
    Outbox& outbox;
    ServerLog& log;
    std::map<ClientId, std::unique_ptr<Player>> players;
    std::mt19937 random;
    double untilEvening;
    double untilGroundChange = 6.0;
};

}  // namespace demo
