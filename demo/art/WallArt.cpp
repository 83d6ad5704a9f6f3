#include "demo/art/WallArt.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "demo/world/Catalogue.h"
#include "demo/world/MapPainter.h"

namespace demo {

namespace {

// Full walls end here, because the upper corners of a panel lie outside its sprite.
constexpr double top = 0.13;
constexpr double pi = std::numbers::pi;
using Paint = std::function<Spot(double u, double v)>;

Canvas Panel(const Paint& paint) {
    return {128, 256, paint};
}

// Noise over a panel: it repeats from panel to panel, and is not stretched by the panel's height.
double Grain(double u, double v, int period, unsigned salt) {
    return Clouds(u, 2.0 * v, period, 4, salt);
}

// Squared stones in courses, `courses` to a panel, lit from above.
Spot Masonry(double u, double v, int courses, int across, Shade dark, Shade light, Shade mortar, unsigned salt) {
    const int course = static_cast<int>(v * courses);
    const double along = u * across + (course % 2) * 0.5;
    const int column = static_cast<int>(std::floor(along)) % across;
    const double fx = along - std::floor(along);
    const double fy = v * courses - course;
    const double aspect = static_cast<double>(courses) / (2.0 * across);
    const double rough = 0.05 * (Grain(u, v, 8, salt + 5) - 0.5);
    const double border = std::min({fx * aspect, (1.0 - fx) * aspect, fy, 1.0 - fy}) + rough;
    const double bevel = 0.2 * (Smooth(0.24, 0.06, fy) - Smooth(0.24, 0.06, 1.0 - fy));
    const Shade face =
        Mix(dark, light, Scatter(column, course, salt)) * (0.82 + bevel + 0.4 * Grain(u, v, 6, salt + 2));
    return {Mix(mortar, face, Smooth(0.03, 0.08, border))};
}

Spot StoneAt(double u, double v) {
    if (v < top) return Clear();
    if (v < 0.2) {
        // Cap stones.
        const double fv = (v - top) / (0.2 - top);
        return {Hex(0xA89F8E) * (1.05 - 0.35 * fv + 0.2 * (Grain(u, v, 8, 11) - 0.5)) *
                (std::abs(u - 0.5) < 0.012 ? 0.6 : 1.0)};
    }
    return Masonry(u, v, 12, 2, Hex(0x6F6A66), Hex(0xA39B8C), Hex(0x45423C), 501);
}

Spot CastleAt(double u, double v) {
    const bool merlon = std::abs(u - 0.5) > 0.22;
    if (v < (merlon ? top : 0.23)) return Clear();
    if (v < (merlon ? 0.155 : 0.255)) return {Hex(0xB7B3AB)};
    return Masonry(u, v, 9, 2, Hex(0x777A80), Hex(0xA9ABAC), Hex(0x4A4B50), 511);
}

Spot BannerAt(double u, double v) {
    const double x = u - 0.5;
    const double hem = 0.74 - 0.07 * std::abs(std::remainder(u * 4.0 - 0.5, 1.0)) * 2.0;
    if (std::abs(x) > 0.3 || v < 0.29 || v > hem) {
        if (std::abs(x) < 0.35 && std::abs(v - 0.285) < 0.012)
            return {Hex(0x5B3C1E) * (1.2 - 20.0 * std::abs(v - 0.285))};
        return CastleAt(u, v);
    }
    const double fold = 0.88 + 0.16 * std::sin(x * 22.0);
    const double y = (v - 0.48) * 2.0;
    const double r = std::hypot(x, y);
    const double star = 0.1 + 0.06 * std::cos(5.0 * std::atan2(y, x) + pi / 2.0);
    if (r < star || std::abs(r - 0.21) < 0.014 || std::abs(x) > 0.27) return {Hex(0xE0B23C) * fold};
    return {Hex(0xA3222E) * fold};
}

Shade Plaster(double u, double v) {
    const double age = Smooth(0.45, 0.8, Grain(u, v, 3, 521));
    return Mix(Hex(0xE9DCBE), Hex(0xC9B487), 0.7 * age) * (0.94 + 0.12 * Grain(u, v, 16, 525));
}

Shade Oak(double u, double v, bool upright) {
    const double grain = upright ? Noise(u * 4.0, v, 8, 531) : Noise(u, v * 8.0, 8, 532);
    return Mix(Hex(0x3B2616), Hex(0x6E4A2B), grain);
}

// The beams of a timber frame: posts at both ends, sills and a rail in the middle.
bool BeamAt(double u, double v, Spot& beam) {
    const double post = std::min(u, 1.0 - u);
    for (const double sill : {top + 0.03, 0.5, 0.86})
        if (std::abs(v - sill) < 0.03) {
            beam = {Oak(u, v, false) * (1.0 - 6.0 * (v - sill))};
            return true;
        }
    if (post < 0.07) {
        beam = {Oak(u, v, true) * (1.0 + 0.25 * Smooth(0.07, 0.03, u))};
        return true;
    }
    return false;
}

Spot TimberAt(double u, double v) {
    Spot beam;
    if (v < top) return Clear();
    if (v > 0.89) return Masonry(u, v, 16, 2, Hex(0x77706A), Hex(0xA79C8D), Hex(0x4A453F), 541);
    if (BeamAt(u, v, beam)) return beam;
    // The plaster lies a little behind the beams.
    const double shadow = 0.75 + 0.25 * Smooth(0.07, 0.12, u) * Smooth(0.0, 0.04, std::fmod(v - top + 0.28, 0.36));
    return {Plaster(u, v) * shadow};
}

Spot BraceAt(double u, double v) {
    Spot beam;
    if (v < top || v > 0.89 || BeamAt(u, v, beam)) return TimberAt(u, v);
    const double upper = v < 0.5 ? (v - 0.19) / 0.28 : (0.83 - v) / 0.3;
    if (std::abs(u - (0.07 + 0.86 * upper)) < 0.065) return {Oak(u, v, true) * 0.95};
    return TimberAt(u, v);
}

// Panes in a frame between the given heights; none outside it.
bool WindowAt(double u, double v, double upper, double lower, Shade frame, Spot& spot) {
    const double x = std::abs(u - 0.5);
    if (x > 0.27 || v < upper || v > lower) return false;
    const double middle = (upper + lower) / 2.0;
    const bool bar = x > 0.225 || x < 0.018 || v < upper + 0.022 || v > lower - 0.022 || std::abs(v - middle) < 0.009;
    if (bar)
        spot = {frame * (1.05 - 0.9 * (v - upper))};
    else
        spot = Glass(0.25 + 0.5 * (1.0 - (v - upper) / (lower - upper)) +
                     0.25 * Smooth(0.08, 0.0, std::abs(u - 0.3 - 0.5 * (v - upper))));
    return true;
}

Spot FlowerBox(double u, double v, double upper) {
    const double leaf = Noise(u, v * 2.0, 24, 551);
    if (v < upper + 0.035) {
        if (leaf > 0.72) return {Mix(Hex(0xD8344A), Hex(0xF2A0B0), Noise(u, v, 32, 552))};
        return {Mix(Hex(0x2C5A24), Hex(0x6A9A3B), leaf)};
    }
    return {Oak(u, v, false) * 1.25};
}

Spot TimberWindowAt(double u, double v) {
    Spot spot;
    if (std::abs(u - 0.5) < 0.31 && v > 0.6 && v < 0.68) return FlowerBox(u, v, 0.6);
    if (WindowAt(u, v, 0.25, 0.61, Hex(0x5A3D24), spot)) return spot;
    return TimberAt(u, v);
}

Spot BrickAt(double u, double v) {
    if (v < top) return Clear();
    if (v < 0.17) return {Hex(0xC8BDA8) * (1.1 - 4.0 * (v - top))};
    if (v > 0.9) return Masonry(u, v, 16, 2, Hex(0x77706A), Hex(0xA79C8D), Hex(0x4A453F), 541);
    return Masonry(u, v, 24, 4, Hex(0x8A3F2E), Hex(0xB9694A), Hex(0xB9A88E), 561);
}

Spot BrickWindowAt(double u, double v) {
    Spot spot;
    if (WindowAt(u, v, 0.27, 0.62, Hex(0xF0EADB), spot)) return spot;
    if (std::abs(u - 0.5) < 0.31 && v > 0.62 && v < 0.655) return {Hex(0xD8D0C0) * (1.0 - 6.0 * (v - 0.62))};
    if (std::abs(u - 0.5) < 0.3 && v > 0.225 && v < 0.27) return {Hex(0xC2B8A6) * (0.9 + 0.2 * Noise(u, v, 8, 562))};
    return BrickAt(u, v);
}

Spot Leaves(double u, double v, unsigned salt, Shade dark, Shade light) {
    const Pebble leaf = Pebbles(u, 2.0 * v, 16, salt);
    const double shade = 0.55 * leaf.pick + 0.45 * (1.0 - leaf.nearest);
    return {Mix(dark, light, std::clamp(shade, 0.0, 1.0)) * (0.75 + 0.4 * Grain(u, v, 5, salt + 7))};
}

Spot HedgeAt(double u, double v) {
    if (v < 0.46 + 0.05 * (Noise(u, 0.3, 12, 571) - 0.5)) return Clear();
    const double light = 1.15 - 0.5 * Smooth(0.46, 1.0, v);
    Spot spot = Leaves(u, v, 575, Hex(0x1E4019), Hex(0x5F9138));
    spot.shade = spot.shade * light;
    return spot;
}

Spot PicketAt(double u, double v) {
    const double slat = u * 6.0 - std::floor(u * 6.0) - 0.5;
    const double tip = 0.56 + 0.09 * std::abs(slat);
    const Shade wood = Mix(Hex(0xF3EEE2), Hex(0xB9AE9A), 0.6 * Grain(u, v, 8, 581));
    if (std::abs(slat) < 0.3 && v > tip)
        return {wood * (1.0 - 0.35 * Smooth(0.1, 0.3, slat)) * (v > 0.95 ? 0.75 : 1.0)};
    if (std::abs(v - 0.67) < 0.02 || std::abs(v - 0.88) < 0.02) return {wood * 0.72};
    return Clear();
}

Spot ParapetAt(double u, double v) {
    if (v < 0.6) return Clear();
    if (v < 0.67 || v > 0.94) return {Hex(0xB4AA98) * (v < 0.62 ? 1.15 : 0.95) * (0.9 + 0.2 * Grain(u, v, 8, 591))};
    const double x = std::abs(std::remainder(u - 0.125, 0.25));
    const double swell = 0.035 + 0.035 * std::sin((v - 0.67) / 0.27 * pi);
    if (x > swell) return Clear();
    return {Hex(0xA59B8A) * (1.1 - 0.5 * x / swell)};
}

Spot RailingAt(double u, double v) {
    const double x = std::remainder(u - 0.1, 0.2);
    const double knob = std::hypot(x, (v - 0.555) * 2.0);
    if (knob < 0.032) return {Mix(Hex(0xD9A94A), Hex(0x7A5A20), knob / 0.032)};
    const bool bar = std::abs(x) < 0.014 && v > 0.56;
    const bool rail = std::abs(v - 0.63) < 0.009 || std::abs(v - 0.95) < 0.009;
    const double ring = std::abs(std::hypot(std::remainder(u, 0.2), (v - 0.69) * 2.0) - 0.075);
    return bar || rail || ring < 0.013 ? Spot{Hex(0x2B2E33) * (1.3 - 10.0 * std::abs(x))} : Clear();
}

Spot RuinAt(double u, double v) {
    const double broken = 0.3 + 0.26 * Clouds(u, 0.37, 3, 3, 601);
    if (v < broken) return Clear();
    if (Clouds(u, 2.0 * v, 4, 4, 605) > 0.56) return Leaves(u, v, 606, Hex(0x22421B), Hex(0x6F9A45));
    return Masonry(u, v, 11, 2, Hex(0x6A6A62), Hex(0x9B988A), Hex(0x3C3D35), 611);
}

Spot BookcaseAt(double u, double v) {
    if (v < top) return Clear();
    const double shelf = (v - top) / (1.0 - top) * 5.0;
    const int row = static_cast<int>(shelf);
    const double fy = shelf - row;
    if (fy > 0.88 || v < top + 0.02) return {Oak(u, v, false) * 1.3};
    if (std::min(u, 1.0 - u) < 0.035) return {Oak(u, v, true)};
    const int book = static_cast<int>(u * 15.0);
    const double fx = u * 15.0 - book;
    const double tall = 0.12 + 0.3 * Scatter(book, row, 621);
    if (fy < tall) return {Hex(0x1E130C)};
    const unsigned bindings[] = {0x8C2F2B, 0x2F5B7A, 0x3E6B3A, 0xB38A3A, 0x5B3A6B, 0x7A5333, 0xC9BDA0};
    const Shade binding = Hex(bindings[static_cast<std::size_t>(Scatter(book, row, 622) * 7.0)]);
    if (std::abs(fy - tall - 0.1) < 0.015 || std::abs(fy - 0.8) < 0.012) return {Mix(binding, Hex(0xE8C86A), 0.8)};
    return {binding * (0.55 + 0.6 * std::sin(fx * pi))};
}

Spot CrystalAt(double u, double v) {
    const double spire = 0.16 + 0.3 * std::abs(std::remainder(u * 3.0, 1.0)) +
                         0.12 * Scatter(static_cast<int>(std::lround(u * 3.0)) % 3, 0, 631);
    if (v < spire) return Clear();
    const double facet = u * 3.0 - std::floor(u * 3.0);
    if (std::abs(facet - 0.5) < 0.02 || facet < 0.03) return Glow(0.9 - 0.5 * v);
    const Shade body = Mix(Hex(0xBFE6F7), Hex(0x5A55B8), v) * (facet < 0.5 ? 1.1 : 0.78);
    return {body * (0.9 + 0.2 * Noise(u * 2.0, v, 8, 632))};
}

Spot ReefAt(double u, double v) {
    const Pebble hole = Pebbles(u, 2.0 * v, 6, 641);
    const double edge = 0.42 + 0.16 * Clouds(u, 0.1, 5, 2, 645);
    if (v < edge) return Clear();
    if (hole.nearest < 0.2 && v < 0.9) return hole.nearest < 0.16 ? Clear() : Spot{Hex(0x6E2F4A)};
    const Shade coral = Mix(Hex(0xD9566B), Hex(0xF7B98A), Grain(u, v, 4, 646));
    return {coral * (0.7 + 0.5 * Smooth(0.2, 0.5, hole.nearest)) * (1.1 - 0.35 * v)};
}

// An opening: posts at both ends under a lintel with two braces.
Spot DoorwayAt(double u, double v) {
    if (v < top) return Clear();
    const double post = std::min(u, 1.0 - u);
    if (v < 0.21) return {Oak(u, v, false) * (1.15 - 4.0 * (v - top))};
    if (post < 0.09) return {Oak(u, v, true) * (u < 0.5 ? 1.15 : 0.9)};
    if (v < 0.21 + 0.16 * (1.0 - (post - 0.09) / 0.2) && v > 0.16 * (1.0 - (post - 0.09) / 0.12) + 0.15 && post < 0.29)
        return {Oak(u, v, true) * 0.85};
    return Clear();
}

Spot RoseArchAt(double u, double v) {
    const double x = (u - 0.5) * 2.0;
    const double y = (v - 0.5) * 2.6;
    const double reach = v < 0.5 ? std::hypot(x, y) : std::abs(x);
    const double thick = 0.2 + 0.1 * (Noise(u, v * 2.0, 10, 651) - 0.5);
    if (reach > 0.99 || reach < 0.99 - thick - 0.06 || v < top) return Clear();
    const Pebble rose = Pebbles(u, 2.0 * v, 9, 655);
    if (rose.pick > 0.55 && rose.nearest < 0.36)
        return {Mix(Hex(0xF6C5CF), Hex(0xC02C46), 0.5 + 0.5 * std::sin(rose.nearest * 30.0)) *
                (1.0 - 0.4 * rose.nearest)};
    return Leaves(u, v, 657, Hex(0x23451C), Hex(0x6C9C42));
}

}  // namespace

std::map<int, Canvas> PaintWalls() {
    const std::pair<int, Spot (*)(double, double)> painters[] = {{walls::Doorway, DoorwayAt},
                                                                 {walls::RoseArch, RoseArchAt},
                                                                 {walls::Stone, StoneAt},
                                                                 {walls::Timber, TimberAt},
                                                                 {walls::TimberWindow, TimberWindowAt},
                                                                 {walls::TimberBrace, BraceAt},
                                                                 {walls::Hedge, HedgeAt},
                                                                 {walls::Picket, PicketAt},
                                                                 {walls::Parapet, ParapetAt},
                                                                 {walls::Brick, BrickAt},
                                                                 {walls::BrickWindow, BrickWindowAt},
                                                                 {walls::Railing, RailingAt},
                                                                 {walls::Ruin, RuinAt},
                                                                 {walls::Bookcase, BookcaseAt},
                                                                 {walls::Crystal, CrystalAt},
                                                                 {walls::Reef, ReefAt},
                                                                 {walls::Castle, CastleAt},
                                                                 {walls::CastleBanner, BannerAt}};
    std::map<int, Canvas> all;
    for (const auto& [number, painter] : painters)
        all.insert_or_assign(number, Panel(painter));
    return all;
}

}  // namespace demo
