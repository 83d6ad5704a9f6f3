// The flat pictures of signs.png and the colours of paints.png.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "demo/world/MapPainter.h"
#include "tools/items/Materials.h"
#include "tools/items/Textures.h"

namespace items {

namespace {

using demo::Clouds;
using demo::Hex;
using demo::Mix;
using demo::Noise;
using demo::Scatter;
using demo::Shade;
using demo::Smooth;

// x and y from 0 to 1 from the top left of a square.
using Picture = Shade (*)(double x, double y);

Shade Paper(double x, double y) {
    const double edge = std::min({x, 1.0 - x, y, 1.0 - y});
    return Mix(Hex(0xB89458), Mix(Hex(0xE8D6A8), Hex(0xF6ECCC), Clouds(x, y, 4, 3, 201)), Smooth(0.0, 0.12, edge));
}

bool IsWriting(double x, double y, double left, double right, int lines) {
    const double line = y * lines - std::floor(y * lines);
    const auto row = static_cast<int>(y * lines);
    const double end = right - 0.25 * (right - left) * Scatter(row, 1, 203);
    return x > left && x < end && line > 0.35 && line < 0.62 && Scatter(static_cast<int>(x * 28.0), row, 205) > 0.16;
}

Shade Letter(double x, double y) {
    if (std::hypot(x - 0.74, y - 0.84) < 0.08) return Hex(0xB02A24);
    if (y > 0.12 && y < 0.78 && IsWriting(x, y, 0.14, 0.88, 9)) return Hex(0x4A3420);
    return Paper(x, y);
}

Shade OpenBook(double x, double y) {
    const double fold = std::abs(x - 0.5);
    const Shade page = Paper(x, y) * (0.70 + 0.30 * Smooth(0.0, 0.10, fold));
    const bool writing = IsWriting(x, y, 0.08, 0.45, 10) || IsWriting(x, y, 0.56, 0.94, 10);
    const bool figure = x > 0.58 && x < 0.90 && y > 0.14 && y < 0.46;
    if (figure) return std::hypot(x - 0.74, y - 0.30) < 0.12 ? Hex(0x4A78A8) : Hex(0xE0C27A);
    return y > 0.1 && y < 0.9 && writing ? Hex(0x54422E) : page;
}

Shade ClockFace(double x, double y) {
    const double dx = x - 0.5;
    const double dy = y - 0.5;
    const double reach = std::hypot(dx, dy);
    if (reach > 0.48) return Hex(0x6A4424);
    if (reach > 0.42) return Hex(0xD8B050);
    const double hour = std::remainder(std::atan2(dy, dx) / std::numbers::pi * 6.0, 1.0);
    if (reach > 0.32 && std::abs(hour) < 0.09) return Hex(0x2A2420);
    if (std::abs(dx - 0.02) < 0.025 && dy < 0.03 && dy > -0.34) return Hex(0x2A2420);
    if (std::abs(dy + 0.35 * dx) < 0.03 && dx > -0.03 && dx < 0.24) return Hex(0x2A2420);
    return Hex(0xF8F2E0);
}

Shade Target(double x, double y) {
    constexpr std::array<unsigned, 5> rings = {0xF2C83A, 0xD0382E, 0x3A78B8, 0x2E2C2A, 0xF2ECDC};
    const double reach = std::hypot(x - 0.5, y - 0.5) / 0.49;
    if (reach > 1.0) return Hex(0xC8A04C) * (0.8 + 0.4 * Noise(x, y, 32, 211));
    return Hex(rings[static_cast<std::size_t>(reach * 4.99)]);
}

// A tower under a star on a divided field, with a fringe.
Shade Crest(double x, double y) {
    const double fold = 0.9 + 0.1 * std::sin(13.0 * x);
    const Shade field = (x < 0.5 ? Hex(0x2E5498) : Hex(0xB83430)) * fold;
    if (y > 0.90 || x < 0.05 || x > 0.95 || y < 0.04) return Hex(0xE6BE4C) * fold;
    const double tower = std::abs(x - 0.5);
    if (y > 0.42 && y < 0.78 && tower < 0.15 && !(y > 0.62 && tower < 0.045)) return Hex(0xF2EAD0) * fold;
    if (y > 0.34 && y <= 0.46 && tower < 0.20 && std::fmod(tower + 0.035, 0.14) < 0.075) return Hex(0xF2EAD0) * fold;
    const double angle = std::atan2(x - 0.5, 0.20 - y);
    if (std::hypot(x - 0.5, y - 0.20) < 0.06 + 0.045 * std::cos(5.0 * angle)) return Hex(0xF2D45A) * fold;
    return field;
}

Shade Board(double x, double y) {
    const double edge = std::min({x, 1.0 - x, y, 1.0 - y});
    if (edge < 0.06) return Hex(0xD8AE52);
    return Mix(Hex(0x2E4A3A), Hex(0x3E6450), Clouds(x, y, 3, 3, 213));
}

Shade BreadSign(double x, double y) {
    const double reach = std::hypot((x - 0.5) / 0.36, (y - 0.54) / 0.22);
    if (reach > 1.0) return Board(x, y);
    const bool cut = std::abs(std::remainder(x + 0.5 * y, 0.16)) < 0.022 && reach < 0.8;
    return cut ? Hex(0xF6DCA0) : Mix(Hex(0xE8A850), Hex(0xA85C1E), reach);
}

Shade MugSign(double x, double y) {
    if (std::hypot((x - 0.42) / 0.22, (y - 0.28) / 0.10) < 1.0) return Hex(0xFFF8E6);
    if (std::abs(x - 0.42) < 0.2 && y > 0.30 && y < 0.82)
        return Mix(Hex(0xE8B24A), Hex(0xA86A20), std::abs(x - 0.34) / 0.3);
    const double handle = std::hypot(x - 0.62, (y - 0.56) * 0.9);
    return handle > 0.10 && handle < 0.16 && x > 0.6 ? Hex(0xC0843A) : Board(x, y);
}

Shade AnvilSign(double x, double y) {
    const bool top = y > 0.30 && y < 0.46 && x > 0.16 + (y - 0.30) * 1.2 && x < 0.84;
    const bool waist = y >= 0.46 && y < 0.66 && std::abs(x - 0.54) < 0.12;
    const bool foot = y >= 0.66 && y < 0.78 && std::abs(x - 0.54) < 0.24;
    return top || waist || foot ? Mix(Hex(0xD0D4DA), Hex(0x7A828E), (y - 0.3) / 0.5) : Board(x, y);
}

Shade MapPicture(double x, double y) {
    const double land = Clouds(x, y, 3, 4, 221) - 0.35 * std::hypot(x - 0.5, y - 0.5);
    if (std::abs(land - 0.34) < 0.012) return Hex(0x5A4020);
    const double cross = std::min(std::abs(x - 0.62 - (y - 0.44)), std::abs(x - 0.62 + (y - 0.44)));
    if (cross < 0.02 && std::hypot(x - 0.62, y - 0.44) < 0.08) return Hex(0xC02A20);
    return Mix(Paper(x, y), land > 0.34 ? Hex(0x9AB068) : Hex(0x7AAEC0), 0.45);
}

Shade Runes(double x, double y) {
    const Shade stone = Mix(Hex(0x5A5E64), Hex(0x9A9C9C), Clouds(x, y, 5, 4, 223));
    const auto column = static_cast<int>(x * 3.0);
    const auto row = static_cast<int>(y * 4.0);
    const double cx = x * 3.0 - column - 0.5;
    const double cy = y * 4.0 - row - 0.5;
    double line = std::abs(cx + 0.12);
    if (Scatter(column, row, 225) > 0.4) line = std::min(line, std::abs(cy - cx * 0.9 + 0.1));
    if (Scatter(column, row, 227) > 0.5) line = std::min(line, std::abs(cy + cx * 0.8 - 0.1));
    const bool within = std::abs(cx) < 0.26 && std::abs(cy) < 0.34;
    return within ? Mix(Hex(0x9AF2FF), stone, Smooth(0.05, 0.12, line)) : stone;
}

Shade Landscape(double x, double y) {
    const double edge = std::min({x, 1.0 - x, y, 1.0 - y});
    if (edge < 0.09) return Mix(Hex(0xF0CE70), Hex(0x8E6420), edge / 0.09);
    if (std::hypot(x - 0.68, y - 0.30) < 0.07) return Hex(0xFFF2B0);
    const double hills = 0.52 + 0.07 * std::sin(9.0 * x) + 0.03 * std::sin(23.0 * x);
    if (y > hills + 0.16) return Mix(Hex(0x5A9AB8), Hex(0x2E6A96), (y - 0.6) / 0.4);
    return y > hills ? Hex(0x4E8044) : Mix(Hex(0x7AB4E0), Hex(0xF6D8B0), y / hills);
}

Shade StarChart(double x, double y) {
    const double reach = std::hypot(x - 0.5, y - 0.5);
    Shade shade = Mix(Hex(0x1E2A5C), Hex(0x101636), reach * 1.6);
    for (const double ring : {0.20, 0.33, 0.46})
        if (std::abs(reach - ring) < 0.008) shade = Hex(0xC8A850);
    for (int i = 0; i < 16; ++i) {
        const double at = std::hypot(x - Scatter(i, 1, 231), y - Scatter(i, 2, 231));
        if (at < 0.015 + 0.02 * Scatter(i, 3, 231)) shade = Hex(0xFFF8D8);
    }
    return shade;
}

Shade SundialFace(double x, double y) {
    const double reach = std::hypot(x - 0.5, y - 0.5);
    const double hour = std::remainder(std::atan2(y - 0.5, x - 0.5) / std::numbers::pi * 8.0, 1.0);
    if (reach > 0.47) return Hex(0x7A5A20);
    if (reach > 0.32 && (std::abs(hour) < 0.08 || reach < 0.335)) return Hex(0x5A3E14);
    return Mix(Hex(0xE8C878), Hex(0xB08A3C), reach * 2.0);
}

// A window: bright panes between lead.
Shade Lattice(double x, double y) {
    const double a = std::abs(std::remainder(x + y, 0.25));
    const double b = std::abs(std::remainder(x - y, 0.25));
    return std::min(a, b) < 0.02 ? Hex(0x3A3430) : Mix(Hex(0xFFF0B8), Hex(0xF0B850), Noise(x, y, 6, 233));
}

Shade Jars(double x, double y) {
    constexpr std::array<unsigned, 5> colours = {0xB8543A, 0x5A8A4A, 0xD8B04A, 0x7A4A7A, 0x4A7A9A};
    const auto jar = static_cast<int>(x * 4.0);
    const double across = std::abs(x * 4.0 - jar - 0.5);
    const double top = 0.26 + 0.16 * Scatter(jar, 1, 235);
    if (across > 0.40 || y < top - 0.10) return Hex(0x2A1C10);
    if (y < top) return across < 0.28 ? Hex(0xE8DCC0) : Hex(0x2A1C10);
    if (y > 0.52 && y < 0.76 && across < 0.26) return Hex(0xF4ECD4);
    return Hex(colours[static_cast<std::size_t>(jar * 2) % colours.size()]) * (1.25 - across * 1.6);
}

// Fruit heaped in a crate, seen from above.
Shade Fruit(double x, double y) {
    constexpr std::array<unsigned, 4> colours = {0xC8322A, 0xE8A030, 0x7AA83A, 0xD8502E};
    const demo::Pebble fruit = demo::Pebbles(x, y, 6, 237);
    const auto pick = static_cast<std::size_t>(fruit.pick * 3.99);
    return Hex(colours[pick]) * (1.25 - 1.3 * fruit.nearest);
}

constexpr std::array<Picture, 16> allPictures = {Letter,      OpenBook,  ClockFace,  Target, Crest,     BreadSign,
                                                 MugSign,     AnvilSign, MapPicture, Runes,  Landscape, StarChart,
                                                 SundialFace, Lattice,   Jars,       Fruit};

constexpr std::array<unsigned, SwatchCount> swatches = {
    0xC23A30, 0x7E2420, 0xE2802E, 0xEFCB48, 0xE8B83C, 0xC8983E, 0xB87040, 0xB4603C,  //
    0xE89AB0, 0x8A4E9C, 0x5C4AA0, 0x3A66B4, 0x263E72, 0x86BCE4, 0x2E8A8A, 0x7ED0D0,  //
    0x4E9440, 0x2C5A2C, 0x96C24A, 0x6E7E3C, 0x7C7434, 0xF0DEB0, 0xF2F0EA, 0xE8DCC2,  //
    0x9A9A98, 0x5E6064, 0x2A2A2E, 0x4C525C, 0x7E5430, 0x4A301C, 0xC8A068, 0xC88642,  //
    0xFFE9A0, 0xF0641E, 0xF07A6A, 0xF6B8A0, 0xEBDCAE, 0x8A5632, 0x6A2C50, 0xE07A24};

}  // namespace

Tone PaintSigns(double u, double v) {
    const auto column = static_cast<int>(u * 4.0);
    const auto row = static_cast<int>(v * 4.0);
    return {allPictures[static_cast<std::size_t>(row * 4 + column)](u * 4.0 - column, v * 4.0 - row), 1.0, 0.0};
}

Tone PaintSwatches(double u, double v) {
    const auto index = static_cast<std::size_t>(v * 8.0) * 8 + static_cast<std::size_t>(u * 8.0);
    const double down = v * 8.0 - std::floor(v * 8.0);
    const Shade shade = index < swatches.size() ? Hex(swatches[index]) : Hex(0x808080);
    return {shade * (1.10 - 0.42 * Smooth(0.15, 0.85, down) + 0.10 * (Noise(u, v, 64, 241) - 0.5)), 1.0, 0.0};
}

}  // namespace items
