#pragma once
// Writes map files.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace demo {

// A map in the file's own coordinates: `width` columns of `height` cells, the cell (fx, fy) at fx * height + fy of
// every plane.
struct MapDrawing {
    MapDrawing(int fileWidth, int fileHeight);

    [[nodiscard]] std::size_t At(int fx, int fy) const {
        return static_cast<std::size_t>(fx) * static_cast<std::size_t>(height) + static_cast<std::size_t>(fy);
    }

    int width;
    int height;
    std::vector<std::uint16_t> floors;  // all 0 at first, as are the others
    std::vector<std::uint16_t> objects;
    std::vector<std::uint8_t> lowXWalls;
    std::vector<std::uint8_t> lowYWalls;
};

std::string WriteMap(const MapDrawing& drawing);
// The three planes that follow the header.
std::string MapBody(const MapDrawing& drawing);

}  // namespace demo
