#pragma once
// A map of the demo world, addressed by the square grid that the picture uses and stored by the file cells that the
// game uses.

#include <cstdint>
#include <vector>

namespace demo {

// A cell of the square grid.
struct Cell {
    int gx = 0;
    int gy = 0;

    friend bool operator==(Cell, Cell) = default;
};

// A cell of the skewed grid of map files and of the wire.
struct FileCell {
    int fx = 0;
    int fy = 0;

    friend bool operator==(FileCell, FileCell) = default;
};

struct CellContent {
    std::uint16_t floor = 0;
    std::uint16_t object = 0;
    std::uint8_t lowXWall = 0;  // on the edge toward lower gx
    std::uint8_t lowYWall = 0;  // on the edge toward lower gy
};

// Directions of movement and facing: 0 toward -gy, 1 toward -gx, 2 toward +gy, 3 toward +gx.
constexpr int directionCount = 4;
Cell Neighbour(Cell cell, int direction);

class WorldMap {
  public:
    // `fileWidth` columns of `fileHeight` cells each, at most 95 * 95 - 1 either way, so that a position fits the wire.
    WorldMap(int fileWidth, int fileHeight);

    [[nodiscard]] int FileWidth() const { return fileWidth; }
    [[nodiscard]] int FileHeight() const { return fileHeight; }
    [[nodiscard]] Cell ToGrid(FileCell cell) const;
    [[nodiscard]] FileCell ToFile(Cell cell) const;
    // The grid cell in the middle of the map.
    [[nodiscard]] Cell Centre() const;

    [[nodiscard]] bool Contains(Cell cell) const;
    // The content of a cell; null outside the map.
    [[nodiscard]] const CellContent* At(Cell cell) const;
    CellContent* At(Cell cell);
    // Column by column, fileHeight cells each.
    [[nodiscard]] const std::vector<CellContent>& Cells() const { return cells; }

    // The number of the wall between a cell and its neighbour; 0 where there is none or nothing stands for that edge.
    [[nodiscard]] int WallToward(Cell cell, int direction) const;

  private:
    [[nodiscard]] bool Contains(FileCell cell) const;

    int fileWidth;
    int fileHeight;
    std::vector<CellContent> cells;
};

}  // namespace demo
