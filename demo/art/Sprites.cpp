#include "demo/art/Sprites.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "demo/art/Palettes.h"

namespace demo {

namespace {

// The diamond of a floor is drawn this much smaller than its sprite.
constexpr double shrink = 1.025;
// Beyond its edges by this much of its side a sprite still shows the picture, because the client reads four pixels
// around each place.
constexpr double margin = 0.03;
constexpr unsigned wallWidth = 128;
constexpr unsigned wallHeight = 142;

// Lights are one of eight entries.
std::uint8_t LightIndex(const Spot& spot) {
    const int step = std::clamp(static_cast<int>(spot.shade.red * entriesPerLight), 0, entriesPerLight - 1);
    return static_cast<std::uint8_t>((spot.matter == Matter::Glass ? glassEntries : glowEntries) + step);
}

}  // namespace

SpriteMaker::SpriteMaker(const RgbPalette& thePalette) : palette(thePalette), nearestOf(64 * 64 * 64) {}

IndexedImage SpriteMaker::FloorSprite(const Canvas& picture, unsigned side) {
    const int size = static_cast<int>(side);
    const double scale = std::numbers::sqrt2 * shrink;
    return ToIndices(Canvas(size, size, [&](double su, double sv) {
        const double x = (su - 0.5) * scale;
        const double y = (sv - 0.5) * scale;
        const double u = (x + y) / std::numbers::sqrt2 + 0.5;
        const double v = (y - x) / std::numbers::sqrt2 + 0.5;
        const bool inside = std::max(std::abs(u - 0.5), std::abs(v - 0.5)) < 0.5 + margin;
        return inside ? picture.Sample(u, v) : Clear();
    }));
}

IndexedImage SpriteMaker::WallSprite(const Canvas& picture, int position) {
    const bool onLowX = position % 2 == 0;
    return ToIndices(Canvas(static_cast<int>(wallWidth), static_cast<int>(wallHeight), [&](double su, double sv) {
        const double u = su * 2.0;
        const double v = onLowX ? (sv + 0.225 * u - 0.14) / 0.9 : (sv - 0.225 * u + 0.10) / 0.9;
        if (u >= 1.0 + margin || v < 0.0 || v >= 1.0 + margin) return Clear();
        // Low gx panels run from right to left in the usual view and lie in the shade.
        Spot spot = picture.Sample(onLowX ? 1.0 - u : u, v);
        if (onLowX && spot.matter == Matter::Paint) spot.shade = spot.shade * 0.84;
        return spot;
    }));
}

IndexedImage SpriteMaker::Flat(const Canvas& picture) {
    return ToIndices(picture);
}

IndexedImage SpriteMaker::ToIndices(const Canvas& sprite) {
    IndexedImage image;
    image.width = static_cast<unsigned>(sprite.Width());
    image.height = static_cast<unsigned>(sprite.Height());
    std::vector<Shade> now(image.width + 2);
    std::vector<Shade> below(image.width + 2);
    for (int y = 0; y < sprite.Height(); ++y) {
        for (int x = 0; x < sprite.Width(); ++x) {
            const Spot& spot = sprite.At(x, y);
            if (spot.matter != Matter::Paint) {
                image.indices.push_back(spot.matter == Matter::Clear ? std::uint8_t{0} : LightIndex(spot));
                continue;
            }
            const auto at = static_cast<std::size_t>(x) + 1;
            const Shade wanted = spot.shade + now[at] * 0.7;
            const std::uint8_t index = Nearest(wanted);
            image.indices.push_back(index);
            const Rgb& got = palette[index];
            const Shade error = wanted + Shade{got.red / 255.0, got.green / 255.0, got.blue / 255.0} * -1.0;
            now[at + 1] = now[at + 1] + error * (7.0 / 16.0);
            below[at - 1] = below[at - 1] + error * (3.0 / 16.0);
            below[at] = below[at] + error * (5.0 / 16.0);
            below[at + 1] = below[at + 1] + error * (1.0 / 16.0);
        }
        now = std::exchange(below, std::vector<Shade>(image.width + 2));
    }
    return image;
}

std::uint8_t SpriteMaker::Nearest(Shade shade) {
    const auto step = [](double value) {
        return static_cast<std::size_t>(std::lround(std::clamp(value, 0.0, 1.0) * 63.0));
    };
    const std::size_t red = step(shade.red);
    const std::size_t green = step(shade.green);
    const std::size_t blue = step(shade.blue);
    std::uint8_t& known = nearestOf[red << 12 | green << 6 | blue];
    if (known != 0) return known;
    double best = 1e9;
    for (int entry = 1; entry < glassEntries; ++entry) {
        if (entry == cleanedEntry) continue;
        const Rgb& rgb = palette[static_cast<std::size_t>(entry)];
        const double dr = static_cast<double>(red) / 63.0 - rgb.red / 255.0;
        const double dg = static_cast<double>(green) / 63.0 - rgb.green / 255.0;
        const double db = static_cast<double>(blue) / 63.0 - rgb.blue / 255.0;
        const double distance = 0.9 * dr * dr + 1.4 * dg * dg + 0.7 * db * db;
        if (distance >= best) continue;
        best = distance;
        known = static_cast<std::uint8_t>(entry);
    }
    return known;
}

}  // namespace demo
