#include "demo/art/FloorArt.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "demo/world/Catalogue.h"
#include "demo/world/MapPainter.h"

namespace demo {

namespace {

constexpr int side = 128;
using Paint = std::function<Spot(double u, double v)>;

Canvas Square(const Paint& paint) {
    return {side, side, paint};
}

// 1 in the middle of a tile and 0 at its edges, where it must fit every neighbour.
double Inside(double u, double v) {
    return Smooth(0.0, 0.25, std::min({u, v, 1.0 - u, 1.0 - v}));
}

// A short curved stroke that gets thinner and lighter toward its end.
void Blade(Canvas& canvas, double x, double y, double angle, double length, Shade shade, double share) {
    for (double t = 0.0; t < 1.0; t += 0.7 / length) {
        const double bend = angle + 0.5 * t;
        const auto px = static_cast<int>(std::lround(x + std::cos(bend) * length * t));
        const auto py = static_cast<int>(std::lround(y + std::sin(bend) * length * t));
        canvas.Blend(px, py, shade * (0.85 + 0.3 * t), share);
    }
}

void Disc(Canvas& canvas, double x, double y, double radius, Shade shade, double share = 1.0) {
    const int reach = static_cast<int>(radius) + 1;
    for (int dy = -reach; dy <= reach; ++dy)
        for (int dx = -reach; dx <= reach; ++dx) {
            const double cover = std::clamp(radius + 0.5 - std::hypot(dx, dy), 0.0, 1.0);
            if (cover > 0.0) canvas.Blend(static_cast<int>(x) + dx, static_cast<int>(y) + dy, shade, cover * share);
        }
}

Canvas Grass(unsigned variant) {
    Canvas canvas = Square([&](double u, double v) {
        const double common = Clouds(u, v, 4, 4, 21);
        const double own = Clouds(u, v, 3, 4, 31 + variant * 7);
        const double light = std::lerp(common, own, Inside(u, v) * 0.8);
        return Spot{Mix(Hex(0x2F5B22), Hex(0x6A9A3B), Smooth(0.2, 0.85, light))};
    });
    for (int i = 0; i < 520; ++i) {
        const double pick = Scatter(i, 2, variant);
        const Shade shade = pick < 0.45 ? Hex(0x3C6E28) : pick < 0.85 ? Hex(0x7DB043) : Hex(0xA8C95C);
        Blade(canvas, Scatter(i, 0, variant) * side, Scatter(i, 1, variant) * side,
              3.9 + 0.9 * (Scatter(i, 3, variant) - 0.5), 4.0 + 5.0 * Scatter(i, 4, variant), shade, 0.55);
    }
    return canvas;
}

void Flower(Canvas& canvas, double x, double y, Shade petal, Shade heart) {
    Disc(canvas, x + 1.5, y + 2.0, 3.4, Hex(0x274A1C), 0.5);
    for (int k = 0; k < 5; ++k) {
        const double angle = k * 2.0 * std::numbers::pi / 5.0 + x;
        Disc(canvas, x + 2.4 * std::cos(angle), y + 2.4 * std::sin(angle), 1.4, petal * (0.9 + 0.05 * k));
    }
    Disc(canvas, x, y, 1.1, heart);
}

Canvas GrassFlowers() {
    Canvas canvas = Grass(2);
    for (int i = 0; i < 11; ++i) {
        const bool daisy = Scatter(i, 7, 1) < 0.55;
        Flower(canvas, 10 + 108 * Scatter(i, 5, 1), 10 + 108 * Scatter(i, 6, 1), daisy ? Hex(0xF4F1E4) : Hex(0xF2CF3A),
               daisy ? Hex(0xE3A72B) : Hex(0xB77A1B));
    }
    return canvas;
}

Canvas GrassClover() {
    Canvas canvas = Grass(3);
    for (int i = 0; i < 26; ++i) {
        const double x = 8 + 112 * Scatter(i, 5, 9);
        const double y = 8 + 112 * Scatter(i, 6, 9);
        for (int k = 0; k < 3; ++k)
            Disc(canvas, x + 2.2 * std::cos(k * 2.1), y + 2.2 * std::sin(k * 2.1), 1.9,
                 Mix(Hex(0x2C6B35), Hex(0x4C9150), Scatter(i, k, 3)));
    }
    for (int i = 0; i < 5; ++i)
        Disc(canvas, 12 + 104 * Scatter(i, 1, 10), 12 + 104 * Scatter(i, 2, 10), 2.4, Hex(0xD98FB4));
    return canvas;
}

Canvas Meadow() {
    Canvas canvas =
        Square([](double u, double v) { return Spot{Mix(Hex(0x5D7A2B), Hex(0xA39A45), Clouds(u, v, 4, 4, 77))}; });
    for (int i = 0; i < 500; ++i)
        Blade(canvas, Scatter(i, 0, 70) * side, Scatter(i, 1, 70) * side, 4.2 + 0.8 * (Scatter(i, 3, 70) - 0.5),
              8.0 + 8.0 * Scatter(i, 4, 70), Mix(Hex(0x6F8A30), Hex(0xD8C36A), Scatter(i, 2, 70)), 0.6);
    return canvas;
}

Canvas Undergrowth(unsigned variant) {
    Canvas canvas = Square([&](double u, double v) {
        const double light = std::lerp(Clouds(u, v, 4, 4, 51), Clouds(u, v, 4, 4, 61 + variant), 0.8 * Inside(u, v));
        return Spot{Mix(Hex(0x27331A), Hex(0x4F4A27), Smooth(0.2, 0.8, light))};
    });
    for (int i = 0; i < 130; ++i) {
        const double pick = Scatter(i, 2, 80 + variant);
        const Shade leaf = pick < 0.3   ? Hex(0x8A5A26)
                           : pick < 0.5 ? Hex(0xA9762E)
                           : pick < 0.8 ? Hex(0x3F6126)
                                        : Hex(0x587A30);
        const double x = Scatter(i, 0, 80 + variant) * side;
        const double y = Scatter(i, 1, 80 + variant) * side;
        Disc(canvas, x + 1, y + 1, 2.4, Hex(0x1B2412), 0.5);
        Disc(canvas, x, y, 1.2 + 1.4 * Scatter(i, 3, 80), leaf, 0.9);
    }
    return canvas;
}

// Round stones with light from low x and low y.
Spot Cobbles(double u, double v, int count, unsigned salt, Shade dark, Shade light, Shade gap) {
    const Pebble stone = Pebbles(u, v, count, salt);
    const Pebble lit = Pebbles(u + 0.012, v + 0.012, count, salt);
    const double slope = std::clamp((lit.edge - stone.edge) * 2.2, -0.22, 0.22);
    const double grain = Clouds(u, v, 24, 2, salt + 9) - 0.5;
    const Shade face =
        Mix(dark, light, stone.pick) * (0.86 + slope + 0.22 * grain + 0.14 * Smooth(0.05, 0.5, stone.edge));
    return {Mix(gap * (0.8 + 0.4 * grain), face, Smooth(0.04, 0.16, stone.edge))};
}

Canvas Cobble(unsigned variant) {
    return Square([&](double u, double v) {
        // Three wear patterns over the same stones, so that edges meet.
        const Spot base = Cobbles(u, v, 7, 101, Hex(0x77706A), Hex(0xB3A795), Hex(0x4A4A36));
        const double moss = Smooth(0.56, 0.75, Clouds(u, v, 3, 4, 140 + variant)) * Inside(u, v);
        return Spot{Mix(base.shade * (0.96 + 0.04 * variant), Hex(0x566B33), variant == 1 ? 0.5 * moss : 0.22 * moss)};
    });
}

Canvas Dirt(unsigned variant) {
    Canvas canvas = Square([&](double u, double v) {
        const double light = std::lerp(Clouds(u, v, 4, 5, 161), Clouds(u, v, 5, 5, 170 + variant), 0.7 * Inside(u, v));
        return Spot{Mix(Hex(0x6E5233), Hex(0xA98554), Smooth(0.2, 0.8, light))};
    });
    for (int i = 0; i < 26; ++i) {
        const double x = Scatter(i, 0, 90 + variant) * side;
        const double y = Scatter(i, 1, 90 + variant) * side;
        const double radius = 0.8 + 1.6 * Scatter(i, 2, 90);
        Disc(canvas, x + 1, y + 1, radius, Hex(0x4B3721), 0.7);
        Disc(canvas, x, y, radius, Mix(Hex(0x8C7A66), Hex(0xC0AF93), Scatter(i, 3, 90)));
    }
    return canvas;
}

Canvas Sand(unsigned variant) {
    return Square([&](double u, double v) {
        const double dunes = std::lerp(Clouds(u, v, 3, 3, 181), Clouds(u, v, 3, 3, 190 + variant), 0.7 * Inside(u, v));
        const double ripple = 0.5 + 0.5 * std::sin(2.0 * std::numbers::pi * (5.0 * v + 2.0 * u + 1.2 * dunes));
        const double grain = Noise(u, v, 64, 195);
        return Spot{Mix(Hex(0xC9AC74), Hex(0xEBD9A6), 0.55 * dunes + 0.2 * ripple + 0.25 * grain)};
    });
}

Spot WaterAt(double u, double v, unsigned variant) {
    const double bend = 0.05 * (Noise(u, v, 4, 205) - 0.5);
    const Pebble common = Pebbles(u + bend, v - bend, 5, 211);
    const Pebble own = Pebbles(u + bend, v - bend, 5, 220 + variant * 5);
    const double edge = std::lerp(common.edge, own.edge, Inside(u, v));
    const double deep = Clouds(u, v, 2, 3, 231);
    const Shade water = Mix(Hex(0x1E5F7E), Hex(0x2F8AA0), deep);
    return {Mix(water, Hex(0x9BDCDD), 0.62 * (1.0 - Smooth(0.0, 0.22, edge)))};
}

Canvas Water(unsigned variant) {
    return Square([&](double u, double v) { return WaterAt(u, v, variant); });
}

Canvas Lilies() {
    Canvas canvas = Water(1);
    const struct {
        double x, y, radius;
    } pads[] = {{36, 40, 15}, {78, 60, 18}, {44, 92, 13}, {96, 100, 11}, {92, 24, 10}};
    for (const auto& pad : pads) {
        Disc(canvas, pad.x + 3, pad.y + 4, pad.radius, Hex(0x123F55), 0.6);
        for (double r = pad.radius; r > 0.0; r -= 1.0)
            Disc(canvas, pad.x, pad.y, r, Mix(Hex(0x6BAA4A), Hex(0x2F7036), r / pad.radius), 1.0);
        for (int k = 0; k < 9; ++k)
            Blade(canvas, pad.x, pad.y, k * 0.7 + pad.x, pad.radius - 2, Hex(0x88C060), 0.5);
        // The notch.
        for (double t = 0.2; t < 1.0; t += 0.04)
            Disc(canvas, pad.x + t * pad.radius * std::cos(pad.y), pad.y + t * pad.radius * std::sin(pad.y), t * 2.6,
                 Hex(0x1E5F7E), 0.9);
    }
    Flower(canvas, 78, 60, Hex(0xF3C6DC), Hex(0xF2D25A));
    Flower(canvas, 36, 40, Hex(0xFBF3F6), Hex(0xF2D25A));
    return canvas;
}

// Rectangular slabs in rows that are shifted against each other.
Spot Slabs(double u, double v, int across, int rows, double shift, Shade dark, Shade light, Shade gap, unsigned salt) {
    const int row = static_cast<int>(v * rows);
    const double along = u * across + (row % 2) * shift;
    const int column = static_cast<int>(std::floor(along)) % across;
    const double fx = along - std::floor(along);
    const double fy = v * rows - row;
    const double aspect = static_cast<double>(rows) / across;
    const double border = std::min({fx * aspect, (1.0 - fx) * aspect, fy, 1.0 - fy});
    const double bevel = 0.12 * (Smooth(0.16, 0.06, std::min(fx * aspect, fy)) -
                                 Smooth(0.16, 0.06, std::min((1.0 - fx) * aspect, 1.0 - fy)));
    const double grain = Clouds(u, v, 12, 4, salt + 3) - 0.5;
    const Shade face = Mix(dark, light, Scatter(column, row, salt)) * (1.0 + bevel + 0.3 * grain);
    return {Mix(gap, face, Smooth(0.02, 0.06, border))};
}

Canvas Paving(unsigned variant) {
    return Square([&](double u, double v) {
        Spot spot = Slabs(u, v, 2, 2, variant * 0.5, Hex(0x9D9182), Hex(0xC2B59F), Hex(0x5F584E), 240 + variant);
        return Spot{Mix(spot.shade, Hex(0x6E7448), 0.4 * Smooth(0.62, 0.8, Clouds(u, v, 4, 4, 246 + variant)))};
    });
}

Canvas Sundial() {
    const Canvas ground = Paving(0);
    return Square([&](double u, double v) {
        const double x = u - 0.5;
        const double y = v - 0.5;
        const double r = std::hypot(x, y);
        const double turn = std::atan2(y, x);
        const Spot paving = ground.Sample(u, v);
        if (r > 0.45) return paving;
        if (r > 0.42 || std::abs(r - 0.31) < 0.008) return Spot{Hex(0x8A6A2B) * (1.0 + 0.5 * std::cos(turn + 2.3))};
        const double hour = std::abs(std::remainder(turn, std::numbers::pi / 6.0));
        if (r > 0.33 && r < 0.4 && hour * r < 0.014) return Spot{Hex(0x5A3F1A)};
        // The shadow of the rod.
        if (x > 0.0 && std::abs(y - 0.45 * x) < 0.025 * (1.0 - x) && r < 0.3) return Spot{Hex(0x6B6253)};
        if (r < 0.035) return Glow(0.8);
        return Spot{Mix(Hex(0xD9C9A6), paving.shade, 0.35) * (0.9 + 0.2 * Clouds(u, v, 6, 3, 251))};
    });
}

Canvas Portal() {
    const Canvas ground = Paving(1);
    return Square([&](double u, double v) {
        const double x = u - 0.5;
        const double y = v - 0.5;
        const double r = std::hypot(x, y);
        const double turn = std::atan2(y, x);
        const Shade paving = ground.Sample(u, v).shade * (r < 0.48 ? 0.55 : 1.0);
        if (std::abs(r - 0.45) < 0.012 || std::abs(r - 0.31) < 0.01) return Glow(1.0);
        const double rune = std::remainder(turn, std::numbers::pi / 4.0) * r;
        const int which = static_cast<int>(std::floor((turn + std::numbers::pi) / (std::numbers::pi / 4.0) + 0.5));
        if (r > 0.34 && r < 0.42) {
            const bool stem = std::abs(rune) < 0.012;
            const bool arm = std::abs(std::abs(rune) - (which % 2 ? r - 0.34 : 0.42 - r)) < 0.011;
            if (stem || arm) return Glow(0.75);
        }
        if (r < 0.3) {
            const double swirl = 0.5 + 0.5 * std::sin(3.0 * turn + 26.0 * r);
            if (swirl > 0.45 + r) return Glow(0.25 + 0.6 * swirl * (1.0 - r / 0.34));
        }
        return Spot{paving};
    });
}

Canvas Planks(bool across, unsigned variant) {
    return Square([&](double a, double b) {
        const double u = across ? b : a;
        const double v = across ? a : b;
        const int board = static_cast<int>(v * 4.0);
        const double fv = v * 4.0 - board;
        const double grain = Clouds(u * 0.5 + 0.13 * board, v, 4, 2, 260) * 0.5 + 0.5 * Noise(u, v * 2.0, 8, 261);
        const double rings =
            0.5 + 0.5 * std::sin(2.0 * std::numbers::pi * (v * 14.0 + 1.5 * Noise(u, v, 3, 262 + variant)));
        const double joint = std::abs(u - (0.2 + 0.6 * Scatter(board, static_cast<int>(variant), 263)));
        Shade wood = Mix(Hex(0x7B4F2A), Hex(0xB98650),
                         0.25 + 0.3 * grain + 0.18 * rings + 0.27 * Scatter(board, 3, 264 + variant));
        if (board % 2 == static_cast<int>(variant % 2) && joint < 0.008) wood = wood * 0.5;
        if (joint > 0.02 && joint < 0.036 && std::abs(std::abs(fv - 0.5) - 0.3) < 0.06) wood = wood * 0.55;
        return Spot{wood * (0.45 + 0.55 * Smooth(0.0, 0.09, std::min(fv, 1.0 - fv)))};
    });
}

Canvas Chequer() {
    return Square([](double u, double v) {
        const bool dark = (static_cast<int>(u * 4.0) + static_cast<int>(v * 4.0)) % 2 == 1;
        const double fu = u * 4.0 - std::floor(u * 4.0);
        const double fv = v * 4.0 - std::floor(v * 4.0);
        const double vein = Smooth(0.06, 0.0, std::abs(Clouds(u, v, 5, 4, 270) - 0.5));
        const double edge = Smooth(0.0, 0.07, std::min({fu, fv, 1.0 - fu, 1.0 - fv}));
        const Shade tile = dark ? Mix(Hex(0x3B4A52), Hex(0x6D7F86), vein) : Mix(Hex(0xE6E0D0), Hex(0xB9AE9A), vein);
        return Spot{tile * (0.7 + 0.3 * edge)};
    });
}

Canvas Carpet() {
    return Square([](double u, double v) {
        const double a = std::abs(std::remainder(u, 0.5)) * 4.0;
        const double b = std::abs(std::remainder(v, 0.5)) * 4.0;
        const double diamond = a + b;
        const double weave = 0.92 + 0.16 * Noise(u, v, 64, 281);
        if (std::abs(diamond - 1.0) < 0.1) return Spot{Hex(0xC99A3B) * weave};
        if (diamond < 0.34) return Spot{Hex(0xE3C878) * weave};
        if (diamond < 0.55) return Spot{Hex(0x7A1420) * weave};
        if (std::abs(diamond - 1.62) < 0.12) return Spot{Hex(0x2F4F6B) * weave};
        return Spot{Hex(0x9E1F2C) * weave};
    });
}

Canvas Soil() {
    Canvas canvas = Square([](double u, double v) {
        const double furrow = 0.5 + 0.5 * std::sin(2.0 * std::numbers::pi * 4.0 * v);
        return Spot{Mix(Hex(0x3E2A18), Hex(0x7A5733), 0.65 * furrow + 0.35 * Clouds(u, v, 10, 4, 291))};
    });
    for (int row = 0; row < 4; ++row)
        for (int i = 0; i < 6; ++i)
            for (int k = 0; k < 6; ++k)
                Blade(canvas, 11 + i * 21 + 3 * Scatter(i, row, 8), 9 + row * 32, k * 1.05 + row, 6.0,
                      Mix(Hex(0x3F8A35), Hex(0x9ACB58), Scatter(i, k, 4)), 0.9);
    return canvas;
}

Canvas Bridge() {
    return Square([](double u, double v) {
        const int board = static_cast<int>(u * 6.0);
        const double fu = u * 6.0 - board;
        const double grain = 0.6 * Noise(u, v, 32, 301) + 0.4 * Clouds(u, v, 4, 3, 302);
        const Shade wood = Mix(Hex(0x6B5138), Hex(0xA98B62), 0.3 + 0.4 * grain + 0.3 * Scatter(board, 0, 303));
        const double nail = std::hypot(fu - 0.5, std::abs(v - 0.5) * 6.0 - 2.4);
        return Spot{wood * (nail < 0.1 ? 0.45 : 0.35 + 0.65 * Smooth(0.0, 0.14, std::min(fu, 1.0 - fu)))};
    });
}

Canvas Hearth() {
    return Square([](double u, double v) {
        const double ember = Clouds(u, v, 8, 4, 311);
        if (std::hypot(u - 0.5, v - 0.5) < 0.36 && ember > 0.58) return Glow(std::min(1.0, (ember - 0.5) * 3.0));
        return Cobbles(u, v, 4, 313, Hex(0x3A3532), Hex(0x6A625A), Hex(0x1D1A18));
    });
}

Canvas CrystalFloor(unsigned variant) {
    return Square([&](double u, double v) {
        const Pebble facet = Pebbles(u, v, 4, 321 + variant);
        const Shade face = Mix(Hex(0x4A5FB5), Hex(0xB8D8F5), 0.75 * facet.pick + 0.25 * facet.nearest);
        if (facet.edge < 0.035) return Glow(0.7);
        return Spot{face * (0.85 + 0.3 * Smooth(0.0, 0.4, facet.edge))};
    });
}

Canvas Coral(unsigned variant) {
    Canvas canvas = Square([&](double u, double v) {
        const double light = std::lerp(Clouds(u, v, 4, 4, 331), Clouds(u, v, 4, 4, 340 + variant), 0.7 * Inside(u, v));
        const double ripple = 0.5 + 0.5 * std::sin(2.0 * std::numbers::pi * (6.0 * u + 1.5 * light));
        return Spot{Mix(Hex(0xC98F7B), Hex(0xF3D8B8), 0.6 * light + 0.3 * ripple + 0.1 * Noise(u, v, 64, 335))};
    });
    for (int i = 0; i < 12; ++i)
        Disc(canvas, Scatter(i, 0, 36 + variant) * side, Scatter(i, 1, 36 + variant) * side,
             1.0 + 2.0 * Scatter(i, 2, 36),
             i % 3 == 0   ? Hex(0xF7F0E6)
             : i % 3 == 1 ? Hex(0xD8657A)
                          : Hex(0x8E5A78));
    return canvas;
}

Canvas Parquet() {
    return Square([](double u, double v) {
        // Blocks of four boards, turned by a quarter from block to block.
        const int block = (static_cast<int>(u * 4.0) + static_cast<int>(v * 4.0)) % 2;
        const double along = block ? u : v;
        const double across = block ? v : u;
        const int board = static_cast<int>(across * 16.0);
        const double f = across * 16.0 - board;
        const double grain = Noise(along, across * 4.0, 16, 351);
        const Shade wood =
            Mix(Hex(0x6A3B1C), Hex(0xC08A4E),
                0.25 + 0.4 * grain + 0.35 * Scatter(board, block + 2 * static_cast<int>(along * 4.0), 352));
        const double end = std::abs(std::remainder(along, 0.25)) * 40.0;
        return Spot{wood * (0.5 + 0.5 * std::min(Smooth(0.0, 0.2, std::min(f, 1.0 - f)), Smooth(0.0, 0.6, end)))};
    });
}

Canvas Starfield(unsigned variant) {
    Canvas canvas = Square([&](double u, double v) {
        const double haze = Clouds(u, v, 2, 4, 361);
        const double cloud = Clouds(u, v, 3, 4, 365);
        return Spot{Mix(Mix(Hex(0x05060F), Hex(0x2A1B52), Smooth(0.35, 0.8, haze)), Hex(0x1C4A66),
                        0.6 * Smooth(0.55, 0.85, cloud))};
    });
    for (int i = 0; i < 40; ++i) {
        const double bright = Scatter(i, 2, 370 + variant);
        const double x = 4 + 120 * Scatter(i, 0, 370 + variant);
        const double y = 4 + 120 * Scatter(i, 1, 370 + variant);
        Disc(canvas, x, y, bright > 0.85 ? 2.6 : 1.0, Mix(Hex(0x6E78A8), Hex(0xFFFFFF), bright),
             bright > 0.85 ? 0.35 : 0.9);
        if (bright > 0.85) canvas.At(static_cast<int>(x), static_cast<int>(y)) = Glow(1.0);
    }
    return canvas;
}

// Tree tops from above, for what lies beyond the map.
Canvas Forest() {
    Canvas canvas =
        Square([](double u, double v) { return Spot{Mix(Hex(0x10200F), Hex(0x1C3417), Clouds(u, v, 4, 3, 381))}; });
    for (int i = 0; i < 34; ++i) {
        const double x = Scatter(i, 0, 385) * side;
        const double y = Scatter(i, 1, 385) * side;
        const double size = 9.0 + 9.0 * Scatter(i, 2, 385);
        const Shade top = Mix(Hex(0x2C5A24), Hex(0x4B7F31), Scatter(i, 3, 385));
        Disc(canvas, x + 5, y + 6, size, Hex(0x0A160A), 0.6);
        for (double r = size; r > 1.0; r -= 1.5)
            Disc(canvas, x - (size - r) * 0.25, y - (size - r) * 0.3, r, Mix(top, Hex(0x16300F), r / size), 0.8);
        for (int k = 0; k < 26; ++k) {
            const double turn = Scatter(i, k, 386) * 6.28;
            const double r = size * std::sqrt(Scatter(i, k, 387));
            canvas.Blend(static_cast<int>(x + r * std::cos(turn)), static_cast<int>(y + r * std::sin(turn)),
                         k % 2 ? Hex(0x6B9A45) : Hex(0x14280F), 0.5);
        }
    }
    return canvas;
}

// How far the upper ground reaches at a place: 0.5 is the border. Corners in the order of the mask's bits.
double Reach(double u, double v, int mask, unsigned salt, double roughness) {
    const auto corner = [&](int bit) { return (mask >> bit & 1) ? 1.0 : 0.0; };
    const double su = Smooth(0.0, 1.0, u);
    const double sv = Smooth(0.0, 1.0, v);
    const double even = std::lerp(std::lerp(corner(0), corner(1), su), std::lerp(corner(2), corner(3), su), sv);
    return even + roughness * (Clouds(u, v, 5, 4, salt) - 0.5);
}

struct BorderStyle {
    int firstTile;
    double roughness;
    bool shore;
};

Canvas BorderTile(const Canvas& upper, const Canvas& lower, const BorderStyle& style, int mask) {
    return Square([&](double u, double v) {
        const double reach = Reach(u, v, mask, 400U + static_cast<unsigned>(style.firstTile), style.roughness) - 0.5;
        const Shade above = upper.Sample(u, v).shade;
        const Shade below = lower.Sample(u, v).shade;
        if (!style.shore) {
            // The upper ground throws a thin shadow on the lower one.
            if (reach > 0.0) return Spot{above * (0.9 + 0.1 * Smooth(0.0, 0.06, reach))};
            return Spot{below * (0.62 + 0.38 * Smooth(-0.0, -0.1, reach))};
        }
        if (reach > 0.0) return Spot{Mix(Hex(0x9A7F52), above, Smooth(0.0, 0.16, reach))};
        const Shade shallow = Mix(Hex(0x7CC6BE), below, Smooth(-0.02, -0.3, reach));
        const double foam =
            Smooth(0.03, 0.0, std::abs(reach + 0.035)) + 0.5 * Smooth(0.02, 0.0, std::abs(reach + 0.13));
        return Spot{Mix(shallow, Hex(0xF2F7EF), std::min(1.0, foam) * (0.55 + 0.45 * Noise(u, v, 16, 431)))};
    });
}

void AddBorders(std::map<int, Canvas>& all, int upper, int lower, const BorderStyle& style) {
    for (int mask = 1; mask < floors::borderMasks - 1; ++mask)
        all.insert_or_assign(style.firstTile + mask, BorderTile(all.at(upper), all.at(lower), style, mask));
}

}  // namespace

std::map<int, Canvas> PaintFloors() {
    std::map<int, Canvas> all;
    const auto add = [&](int number, Canvas canvas) { all.insert_or_assign(number, std::move(canvas)); };
    for (unsigned variant = 0; variant < 4; ++variant)
        add(floors::Grass + static_cast<int>(variant), Grass(variant));
    for (unsigned variant = 0; variant < 3; ++variant) {
        add(floors::Cobble + static_cast<int>(variant), Cobble(variant));
        add(floors::Water + static_cast<int>(variant), Water(variant));
    }
    for (unsigned variant = 0; variant < 2; ++variant) {
        const int offset = static_cast<int>(variant);
        add(floors::Undergrowth + offset, Undergrowth(variant));
        add(floors::Dirt + offset, Dirt(variant));
        add(floors::Sand + offset, Sand(variant));
        add(floors::Paving + offset, Paving(variant));
        add(floors::Planks + offset, Planks(false, variant));
        add(floors::Crystal + offset, CrystalFloor(variant));
        add(floors::Coral + offset, Coral(variant));
    }
    add(floors::GrassFlowers, GrassFlowers());
    add(floors::GrassClover, GrassClover());
    add(floors::Meadow, Meadow());
    add(floors::Lilies, Lilies());
    add(floors::Sundial, Sundial());
    add(floors::Portal, Portal());
    add(floors::PlanksAcross, Planks(true, 1));
    add(floors::Chequer, Chequer());
    add(floors::Carpet, Carpet());
    add(floors::Soil, Soil());
    add(floors::Bridge, Bridge());
    add(floors::Hearth, Hearth());
    add(floors::Parquet, Parquet());
    add(floors::Outside, Forest());
    AddBorders(all, floors::Grass, floors::Sand, {floors::GrassOverSand, 0.5, false});
    AddBorders(all, floors::Cobble, floors::Grass, {floors::CobbleOverGrass, 0.4, false});
    AddBorders(all, floors::Dirt, floors::Grass, {floors::DirtOverGrass, 0.5, false});
    AddBorders(all, floors::Sand, floors::Water, {floors::SandOverWater, 0.35, true});
    AddBorders(all, floors::Undergrowth, floors::Grass, {floors::UndergrowthOverGrass, 0.6, false});
    return all;
}

std::map<int, Canvas> PaintExtraFloors() {
    std::map<int, Canvas> all;
    for (unsigned variant = 0; variant < 2; ++variant)
        all.insert_or_assign(floors::Mosaic - 500 + static_cast<int>(variant), Square([&](double u, double v) {
                                 const Pebble stone = Pebbles(u, v, 14, 451);
                                 const double r =
                                     std::hypot(std::remainder(u - 0.5, 1.0), std::remainder(v - 0.5, 1.0));
                                 const double petal = 0.28 + 0.1 * std::cos(8.0 * std::atan2(v - 0.5, u - 0.5));
                                 Shade stoneShade = r < 0.1     ? Hex(0xE5B93C)
                                                    : r < petal ? (variant ? Hex(0x2F6F8E) : Hex(0xA83A3A))
                                                                : Hex(0xD9CDB4);
                                 if (r > 0.42 && r < 0.5) stoneShade = variant ? Hex(0xA83A3A) : Hex(0x2F6F8E);
                                 stoneShade = stoneShade * (0.85 + 0.3 * stone.pick);
                                 return Spot{Mix(Hex(0x6B6253), stoneShade, Smooth(0.03, 0.12, stone.edge))};
                             }));
    for (unsigned variant = 0; variant < 10; ++variant)
        all.insert_or_assign(floors::Starfield - 500 + static_cast<int>(variant), Starfield(variant));
    return all;
}

}  // namespace demo
