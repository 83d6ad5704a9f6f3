#include "demo/server/Game.h"

#include <algorithm>
#include <cstdlib>

#include "demo/server/Crowd.h"
#include "demo/server/Wire.h"
#include "demo/world/Catalogue.h"

namespace demo {

namespace {

constexpr int hearingDistance = 10;
constexpr std::size_t descriptionLimit = 300;
// A line with thirteen ampersands accepts a login.
constexpr const char* loginAccepted = "&&&&&&&&&&&&&";

bool IsNear(Cell a, Cell b) {
    return std::max(std::abs(a.gx - b.gx), std::abs(a.gy - b.gy)) <= hearingDistance;
}

}  // namespace

bool Game::Allowance::Take() {
    if (left < 1.0) return false;
    left -= 1.0;
    return true;
}

void Game::Allowance::Refill(double seconds) {
    left = std::min(most, left + perSecond * seconds);
}

Game::Game(std::vector<Place> places, std::vector<Account> theAccounts, GameOptions theOptions, Outbox& theOutbox,
           ServerLog& theLog)
    : accounts(std::move(theAccounts)),
      options(theOptions),
      outbox(theOutbox),
      log(theLog),
      random(theOptions.seed),
      untilEvening(theOptions.daySeconds) {
    AddCrowd(places, options.crowd);
    for (Place& place : places) {
        scenes.push_back(std::make_unique<Scene>(std::move(place)));
        Scene& scene = *scenes.back();
        for (const Inhabitant& nature : scene.place.inhabitants) {
            auto wanderer = std::make_unique<Wanderer>();
            wanderer->nature = nature;
            Figure& figure = wanderer->figure;
            figure.name = nature.name;
            figure.description = nature.description;
            figure.colours = wire::Colours(nature.colours);
            figure.scene = &scene;
            figure.cell = scene.FreeCellNear(nature.home);
            scene.figures.push_back(&figure);
            wanderer->untilSaying = 4.0 + Random(10);
            wanderers.push_back(std::move(wanderer));
        }
    }
}

Game::~Game() = default;

void Game::Joined(ClientId client) {
    auto player = std::make_unique<Player>();
    player->id = client;
    // In one piece: a client takes only what arrives with the first bytes for the greeting.
    outbox.Send(client,
                "Welcome to the island of Tessaly!\n"
                "A small demonstration world: walk with the arrow keys, talk by typing.\n"
                "Type `help for what else can be done.\n"
                "END\n");
    players[client] = std::move(player);
}

void Game::Line(ClientId client, std::string_view line) {
    const auto found = players.find(client);
    if (found == players.end()) return;
    Player& player = *found->second;
    if (!player.words.Take() && !line.starts_with("m ")) {
        if (!player.toldToSlowDown) Tell(player, "(Not so fast, please.");
        player.toldToSlowDown = true;
        return;
    }
    if (player.stage != Stage::Ready) return LoginLine(player, line);
    if (options.logLines) log.Write("\"" + player.figure.name + "\" sends: " + wire::Printable(line));
    Command(player, line);
}

void Game::LoginLine(Player& player, std::string_view line) {
    if (player.stage == Stage::Connect) {
        if (line.starts_with("connect ")) Connect(player, line.substr(8));
        return;
    }
    if (player.stage == Stage::Description && line.starts_with("desc")) {
        player.figure.description =
            wire::Printable(line.substr(std::min<std::size_t>(5, line.size()))).substr(0, descriptionLimit);
        player.stage = Stage::Colours;
        return;
    }
    if (player.stage == Stage::Colours && line.starts_with("color ")) {
        // The colour code is followed by two digits and a space, which say nothing about looks.
        std::string_view colours = line.substr(6);
        colours.remove_suffix(std::min<std::size_t>(3, colours.size()));
        player.figure.colours = wire::Colours(colours);
        player.stage = Stage::Ready;
        player.untilTour = options.tourSeconds;
        EnterWorld(player);
    }
}

void Game::Connect(Player& player, std::string_view nameAndPassword) {
    const Account* account = FindAccount(accounts, nameAndPassword);
    if (!account) {
        const std::string_view name = nameAndPassword.substr(0, nameAndPassword.find(' '));
        log.Write("refused the login of \"" + wire::Printable(name).substr(0, 40) + "\"");
        Tell(player, "Invalid Name or password.");
        outbox.Close(player.id);
        return;
    }
    if (Player* other = FindPlayer(account->name)) {
        const ClientId otherId = other->id;
        Tell(*other, "([ You have logged in from somewhere else. ]");
        outbox.Close(otherId);
        Left(otherId);
    }
    player.figure.name = account->name;
    player.stage = Stage::Description;
    log.Write("accepted the login of \"" + account->name + "\"");
    Tell(player, loginAccepted);
}

void Game::EnterWorld(Player& player) {
    EnterTown(player, scenes.front()->place.start, true);
    TellNear(*player.figure.scene, player.figure.cell, "(> " + player.figure.name + " has arrived.", &player.figure);
}

void Game::EnterTown(Player& player, Cell cell, bool greet) {
    Scene& town = *scenes.front();
    // The palette goes first: a client colours the sprites of a map while it loads it.
    Tell(player, "]cc" + town.Palette());
    Tell(player, ";" + town.place.mapPath);
    Arrive(player, town, cell, greet);
}

void Game::Arrive(Player& player, Scene& scene, Cell cell, bool greet) {
    Figure& figure = player.figure;
    figure.cell = scene.FreeCellNear(cell);
    figure.stride = 0;
    TellAll(scene, scene.AppearLine(figure));
    figure.scene = &scene;
    scene.figures.push_back(&figure);
    log.Write("\"" + figure.name + "\" is now in " + scene.place.name);
    ShowScene(player, greet);
}

void Game::ShowScene(const Player& player, bool greet) {
    const Scene& scene = *player.figure.scene;
    for (const std::string& line : scene.ChangeLines())
        Tell(player, line);
    Tell(player, scene.ViewLine(player.figure.cell));
    for (const Figure* figure : scene.figures)
        Tell(player, scene.AppearLine(*figure));
    for (const Label& label : scene.place.labels)
        Tell(player, scene.LabelLine(label));
    if (greet) Tell(player, scene.place.greeting);
}

void Game::Depart(Player& player, const std::string& message) {
    Figure& figure = player.figure;
    if (!figure.scene) return;
    Scene& scene = *figure.scene;
    std::erase(scene.figures, &figure);
    figure.scene = nullptr;
    TellAll(scene, scene.LeaveLine(figure.cell));
    TellNear(scene, figure.cell, message, &figure);
}

void Game::TakeDoor(Player& player, const Door& door) {
    Scene* to = FindScene(door.to);
    Depart(player, "(> " + player.figure.name + " steps into the ring of runes and is gone.");
    log.Write("\"" + player.figure.name + "\" takes the door to " + door.to);
    if (to && !to->place.IsDream()) {
        EnterTown(player, door.arrival, true);
        return;
    }
    player.travelling = &door;
    if (to) Tell(player, "]cc" + to->Palette());
    Tell(player, "]q " + door.to + " 0 0");
}

void Game::Left(ClientId client) {
    const auto found = players.find(client);
    if (found == players.end()) return;
    const std::unique_ptr<Player> player = std::move(found->second);
    players.erase(found);
    Depart(*player, "(> " + player->figure.name + " has left.");
    if (!player->figure.name.empty()) log.Write("\"" + player->figure.name + "\" has gone");
}

void Game::ChangeTimeOfDay(Scene& scene) {
    if (scene.place.eveningPalette.empty()) return;
    scene.evening = !scene.evening;
    log.Write(scene.place.name + (scene.evening ? ": evening" : ": day"));
    for (const auto& [id, player] : players) {
        if (player->figure.scene != &scene) continue;
        Tell(*player, "]cc" + scene.Palette());
        // Only a map that is loaded again takes the new colours on.
        Tell(*player, ";" + scene.place.mapPath);
        ShowScene(*player, false);
        Tell(*player, scene.evening ? "(> Dusk falls over the island." : "(> A new day breaks.");
    }
}

bool Game::IsLoggedIn(ClientId client) const {
    const auto found = players.find(client);
    return found != players.end() && found->second->stage == Stage::Ready;
}

Scene* Game::FindScene(std::string_view name) {
    for (const auto& scene : scenes)
        if (scene->place.name == name) return scene.get();
    return nullptr;
}

const Figure* Game::FindCharacter(std::string_view name) const {
    for (const auto& [id, player] : players)
        if (player->figure.scene && SameName(player->figure.name, name)) return &player->figure;
    return nullptr;
}

Game::Player* Game::FindPlayer(std::string_view name) {
    for (const auto& [id, player] : players)
        if (player->stage != Stage::Connect && SameName(player->figure.name, name)) return player.get();
    return nullptr;
}

// Of a line of text the first byte, "(" or "[", only marks it as text; the second one gives it its colour.
void Game::Tell(const Player& player, const std::string& line) {
    outbox.Send(player.id, line + "\n");
}

void Game::TellAll(const Scene& scene, const std::string& line) {
    for (const auto& [id, player] : players)
        if (player->figure.scene == &scene) Tell(*player, line);
}

void Game::TellNear(const Scene& scene, Cell cell, const std::string& text, const Figure* except) {
    for (const auto& [id, player] : players)
        if (player->figure.scene == &scene && &player->figure != except && IsNear(player->figure.cell, cell))
            Tell(*player, text);
}

bool Game::AnyoneNear(const Scene& scene, Cell cell) const {
    return std::any_of(players.begin(), players.end(), [&](const auto& entry) {
        return entry.second->figure.scene == &scene && IsNear(entry.second->figure.cell, cell);
    });
}

}  // namespace demo
