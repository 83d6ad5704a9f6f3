#include "tools/items/Textures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "demo/world/MapPainter.h"

namespace items {

namespace {

using demo::Clouds;
using demo::Hex;
using demo::Mix;
using demo::Noise;
using demo::Pebble;
using demo::Pebbles;
using demo::Scatter;
using demo::Shade;
using demo::Smooth;

double Fraction(double value) {
    return value - std::floor(value);
}

double Wave(double turns) {
    return std::sin(2.0 * std::numbers::pi * turns);
}

// Ridges along v that wander and break.
Tone Bark(double u, double v) {
    const double wander = 0.10 * (Clouds(u, v, 4, 3, 11) - 0.5);
    const double ridge = std::abs(Wave(4.0 * (u + wander)));
    const double plate = std::abs(Wave(3.0 * v + 2.0 * Noise(u, v, 8, 13)));
    const double height = Smooth(0.1, 0.7, ridge) * Smooth(0.02, 0.35, plate);
    const double grain = Clouds(u, v, 16, 3, 17);
    const Shade shade = Mix(Hex(0x3B2A1C), Hex(0x8A6A48), 0.25 + 0.5 * height + 0.3 * (grain - 0.4));
    return {Mix(shade, Hex(0x6E7B4A), 0.35 * Smooth(0.6, 0.8, Clouds(u, v, 3, 3, 19))), 1.0, 0.05 * height};
}

Tone Birch(double u, double v) {
    Shade shade = Mix(Hex(0xD8D2C4), Hex(0xF6F3EA), Clouds(u, v, 6, 3, 21));
    for (int i = 0; i < 14; ++i) {
        const double x = Fraction(u - Scatter(i, 1, 23) + 0.5) - 0.5;
        const double y = Fraction(v - (i + Scatter(i, 2, 23)) / 14.0 + 0.5) - 0.5;
        const double width = 0.08 + 0.22 * Scatter(i, 3, 23);
        const double mark = std::abs(x) / width + std::abs(y) / (0.012 + 0.022 * Scatter(i, 4, 23));
        shade = Mix(Hex(0x33302C), shade, Smooth(0.75, 1.1, mark));
    }
    return {shade, 1.0, 0.0};
}

double Grain(double u, double v, unsigned salt) {
    const double wander = 0.05 * (Noise(u, v, 3, salt) - 0.5) + 0.02 * (Noise(u, v, 8, salt + 1) - 0.5);
    return 0.5 + 0.32 * Wave(7.0 * (v + wander) + 0.4 * Wave(u)) + 0.5 * (Clouds(u * 0.999, v, 16, 2, salt + 2) - 0.5);
}

Tone Wood(double u, double v) {
    const double grain = Grain(u, v, 31);
    return {Mix(Hex(0x855528), Hex(0xC08A4C), grain), 1.0, 0.01 * grain};
}

Tone Planks(double u, double v) {
    const double row = std::floor(v * 4.0);
    const double across = Fraction(v * 4.0);
    const auto board = static_cast<int>(row);
    const double along = Fraction(u + 0.37 * row);
    const double seam = std::min({across, 1.0 - across, along * 4.0, (1.0 - along) * 4.0});
    const double grain = Grain(u, Fraction(v + 0.31 * row), 41);
    const double tone = 0.75 + 0.35 * Scatter(board, 5, 43);
    Shade shade = Mix(Hex(0x6A4526), Hex(0xA87844), grain) * tone;
    // Nails near the ends.
    const double nail = std::hypot((std::min(along, 1.0 - along) - 0.045) * 4.0, across - 0.5) - 0.07;
    shade = Mix(Hex(0x2B2420), shade, Smooth(-0.02, 0.03, nail));
    return {Mix(Hex(0x2A1A0E), shade, Smooth(0.02, 0.10, seam)), 1.0, 0.03 * Smooth(0.0, 0.14, seam) + 0.008 * grain};
}

// Leaves upon leaves: in each square of a grid grows one that points its own way; three layers, the upper ones lighter.
Tone Foliage(double u, double v, const std::array<Shade, 3>& shades, unsigned salt) {
    constexpr int count = 8;
    Tone tone{shades[0] * 0.5, 1.0, 0.0};
    for (int layer = 0; layer < 3; ++layer) {
        const double x = u * count + 0.4 * layer;
        const double y = v * count + 0.3 * layer;
        double best = 0.0;
        for (int i = 0; i < 9; ++i) {
            const int column = static_cast<int>(std::floor(x)) + i % 3 - 1;
            const int row = static_cast<int>(std::floor(y)) + i / 3 - 1;
            const int home = (column + count) % count * count + (row + count) % count;
            const unsigned own = salt + static_cast<unsigned>(layer);
            const double angle = 2.0 * std::numbers::pi * Scatter(home, 1, own);
            const double dx = x - column - 0.2 - 0.6 * Scatter(home, 2, own);
            const double dy = y - row - 0.2 - 0.6 * Scatter(home, 3, own);
            const double along = (dx * std::cos(angle) + dy * std::sin(angle)) / 0.78;
            const double across = (dy * std::cos(angle) - dx * std::sin(angle)) / 0.40;
            const double within = 1.0 - std::abs(along) - across * across;
            if (within <= 0.0 || Scatter(home, 4, own) < best) continue;
            best = Scatter(home, 4, own);
            const double half = across > 0.0 ? 1.12 : 0.92;
            const double light = (0.70 + 0.45 * best) * half * (0.72 + 0.28 * Smooth(0.0, 0.3, within));
            tone = {shades[static_cast<std::size_t>(layer)] * light, 1.0, 0.02 * (layer + 1) + 0.02 * within};
        }
    }
    return tone;
}

Paint FoliageOf(unsigned dark, unsigned middle, unsigned light, unsigned salt) {
    return [=](double u, double v) { return Foliage(u, v, {Hex(dark), Hex(middle), Hex(light)}, salt); };
}

Paint SprayOf(unsigned dark, unsigned light) {
    return [=](double u, double v) { return PaintSpray(u, v, dark, light); };
}

// One tier of a fir: dark where the tier above hangs over it at the top, branches that fan out to light tips.
Tone Needles(double u, double v) {
    const double branch = std::abs(Fraction(u * 4.0 + 0.15 * Wave(v * 2.0)) - 0.5) * 2.0;
    const double stroke = 0.5 + 0.5 * Wave(28.0 * u + (branch - 0.5) * 5.0 * v + 1.5 * Noise(u, v, 8, 51));
    const double tuft = 0.5 + 0.5 * Wave(5.0 * v - 0.9 * branch + Noise(u, v, 6, 55));
    const double light =
        -0.05 + 0.50 * v + 0.28 * stroke * (0.4 + tuft) + 0.20 * (1.0 - branch) + 0.25 * (Clouds(u, v, 6, 2, 53) - 0.5);
    return {Mix(Hex(0x123420), Hex(0x6FA850), light), 1.0, 0.02 * stroke + 0.03 * tuft};
}

Tone StoneFace(double u, double v) {
    const double rough = Clouds(u, v, 4, 5, 61);
    const Pebble crack =
        Pebbles(Fraction(u + 0.06 * Noise(u, v, 6, 67)), Fraction(v + 0.06 * Noise(u, v, 6, 68)), 4, 63);
    const double line = Smooth(0.0, 0.09, crack.edge);
    const Shade shade = Mix(Hex(0x5F5D5A), Hex(0xB9B4A8), rough * 0.9 + 0.12 * crack.pick);
    const double lichen = Smooth(0.60, 0.72, Clouds(u, v, 5, 3, 69));
    return {Mix(shade * (0.72 + 0.28 * line), Hex(0x7E8A5A), 0.45 * lichen), 1.0, 0.05 * rough + 0.015 * line};
}

Tone Masonry(double u, double v) {
    const double row = std::floor(v * 4.0);
    const double across = Fraction(v * 4.0);
    const double along = u * 2.0 + 0.5 * row + 0.11 * std::fmod(row, 3.0);
    const double within = Fraction(along);
    const auto block = static_cast<int>(std::floor(along)) % 2;
    const double border =
        std::min({within * 2.0, (1.0 - within) * 2.0, across, 1.0 - across}) + 0.06 * (Clouds(u, v, 8, 3, 71) - 0.5);
    const double rough = Clouds(u, v, 8, 4, 73);
    const double pick = Scatter(block, static_cast<int>(row), 75);
    const Shade face = Mix(Mix(Hex(0x7C766E), Hex(0xB8AD98), pick), Hex(0x8C9090), 0.4 * Scatter(block, 9, 77)) *
                       (0.78 + 0.4 * rough + 0.12 * (0.5 - across));
    return {Mix(Hex(0x4A463F), face, Smooth(0.03, 0.12, border)), 1.0, 0.04 * Smooth(0.0, 0.16, border) + 0.02 * rough};
}

Tone Straw(double u, double v) {
    const double layer = Fraction(v * 3.0 + 0.10 * Noise(u, v, 12, 81));
    const double stalk = Clouds(u, v * 0.25, 32, 2, 83);
    const double light = 0.30 + 0.6 * stalk + 0.22 * (1.0 - layer);
    return {Mix(Hex(0x7A5A1E), Hex(0xE8C66A), light) * (0.7 + 0.3 * Smooth(0.0, 0.12, 1.0 - layer)), 1.0,
            0.03 * stalk + 0.03 * layer};
}

Tone RoofTiles(double u, double v) {
    const double row = std::floor(v * 5.0);
    const double down = Fraction(v * 5.0);
    const double along = u * 5.0 + 0.5 * std::fmod(row, 2.0);
    const double across = Fraction(along) - 0.5;
    // The lower edge of a tile is round.
    const bool below = down > 1.0 - 1.4 * across * across * 0.9;
    const double pick = Scatter(static_cast<int>(std::floor(along)) % 5, static_cast<int>(row) + (below ? 1 : 0), 91);
    const double light = (0.72 + 0.35 * pick) * (0.75 + 0.35 * down) - 0.35 * Smooth(0.42, 0.5, std::abs(across));
    return {Mix(Hex(0x7A3424), Hex(0xC4633E), pick) * (below ? 0.55 : light), 1.0, 0.04 * (below ? 0.0 : down)};
}

Paint StripesOf(unsigned first, unsigned second) {
    return [=](double u, double v) {
        const double weave = 0.92 + 0.08 * Wave(32.0 * u) * Wave(32.0 * v);
        const double fold = 0.94 + 0.06 * Wave(2.0 * u + 0.1 * Wave(v));
        return Tone{(Fraction(u * 4.0) < 0.5 ? Hex(first) : Hex(second)) * weave * fold, 1.0,
                    0.004 * Wave(32.0 * u) * Wave(32.0 * v) + 0.01 * Wave(2.0 * u)};
    };
}

Tone Quilt(double u, double v) {
    constexpr std::array<unsigned, 6> colours = {0xB64A4A, 0x3F6FA8, 0xE3CE9A, 0x5E8F58, 0xD98F4A, 0x8A5A9A};
    const auto column = static_cast<int>(u * 4.0);
    const auto row = static_cast<int>(v * 4.0);
    const double x = Fraction(u * 4.0) - 0.5;
    const double y = Fraction(v * 4.0) - 0.5;
    const auto pick = static_cast<std::size_t>(column * 2 + row * 5) % colours.size();
    const bool diamond = std::abs(x) + std::abs(y) < 0.30;
    const Shade shade = diamond ? Hex(colours[(pick + 2) % colours.size()]) : Hex(colours[pick]);
    const double puff = 1.0 - Smooth(0.30, 0.5, std::max(std::abs(x), std::abs(y)));
    return {shade * (0.72 + 0.30 * puff + 0.06 * (Noise(u, v, 32, 95) - 0.5)), 1.0, 0.03 * puff};
}

Tone Wicker(double u, double v) {
    const double row = std::floor(v * 10.0);
    const double over = Wave(5.0 * u + 0.5 * row);
    const double across = std::abs(Fraction(v * 10.0) - 0.5) * 2.0;
    const double height = (0.55 + 0.45 * over) * (1.0 - across * across);
    return {Mix(Hex(0x4E3216), Hex(0xD0A05C), height), 1.0, 0.03 * height};
}

Tone Metal(double u, double v) {
    const double brush = Clouds(u * 0.5, v, 24, 2, 101);
    const double patch = Clouds(u, v, 3, 3, 103);
    const Shade shade = Mix(Hex(0x3E4248), Hex(0x8B9098), 0.25 + 0.5 * brush + 0.35 * (patch - 0.5));
    return {Mix(shade, Hex(0x6A4A34), 0.4 * Smooth(0.62, 0.78, patch)), 1.0, 0.008 * brush};
}

Tone WaterFace(double u, double v) {
    const Pebble cell = Pebbles(Fraction(u + 0.05 * Wave(2.0 * v)), Fraction(v + 0.05 * Wave(2.0 * u)), 5, 111);
    const double light = Smooth(0.16, 0.0, cell.edge);
    return {Mix(Mix(Hex(0x2C6E9E), Hex(0x4FA3C8), Clouds(u, v, 3, 3, 113)), Hex(0xD4F2FA), 0.65 * light), 1.0,
            0.02 * light};
}

Tone CrystalFace(double u, double v) {
    const double band = Fraction(3.0 * u + 1.2 * v + 0.2 * Noise(u, v, 4, 121));
    const double glow = 0.55 * (1.0 - v) + 0.25 * Smooth(0.8, 1.0, band) + 0.2 * Clouds(u, v, 4, 3, 123);
    return {Mix(Hex(0x4A2C8C), Hex(0xC9F0FF), glow), 1.0, 0.02 * band};
}

Tone GlobeMap(double u, double v) {
    const double land = Clouds(u, v, 4, 4, 131) - 0.12 * std::abs(v - 0.5);
    const double line = std::min(std::abs(Fraction(u * 12.0) - 0.5), std::abs(Fraction(v * 8.0) - 0.5));
    Shade shade = land > 0.50 ? Mix(Hex(0x9AA860), Hex(0xC89A58), Smooth(0.5, 0.7, land))
                              : Mix(Hex(0x3A78A8), Hex(0x66A8C4), Smooth(0.3, 0.5, land));
    if (std::abs(land - 0.5) < 0.012) shade = Hex(0x5A4428);
    return {Mix(shade * 0.8, shade, Smooth(0.01, 0.04, line)), 1.0, 0.0};
}

Tone Books(double u, double v) {
    constexpr std::array<unsigned, 7> colours = {0x8A2E2A, 0x2C4A78, 0x3C6A42, 0xC09A4A, 0x5A3A6A, 0x7A5030, 0x2E6A70};
    double left = 0.0;
    for (int i = 0; i < 16; ++i) {
        const double right = i == 15 ? 1.0 : left + 0.045 + 0.038 * Scatter(i, 1, 141);
        const double top = 0.08 + 0.22 * Scatter(i, 2, 141);
        if (u >= left && u < right) {
            const double x = (u - left) / (right - left);
            if (v < top) return {Hex(0x20150C), 1.0, 0.0};
            const Shade shade = Hex(colours[static_cast<std::size_t>(i * 5 + i / 7) % colours.size()]);
            const bool band = std::abs(v - 0.36) < 0.025 || std::abs(v - 0.80) < 0.025;
            return {(band ? Hex(0xE0C070) : shade) * (0.55 + 0.6 * std::sin(std::numbers::pi * x)), 1.0,
                    0.03 * x * (1.0 - x)};
        }
        left = right;
    }
    return {Hex(0x20150C), 1.0, 0.0};
}

Tone Fire(double u, double v) {
    const double up = 1.0 - v;
    const double sway = 0.10 * Wave(0.9 * up) * up;
    const double tongues = 0.10 * Wave(3.0 * u + 0.3) * up;
    const double width = 0.43 * std::pow(std::max(1.0 - up, 0.0), 0.6) * Smooth(-0.25, 0.25, up);
    const double inside = width - std::abs(u - 0.5 - sway) + tongues * 0.4;
    if (inside < 0.0 || up > 0.97) return {Hex(0xE8641C), 0.0, 0.0};
    const double heat = std::clamp(inside / 0.30 + 0.3 * (0.5 - up), 0.0, 1.0);
    return {heat < 0.45 ? Mix(Hex(0xE04A12), Hex(0xFBA426), heat / 0.45)
                        : Mix(Hex(0xFBA426), Hex(0xFFF6B8), (heat - 0.45) / 0.55),
            1.0, 0.0};
}

}  // namespace

std::vector<Texture> AllTextures() {
    return {{"bark", 128, 128, true, Bark},
            {"birch", 64, 128, false, Birch},
            {"wood", 128, 128, false, Wood},
            {"planks", 128, 128, true, Planks},
            {"leaves", 128, 128, true, FoliageOf(0x28521E, 0x3F7A2A, 0x68A23A, 151)},
            {"leaves_autumn", 128, 128, true, FoliageOf(0x7A3416, 0xB8581E, 0xE09A34, 151)},
            {"leaves_blossom", 128, 128, true, FoliageOf(0x6A7A48, 0xD88CA8, 0xF6C6D6, 161)},
            {"leaves_light", 128, 128, true, FoliageOf(0x4A6A22, 0x7A9E34, 0xAAC658, 171)},
            {"spray", 64, 64, true, SprayOf(0x2F6224, 0x78AE40)},
            {"spray_autumn", 64, 64, true, SprayOf(0x94421A, 0xECA83C)},
            {"spray_blossom", 64, 64, true, SprayOf(0xC8708E, 0xFCDCE6)},
            {"spray_light", 64, 64, true, SprayOf(0x5E8428, 0xBCD468)},
            {"needles", 128, 128, true, Needles},
            {"flora", 256, 256, false, PaintFlora},
            {"stone", 128, 128, true, StoneFace},
            {"masonry", 128, 128, true, Masonry},
            {"straw", 64, 64, true, Straw},
            {"tiles", 128, 128, true, RoofTiles},
            {"stripes", 64, 64, true, StripesOf(0xB83A34, 0xF0E6CE)},
            {"stripes_blue", 64, 64, true, StripesOf(0x2E5C9A, 0xF0E6CE)},
            {"stripes_green", 64, 64, true, StripesOf(0x3E7A4A, 0xF2D27A)},
            {"quilt", 64, 64, true, Quilt},
            {"wicker", 64, 64, true, Wicker},
            {"metal", 64, 64, false, Metal},
            {"water", 64, 64, true, WaterFace},
            {"crystal", 64, 64, false, CrystalFace},
            {"globe", 128, 64, false, GlobeMap},
            {"books", 128, 32, true, Books},
            {"signs", 256, 256, false, PaintSigns},
            {"fire", 64, 64, false, Fire},
            {"paints", 256, 256, false, PaintSwatches}};
}

}  // namespace items
