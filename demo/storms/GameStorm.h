#pragma once
// The game server's side of a misbehaving server: a polite session with the town, in which single steps are replaced.

#include <functional>
#include <random>
#include <string>
#include <string_view>

#include "demo/server/Scene.h"
#include "demo/storms/StormPeer.h"

namespace demo {

class GameStorm;

// The steps of a session. A mode replaces those at which it misbehaves.
struct GameManners {
    using Step = void (*)(GameStorm&);

    Step greet = nullptr;      // the client has connected; null: the greeting
    Step accept = nullptr;     // it has sent its name; null: the acknowledgement, whoever it is
    Step enter = nullptr;      // it has sent its looks; null: the town, whose last line is the greeting of the place
    Step entered = nullptr;    // the town has been sent
    Step travelled = nullptr;  // it has answered a dream order; null: nothing
    // More bytes for the client that has taken everything so far; null or empty: nothing.
    std::string (*more)(GameStorm&) = nullptr;
};

class GameStorm : public Storm {
  public:
    GameStorm(const Scene& theTown, const GameManners& theManners) : town(theTown), manners(theManners) {}

    void Connected(StormPeer& peer) override;
    void Line(StormPeer& peer, std::string_view line) override;
    void Drained(StormPeer& peer) override;

    // The polite steps.
    void Greet();
    void Accept();
    void Enter();

    void Say(const std::string& line) { Peer().Send(line + "\n"); }
    void OrderDream(const std::string& name) { Say("]q " + name + " 0 0"); }
    // A name that no order had before, so that the client holds no copy of that dream.
    std::string FreshDream();
    [[nodiscard]] StormPeer& Peer() { return *peer; }
    [[nodiscard]] const Scene& Town() const { return town; }

    // Material for lines.
    int Random(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); }
    std::string RandomBytes(std::size_t count);
    // Positions near the start of the town, on its map and anywhere that digits reach.
    std::string NearPosition();
    std::string AnyPosition();
    std::string Looks();
    // A turn of something that goes on, from 0.
    int turn = 0;

  private:
    const Scene& town;
    const GameManners& manners;
    StormPeer* peer = nullptr;
    std::mt19937 random{1};
    bool inTown = false;
};

// Lines of one kind until there are some 64 KiB, each ended with a line feed.
template <typename Line>
std::string Flood(Line line) {
    constexpr std::size_t pieceBytes = 64U << 10;
    std::string bytes;
    while (bytes.size() < pieceBytes)
        (bytes += line()) += '\n';
    return bytes;
}

}  // namespace demo
