#include "demo/world/MapPainter.h"

#include <algorithm>
#include <array>

#include "demo/world/Catalogue.h"

namespace demo {

namespace {

// The upper ground of a border, the lower one, and where the tiles of that border begin.
struct Border {
    Ground upper;
    Ground lower;
    int firstTile;
};

constexpr Border borders[] = {
    {Ground::Sand, Ground::Water, floors::SandOverWater},        {Ground::Grass, Ground::Sand, floors::GrassOverSand},
    {Ground::Cobble, Ground::Grass, floors::CobbleOverGrass},    {Ground::Dirt, Ground::Grass, floors::DirtOverGrass},
    {Ground::Wood, Ground::Grass, floors::UndergrowthOverGrass},
};

int PlainFloor(Ground ground, int x, int y) {
    const double pick = Scatter(x, y, 11);
    const auto variant = [&](int first, int count) { return first + static_cast<int>(pick * count); };
    switch (ground) {
        case Ground::Water:
            return variant(floors::Water, 3);
        case Ground::Sand:
            return variant(floors::Sand, 2);
        case Ground::Dirt:
            return variant(floors::Dirt, 2);
        case Ground::Cobble:
            return variant(floors::Cobble, 3);
        case Ground::Wood:
            return variant(floors::Undergrowth, 2);
        case Ground::Grass:
            break;
    }
    if (pick > 0.93) return floors::GrassFlowers;
    if (pick > 0.88) return floors::GrassClover;
    return variant(floors::Grass, 4);
}

// The floor of a cell with these grounds at (low x, low y), (high x, low y), (low x, high y) and (high x, high y).
int FloorOf(const std::array<Ground, 4>& corners, int x, int y) {
    for (const Border& border : borders) {
        const bool fits = std::all_of(corners.begin(), corners.end(),
                                      [&](Ground corner) { return corner == border.upper || corner == border.lower; });
        if (!fits) continue;
        int mask = 0;
        for (std::size_t i = 0; i < corners.size(); ++i)
            if (corners[i] == border.upper) mask |= 1 << i;
        if (mask != 0 && mask != floors::borderMasks - 1) return border.firstTile + mask;
    }
    // One ground, or three that meet: then the wettest rules, so that nobody walks on water.
    return PlainFloor(*std::min_element(corners.begin(), corners.end()), x, y);
}

}  // namespace

double Scatter(int x, int y, unsigned salt) {
    std::uint32_t h =
        static_cast<std::uint32_t>(x) * 0x9E3779B1U ^ static_cast<std::uint32_t>(y) * 0x85EBCA77U ^ salt * 0xC2B2AE3DU;
    h = (h ^ h >> 15) * 0x2C1B3C6DU;
    h = (h ^ h >> 12) * 0x297A2D39U;
    return (h ^ h >> 15) / 4294967296.0;
}

int MapPainter::FloorAt(int x, int y) const {
    const CellContent* content = map.At(At(x, y));
    return content ? content->floor : int{floors::Outside};
}

int MapPainter::ObjectAt(int x, int y) const {
    const CellContent* content = map.At(At(x, y));
    return content ? content->object : 0;
}

void MapPainter::Lay(const std::function<Ground(int x, int y)>& ground) {
    ForEach([&](int x, int y) {
        Floor(x, y, FloorOf({ground(x, y), ground(x + 1, y), ground(x, y + 1), ground(x + 1, y + 1)}, x, y));
    });
}

void MapPainter::Floor(int x, int y, int floor) {
    if (CellContent* content = map.At(At(x, y))) content->floor = static_cast<std::uint16_t>(floor);
}

void MapPainter::Floors(int x0, int y0, int x1, int y1, int floor, int variants) {
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x)
            Floor(x, y, floor + static_cast<int>(Scatter(x, y, 5) * variants));
}

void MapPainter::Object(int x, int y, int object) {
    if (CellContent* content = map.At(At(x, y))) content->object = static_cast<std::uint16_t>(object);
}

void MapPainter::Objects(int object, std::initializer_list<std::pair<int, int>> places) {
    for (const auto& [x, y] : places)
        Object(x, y, object);
}

void MapPainter::WallX(int x, int y, int wall) {
    if (CellContent* content = map.At(At(x, y))) content->lowXWall = static_cast<std::uint8_t>(wall);
}

void MapPainter::WallY(int x, int y, int wall) {
    if (CellContent* content = map.At(At(x, y))) content->lowYWall = static_cast<std::uint8_t>(wall);
}

void MapPainter::Walls(int x0, int y0, int x1, int y1, int wall, int window) {
    const auto panel = [&](int along) { return window != 0 && along % 3 == 1 ? window : wall; };
    for (int x = x0; x < x1; ++x) {
        WallY(x, y0, panel(x - x0));
        WallY(x, y1, panel(x - x0));
    }
    for (int y = y0; y < y1; ++y) {
        WallX(x0, y, panel(y - y0));
        WallX(x1, y, panel(y - y0));
    }
}

void MapPainter::ForEach(const std::function<void(int x, int y)>& visit) const {
    for (int fx = 0; fx < map.FileWidth(); ++fx)
        for (int fy = 0; fy < map.FileHeight(); ++fy) {
            const Cell cell = map.ToGrid({fx, fy});
            visit(cell.gx - middle.gx, cell.gy - middle.gy);
        }
}

}  // namespace demo
