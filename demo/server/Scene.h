#pragma once
// One place as it is now: who stands where, and what has changed since its map was drawn.

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "demo/world/Place.h"

namespace demo {

struct Scene;

// Somebody who can be seen: a player's character or an inhabitant.
struct Figure {
    std::string name;
    std::string description;
    std::string colours;     // ten bytes, see Inhabitant
    Scene* scene = nullptr;  // null while on the way between places
    Cell cell;
    int facing = 2;
    int stride = 0;
};

// At most one figure stands on a cell, because clients know figures by their cells alone.
struct Scene {
    explicit Scene(Place thePlace) : place(std::move(thePlace)), now(place.map) {}

    Place place;
    WorldMap now;
    bool evening = false;
    std::vector<Figure*> figures;

    [[nodiscard]] Figure* FigureAt(Cell cell) const;
    [[nodiscard]] bool IsFree(Cell cell) const;
    // Whether a figure can go from `cell` in `direction`: no wall between, ground to stand on, nobody there.
    [[nodiscard]] bool CanStep(Cell cell, int direction) const;
    // The nearest cell where somebody can stand; `wanted` itself when there is none.
    [[nodiscard]] Cell FreeCellNear(Cell wanted) const;
    [[nodiscard]] const Door* DoorAt(Cell cell) const;
    [[nodiscard]] const Label* LabelAt(Cell cell) const;
    [[nodiscard]] const std::string& Palette() const { return evening ? place.eveningPalette : place.palette; }

    // Lines of the protocol, without their line feeds.
    [[nodiscard]] std::string AppearLine(const Figure& figure) const;
    [[nodiscard]] std::string MoveLine(const Figure& figure, Cell from) const;
    [[nodiscard]] std::string LeaveLine(Cell cell) const;
    [[nodiscard]] std::string ViewLine(Cell cell) const;
    [[nodiscard]] std::string FloorLine(Cell cell) const;
    [[nodiscard]] std::string ObjectLine(Cell cell) const;
    [[nodiscard]] std::string LabelLine(const Label& label) const;
    // Floors and objects that differ from the map that clients load.
    [[nodiscard]] std::vector<std::string> ChangeLines() const;
};

}  // namespace demo
