#pragma once
// Draws a place's map in coordinates around its middle.

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <utility>

#include "demo/world/WorldMap.h"

namespace demo {

// What the ground is made of at a corner of cells.
enum class Ground { Water, Sand, Grass, Dirt, Cobble, Wood };

// x runs along gx and y along gy, both 0 in the middle of the map; positions outside the map are ignored.
class MapPainter {
  public:
    explicit MapPainter(WorldMap& toPaint) : map(toPaint), middle(toPaint.Centre()) {}

    [[nodiscard]] Cell At(int x, int y) const { return {middle.gx + x, middle.gy + y}; }
    [[nodiscard]] int FloorAt(int x, int y) const;
    [[nodiscard]] int ObjectAt(int x, int y) const;

    // Lays every cell's floor by the ground at its four corners, with borders where two grounds meet. `ground` is asked
    // for the corner at low x and low y of the cell (x, y).
    void Lay(const std::function<Ground(int x, int y)>& ground);
    void Floor(int x, int y, int floor);
    // Cells from (x0, y0) up to, not including, (x1, y1); the floor is one of `variants` numbers from `floor` on.
    void Floors(int x0, int y0, int x1, int y1, int floor, int variants = 1);
    void Object(int x, int y, int object);
    void Objects(int object, std::initializer_list<std::pair<int, int>> places);
    // The edge of the cell toward lower x or lower y.
    void WallX(int x, int y, int wall);
    void WallY(int x, int y, int wall);
    // Walls around the cells from (x0, y0) up to (x1, y1); every third panel is `window` when one is given.
    void Walls(int x0, int y0, int x1, int y1, int wall, int window = 0);
    // Calls for every cell of the map.
    void ForEach(const std::function<void(int x, int y)>& visit) const;

  private:
    WorldMap& map;
    Cell middle;
};

// The same number for the same place every time, spread over 0 up to, not including, 1.
double Scatter(int x, int y, unsigned salt);

}  // namespace demo
