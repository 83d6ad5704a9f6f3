// The cut-out plants of flora.png.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "demo/world/MapPainter.h"
#include "tools/items/Textures.h"

namespace items {

namespace {

using demo::Hex;
using demo::Mix;
using demo::Scatter;
using demo::Shade;
using demo::Smooth;

// What stands in a square: x from -0.5 to 0.5, y up from 0 to 1. Later layers cover earlier ones.
struct Sprig {
    double x = 0.0;
    double y = 0.0;
    Tone tone{{}, 0.0, 0.0};

    void Cover(const Shade& shade) { tone = {shade, 1.0, 0.0}; }
};

// Blades that grow from around the middle and lean outwards; lighter toward the tip.
void Blades(Sprig& s, int count, double spread, double width, double tallest, Shade low, Shade high, int salt) {
    for (int i = 0; i < count; ++i) {
        const double lean = count > 1 ? 2.0 * i / (count - 1) - 1.0 : 0.0;
        const double height = tallest * (0.65 + 0.35 * Scatter(i, 1, static_cast<unsigned>(salt)));
        const double up = s.y / height;
        if (up > 1.0) continue;
        const double middle =
            lean * 0.16 + lean * (spread - 0.16) * up * up + 0.05 * (Scatter(i, 2, static_cast<unsigned>(salt)) - 0.5);
        if (std::abs(s.x - middle) < width * (1.0 - up * up * 0.95))
            s.Cover(Mix(low, high, up) * (0.85 + 0.3 * Scatter(i, 3, static_cast<unsigned>(salt))));
    }
}

// The distance to the middle in radii of a flower with `petals` petals; 9 where there is none.
double FlowerAt(const Sprig& s, double x, double y, double radius, int petals) {
    const double dx = s.x - x;
    const double dy = s.y - y;
    const double distance = std::hypot(dx, dy) / radius;
    const double lobe = 0.78 + 0.22 * std::cos(petals * std::atan2(dy, dx));
    return distance < lobe ? distance : 9.0;
}

void Stem(Sprig& s, double x, double y, Shade shade) {
    const double up = std::clamp(s.y / y, 0.0, 1.0);
    if (s.y < y && std::abs(s.x - x * (0.4 + 0.6 * up)) < 0.014) s.Cover(shade);
}

void Flowers(Sprig& s, int count, double radius, int petals, Shade rim, Shade middle, double eye, unsigned salt) {
    for (int i = 0; i < count; ++i) {
        const double x = -0.38 + 0.76 * (i + 0.5) / count + 0.06 * (Scatter(i, 1, salt) - 0.5);
        const double y = 0.50 + 0.40 * Scatter(i, 2, salt);
        Stem(s, x, y, Hex(0x3E7030));
        const double at = FlowerAt(s, x, y, radius * (0.85 + 0.3 * Scatter(i, 3, salt)), petals);
        if (at < eye)
            s.Cover(middle);
        else if (at < 1.5)
            s.Cover(rim * (1.08 - 0.28 * at));
    }
}

// A leaf from (x, y) in this direction.
void Leaf(Sprig& s, double x, double y, double degrees, double length, double width, Shade shade) {
    const double angle = degrees * std::numbers::pi / 180.0;
    const double along = ((s.x - x) * std::cos(angle) + (s.y - y) * std::sin(angle)) / length;
    const double across = (s.y - y) * std::cos(angle) - (s.x - x) * std::sin(angle);
    if (along < 0.0 || along > 1.0) return;
    const double half = width * std::sin(std::numbers::pi * std::pow(along, 0.8));
    if (std::abs(across) > half) return;
    const double vein = std::abs(across) < 0.006 ? 0.82 : 1.0;
    s.Cover(shade * vein * (across > 0.0 ? 1.10 : 0.92) * (0.85 + 0.25 * along));
}

void Grass(Sprig& s) {
    Blades(s, 13, 0.44, 0.026, 0.95, Hex(0x2F5A20), Hex(0x86B848), 3);
    Blades(s, 7, 0.26, 0.026, 0.72, Hex(0x3A6A24), Hex(0x9CC858), 5);
}

void Meadow(Sprig& s, int flowers, double radius, int petals, Shade rim, Shade middle, double eye, unsigned salt) {
    Blades(s, 9, 0.40, 0.024, 0.50, Hex(0x2F5A20), Hex(0x6FA03C), static_cast<int>(salt));
    Flowers(s, flowers, radius, petals, rim, middle, eye, salt);
}

void Fern(Sprig& s) {
    for (int frond = 0; frond < 5; ++frond) {
        const double lean = (frond - 2) / 2.0;
        for (int i = 1; i < 12; ++i) {
            const double up = i / 12.0;
            const double x = lean * 0.42 * std::pow(up, 1.4);
            const double y = up * (0.95 - 0.35 * lean * lean);
            const double length = 0.15 * (1.05 - up);
            for (const double side : {-1.0, 1.0})
                Leaf(s, x, y, 90.0 - 50.0 * lean * up + side * 62.0, length, 0.024,
                     Mix(Hex(0x2C5A22), Hex(0x7CB04A), up));
        }
    }
}

void Reeds(Sprig& s) {
    Blades(s, 9, 0.36, 0.020, 0.90, Hex(0x3C5A26), Hex(0x9AAE58), 11);
    for (int i = 0; i < 4; ++i) {
        const double x = -0.24 + 0.16 * i;
        const double top = 0.80 + 0.18 * Scatter(i, 4, 13);
        Stem(s, x, top, Hex(0x6E8040));
        const double dy = (s.y - top + 0.10) / 0.10;
        if (std::hypot((s.x - x) / 0.034, dy) < 1.0 || (std::abs(s.x - x) < 0.034 && std::abs(dy) < 0.6))
            s.Cover(Mix(Hex(0x4A2A14), Hex(0x7A4C26), 0.5 + (s.x - x) / 0.07));
    }
}

void Wheat(Sprig& s) {
    for (int i = 0; i < 9; ++i) {
        const double x = -0.38 + 0.095 * i;
        const double top = 0.74 + 0.16 * Scatter(i, 1, 17);
        Stem(s, x, top, Hex(0xB08C34));
        for (int k = 0; k < 5; ++k)
            for (const double side : {-1.0, 1.0})
                Leaf(s, x, top - 0.16 + 0.055 * k, 90.0 + side * 28.0, 0.10, 0.020,
                     Mix(Hex(0xC09030), Hex(0xF2D474), k / 4.0));
    }
}

void Seaweed(Sprig& s) {
    for (int i = 0; i < 6; ++i) {
        const double height = 0.70 + 0.28 * Scatter(i, 1, 19);
        const double up = s.y / height;
        const double middle = -0.33 + 0.13 * i + 0.06 * std::sin(9.0 * s.y + 1.7 * i);
        const double width = 0.048 * (1.0 - 0.6 * up * up) * (0.8 + 0.2 * std::sin(30.0 * s.y));
        if (up < 1.0 && std::abs(s.x - middle) < width)
            s.Cover(Mix(Hex(0x17503E), Hex(0x5FB878), up) * (std::abs(s.x - middle) < 0.008 ? 0.8 : 1.0));
    }
}

void Spray(Sprig& s, Shade dark, Shade light, bool berries) {
    for (int i = 0; i < 26; ++i) {
        // Golden steps around, the inner leaves last.
        const double reach = 0.26 * std::sqrt((26 - i) / 26.0);
        const double way = 137.5 * i;
        const double x = reach * std::cos(way * std::numbers::pi / 180.0);
        const double y = 0.5 + reach * std::sin(way * std::numbers::pi / 180.0);
        Leaf(s, x, y, way + 50.0 * (Scatter(i, 3, 23) - 0.5), 0.25, 0.085,
             Mix(dark, light, 0.8 * Scatter(i, 4, 23) + 0.2 * i / 26.0));
    }
    if (!berries) return;
    for (int i = 0; i < 12; ++i) {
        const double at =
            std::hypot(s.x - 0.74 * (Scatter(i, 5, 23) - 0.5), s.y - 0.5 - 0.74 * (Scatter(i, 6, 23) - 0.5)) / 0.052;
        if (at < 1.0) s.Cover(Mix(Hex(0xF2705A), Hex(0xA81E24), at));
    }
}

void Geraniums(Sprig& s) {
    for (int i = 0; i < 12; ++i) {
        const double x = -0.36 + 0.72 * Scatter(i, 1, 29);
        const double y = 0.08 + 0.40 * Scatter(i, 2, 29);
        const double at = FlowerAt(s, x, y, 0.15, 7);
        if (at < 1.5) s.Cover(Mix(Hex(0x6FA048), Hex(0x2E5C26), at));
    }
    for (int i = 0; i < 13; ++i) {
        const double x = -0.34 + 0.68 * Scatter(i, 3, 29);
        const double y = 0.48 + 0.38 * Scatter(i, 4, 29);
        const double at = FlowerAt(s, x, y, 0.11, 5);
        if (at < 1.5) s.Cover(Mix(Hex(0xFF8A7A), Hex(0xC01E30), at));
    }
}

// Hangs from the top.
void WillowTwigs(Sprig& s) {
    for (int i = 0; i < 9; ++i) {
        const double x = -0.42 + 0.105 * i + 0.03 * std::sin(7.0 * s.y + i);
        const double low = 0.02 + 0.30 * Scatter(i, 1, 31);
        if (s.y > low && std::abs(s.x - x) < 0.012) s.Cover(Hex(0x6E7A34));
        for (int k = 0; k < 11; ++k) {
            const double y = 0.98 - 0.09 * k;
            if (y > low)
                Leaf(s, x, y, k % 2 == 0 ? -62.0 : -118.0, 0.13, 0.024,
                     Mix(Hex(0x4E7A2A), Hex(0xA8C858), Scatter(i, k + 2, 31)));
        }
    }
}

void Ivy(Sprig& s) {
    for (int i = 0; i < 30; ++i) {
        const double y = 0.95 * Scatter(i, 1, 37);
        const double x = (0.9 - 0.5 * y) * (Scatter(i, 2, 37) - 0.5);
        const double at = FlowerAt(s, x, y, 0.11, 3);
        if (at < 1.5) s.Cover(Mix(Hex(0x6E9C48), Hex(0x264E22), at) * (0.8 + 0.4 * Scatter(i, 3, 37)));
    }
}

void Cabbage(Sprig& s) {
    for (int i = 0; i < 9; ++i) {
        const double degrees = 40.0 * i + 10.0;
        Leaf(s, 0.0, 0.5, degrees, 0.49, 0.19, Mix(Hex(0x4E8A44), Hex(0x86B868), Scatter(i, 1, 41)));
    }
    const double at = std::hypot(s.x, s.y - 0.5) / 0.25;
    if (at < 1.0) s.Cover(Mix(Hex(0xD8EAA8), Hex(0x7AB05C), at));
}

void SeaFan(Sprig& s) {
    const double angle = std::atan2(s.x, s.y + 0.02);
    const double reach = std::hypot(s.x, s.y);
    const double edge = 0.86 + 0.08 * std::cos(9.0 * angle);
    if (reach > edge || std::abs(angle) > 0.62 + 0.1 * reach) return;
    const bool ribs = std::abs(std::sin(angle * (reach < 0.45 ? 9.0 : 18.0))) < 0.42;
    const bool rungs = std::abs(std::sin(26.0 * reach)) < 0.40;
    if (ribs || rungs || reach < 0.12) s.Cover(Mix(Hex(0x8A2A6A), Hex(0xF08AC0), reach));
}

}  // namespace

Tone PaintSpray(double u, double v, unsigned dark, unsigned light) {
    Sprig s{u - 0.5, 1.0 - v, {Hex(dark), 0.0, 0.0}};
    Spray(s, Hex(dark), Hex(light), false);
    return s.tone;
}

Tone PaintFlora(double u, double v) {
    const auto column = static_cast<int>(u * 4.0);
    const auto row = static_cast<int>(v * 4.0);
    Sprig s{u * 4.0 - column - 0.5, row + 1 - v * 4.0, {Hex(0x5A8A38), 0.0, 0.0}};
    // A margin stays clear, so that nothing shows in the next square.
    if (std::abs(s.x) > 0.485 || s.y > 0.985) return s.tone;
    switch (row * 4 + column) {
        case 0:
            Grass(s);
            break;
        case 1:
            Meadow(s, 6, 0.10, 9, Hex(0xFFFFFF), Hex(0xF4C430), 0.38, 101);
            break;
        case 2:
            Meadow(s, 5, 0.12, 4, Hex(0xE83A26), Hex(0x2A1A18), 0.30, 103);
            break;
        case 3:
            Meadow(s, 9, 0.075, 5, Hex(0x6A74E0), Hex(0xF6F0C0), 0.25, 105);
            break;
        case 4:
            Fern(s);
            break;
        case 5:
            Reeds(s);
            break;
        case 6:
            Wheat(s);
            break;
        case 7:
            Seaweed(s);
            break;
        case 8:
            Spray(s, Hex(0x2F6224), Hex(0x78AE40), false);
            break;
        case 9:
            Spray(s, Hex(0x2F6224), Hex(0x78AE40), true);
            break;
        case 10:
            Geraniums(s);
            break;
        case 11:
            WillowTwigs(s);
            break;
        case 12:
            Ivy(s);
            break;
        case 13:
            Cabbage(s);
            break;
        case 14:
            Meadow(s, 5, 0.115, 8, Hex(0xF2688C), Hex(0xB02848), 0.40, 107);
            break;
        default:
            SeaFan(s);
            break;
    }
    return s.tone;
}

}  // namespace items
