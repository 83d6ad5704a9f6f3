#include "demo/world/WorldMap.h"

#include <algorithm>

namespace demo {

namespace {

constexpr int largestSide = 95 * 95 - 1;

// Division that rounds down, for positions below the map's corner.
int FloorHalf(int value) {
    return value >= 0 ? value / 2 : -((1 - value) / 2);
}

}  // namespace

Cell Neighbour(Cell cell, int direction) {
    switch (direction) {
        case 0:
            return {cell.gx, cell.gy - 1};
        case 1:
            return {cell.gx - 1, cell.gy};
        case 2:
            return {cell.gx, cell.gy + 1};
        default:
            return {cell.gx + 1, cell.gy};
    }
}

WorldMap::WorldMap(int wantedWidth, int wantedHeight)
    : fileWidth(std::clamp(wantedWidth, 1, largestSide)), fileHeight(std::clamp(wantedHeight, 1, largestSide)) {
    cells.resize(static_cast<std::size_t>(fileWidth) * static_cast<std::size_t>(fileHeight));
}

// Going down a file column, every even step leads along gx and every odd one along gy.
Cell WorldMap::ToGrid(FileCell cell) const {
    return {cell.fx + FloorHalf(cell.fy), 2 * fileHeight + FloorHalf(cell.fy + 1) - cell.fx};
}

FileCell WorldMap::ToFile(Cell cell) const {
    const int along = cell.gx - cell.gy + 2 * fileHeight;
    return {FloorHalf(along + 1), cell.gx + cell.gy - 2 * fileHeight};
}

Cell WorldMap::Centre() const {
    return ToGrid({fileWidth / 2, fileHeight / 2});
}

bool WorldMap::Contains(FileCell cell) const {
    return cell.fx >= 0 && cell.fy >= 0 && cell.fx < fileWidth && cell.fy < fileHeight;
}

bool WorldMap::Contains(Cell cell) const {
    return At(cell) != nullptr;
}

const CellContent* WorldMap::At(Cell cell) const {
    const FileCell file = ToFile(cell);
    if (!Contains(file)) return nullptr;
    return &cells[static_cast<std::size_t>(file.fx) * static_cast<std::size_t>(fileHeight) +
                  static_cast<std::size_t>(file.fy)];
}

CellContent* WorldMap::At(Cell cell) {
    return const_cast<CellContent*>(static_cast<const WorldMap*>(this)->At(cell));
}

int WorldMap::WallToward(Cell cell, int direction) const {
    // A wall belongs to the cell on its higher side.
    const CellContent* owner = At(direction < 2 ? cell : Neighbour(cell, direction));
    if (!owner) return 0;
    return direction == 0 || direction == 2 ? owner->lowYWall : owner->lowXWall;
}

}  // namespace demo
