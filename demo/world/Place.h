#pragma once
// The places of the demo world: maps with their doors, markers and inhabitants.

#include <string>
#include <vector>

#include "demo/world/WorldMap.h"

namespace demo {

// Stepping onto `cell` leads to `arrival` in the place named `to`.
struct Door {
    Cell cell;
    std::string to;
    Cell arrival;
};

// A labelled pillar; neither text holds a space on the wire, where a vertical bar stands for one.
struct Label {
    Cell cell;
    std::string label;
    std::string subLabel;
};

// A character that the server walks about.
struct Inhabitant {
    std::string name;
    std::string description;
    std::string colours;  // ten bytes, each a colour number + 32
    Cell home;
    int range = 0;  // cells that it strays from home
    std::vector<std::string> sayings;
};

struct Place {
    std::string name;     // of a dream: as the file server knows it
    std::string mapPath;  // in the installation, backslashes; empty for a dream, which is downloaded
    std::string palette;  // file name in patches\default
    std::string greeting;
    WorldMap map;
    Cell start;
    std::vector<Door> doors;
    std::vector<Label> labels;
    std::vector<Inhabitant> inhabitants;
    std::vector<Cell> sundials;  // stepping on one changes the time of day; only where `eveningPalette` is set
    std::string eveningPalette;
    // Cells whose floor or object the server changes now and then.
    std::vector<Cell> livingGround;

    [[nodiscard]] bool IsDream() const { return mapPath.empty(); }
};

constexpr const char* townName = "town";
constexpr const char* tideGardenName = "tidegarden";
constexpr const char* starLibraryName = "starlibrary";
// A dream that a door leads to although nobody keeps its archive any more.
constexpr const char* fadedDreamName = "fadeddream";

// The town first.
std::vector<Place> MakePlaces();

}  // namespace demo
