#pragma once
// The ways in which a server can misbehave, by name.

#include <string_view>
#include <vector>

#include "demo/storms/FileStorm.h"
#include "demo/storms/GameStorm.h"

namespace demo {

struct Misbehaviour {
    std::string_view name;
    std::string_view text;  // what it does, in one line
    GameManners game;
    FileManners files;
};

// All of them, related ones together.
const std::vector<Misbehaviour>& Misbehaviours();
// Null for a name that there is not.
const Misbehaviour* FindMisbehaviour(std::string_view name);

// The parts of the list.
std::vector<Misbehaviour> ConnectionModes();  // pace, silence and ends of connections
std::vector<Misbehaviour> LineModes();        // what the game server says
std::vector<Misbehaviour> FloodModes();       // and how much of it
std::vector<Misbehaviour> DreamModes();       // dream orders and the file server's answers

// Steps that several modes share: an order of a dream that the client does not hold, at once or after a second.
void OrderFreshDream(GameStorm& storm);
void OrderFreshDreamLater(GameStorm& storm);

}  // namespace demo
