#include "demo/storms/GameStorm.h"

#include "demo/server/Wire.h"

namespace demo {

namespace {

void Take(GameStorm& storm, GameManners::Step step, void (GameStorm::*polite)()) {
    if (step)
        step(storm);
    else
        (storm.*polite)();
}

// Names of dreams go on counting over all clients, because a client keeps what it has downloaded.
int lastDream = 0;

}  // namespace

void GameStorm::Connected(StormPeer& thePeer) {
    peer = &thePeer;
    Take(*this, manners.greet, &GameStorm::Greet);
}

void GameStorm::Line(StormPeer&, std::string_view line) {
    if (line.starts_with("connect ") && !inTown) return Take(*this, manners.accept, &GameStorm::Accept);
    if (line.starts_with("color ") && !inTown) {
        inTown = true;
        Take(*this, manners.enter, &GameStorm::Enter);
        if (manners.entered) manners.entered(*this);
        // Starts what goes on, even where nothing was sent.
        Peer().Pause(0.0);
        return;
    }
    if ((line == "vascodagama" || line == "goback") && manners.travelled) return manners.travelled(*this);
    if (line.starts_with("\"")) Say("(You: " + wire::Printable(line.substr(1)));
}

void GameStorm::Drained(StormPeer&) {
    if (inTown && manners.more) Peer().Send(manners.more(*this));
}

void GameStorm::Greet() {
    // In one piece: a client takes only what arrives with the first bytes for the greeting.
    Peer().Send("Welcome to the stormy island of Tessaly!\nEND\n");
}

void GameStorm::Accept() {
    Say("&&&&&&&&&&&&&");
}

void GameStorm::Enter() {
    Say("]cc" + town.place.palette);
    Say(";" + town.place.mapPath);
    Say("@" + wire::Position(town.now, town.place.start));
    Say("<" + Looks() + wire::Position(town.now, town.place.start) + wire::Frame(0, 0));
    for (const Label& label : town.place.labels)
        Say(town.LabelLine(label));
    Say("(> Welcome to the storm.");
}

std::string GameStorm::FreshDream() {
    return "storm" + std::to_string(++lastDream);
}

std::string GameStorm::RandomBytes(std::size_t count) {
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() & 0xFFU);
    return bytes;
}

std::string GameStorm::NearPosition() {
    const Cell start = town.place.start;
    return wire::Position(town.now, {start.gx + Random(24) - 12, start.gy + Random(24) - 12});
}

std::string GameStorm::AnyPosition() {
    return wire::Number(Random(95 * 95)) + wire::Number(Random(95 * 95));
}

std::string GameStorm::Looks() {
    std::string looks;
    for (int i = 0; i < 10; ++i)
        looks += static_cast<char>(' ' + Random(64));
    return looks;
}

}  // namespace demo
