#pragma once
// Numbers, positions and looks as the game's line protocol writes them.

#include <optional>
#include <string>
#include <string_view>

#include "demo/world/WorldMap.h"

namespace demo::wire {

// Two base-95 digits, most significant first, each digit + 32 as a byte. `value` from 0 to 9024.
std::string Number(int value);
// Back again; none unless exactly two bytes from 32 to 126 are given.
std::optional<int> ParseNumber(std::string_view digits);

// Four bytes: file column and row.
std::string Position(const WorldMap& map, Cell cell);
// None unless the text begins with a position that lies on the map.
std::optional<Cell> ParsePosition(const WorldMap& map, std::string_view text);

// The frame code of a standing (stride 0) or walking (stride 1 to 3) character.
std::string Frame(int facing, int stride);

// Ten colour bytes made from what a player calls its colours: bytes that are no colour numbers (32 to 95) become the
// first one.
std::string Colours(std::string_view text);

// Drops what does not belong into a line: every byte outside 32 to 126.
std::string Printable(std::string_view text);
// Words of a marker line hold no spaces.
std::string BarsForSpaces(std::string_view text);

}  // namespace demo::wire
