#include "demo/art/Canvas.h"

#include <algorithm>
#include <cmath>

#include "demo/world/MapPainter.h"

namespace demo {

namespace {

int Wrap(int value, int size) {
    const int rest = value % size;
    return rest < 0 ? rest + size : rest;
}

}  // namespace

Shade operator*(Shade shade, double factor) {
    return {shade.red * factor, shade.green * factor, shade.blue * factor};
}
Shade operator+(Shade a, Shade b) {
    return {a.red + b.red, a.green + b.green, a.blue + b.blue};
}
Shade Mix(Shade a, Shade b, double towardB) {
    return a * (1.0 - towardB) + b * towardB;
}
Shade Hex(unsigned code) {
    return {(code >> 16 & 255) / 255.0, (code >> 8 & 255) / 255.0, (code & 255) / 255.0};
}

Spot Clear() {
    return {{}, Matter::Clear};
}
Spot Glass(double brightness) {
    return {{brightness, brightness, brightness}, Matter::Glass};
}
Spot Glow(double brightness) {
    return {{brightness, brightness, brightness}, Matter::Glow};
}

Canvas::Canvas(int canvasWidth, int canvasHeight)
    : width(canvasWidth),
      height(canvasHeight),
      spots(static_cast<std::size_t>(canvasWidth) * static_cast<std::size_t>(canvasHeight)) {}

Canvas::Canvas(int canvasWidth, int canvasHeight, const std::function<Spot(double u, double v)>& paint)
    : Canvas(canvasWidth, canvasHeight) {
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            At(x, y) = paint((x + 0.5) / width, (y + 0.5) / height);
}

const Spot& Canvas::At(int x, int y) const {
    return spots[static_cast<std::size_t>(Wrap(y, height)) * static_cast<std::size_t>(width) +
                 static_cast<std::size_t>(Wrap(x, width))];
}

Spot& Canvas::At(int x, int y) {
    return const_cast<Spot&>(static_cast<const Canvas*>(this)->At(x, y));
}

Spot Canvas::Sample(double u, double v) const {
    const double x = std::clamp(u * width - 0.5, 0.0, width - 1.0);
    const double y = std::clamp(v * height - 0.5, 0.0, height - 1.0);
    const Spot& nearest = At(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)));
    if (nearest.matter != Matter::Paint) return nearest;
    const int left = std::min(static_cast<int>(x), width - 2);
    const int top = std::min(static_cast<int>(y), height - 2);
    Shade sum;
    double weight = 0.0;
    for (int dy = 0; dy < 2; ++dy)
        for (int dx = 0; dx < 2; ++dx) {
            const Spot& spot = At(left + dx, top + dy);
            if (spot.matter != Matter::Paint) continue;
            const double share = (1.0 - std::abs(x - left - dx)) * (1.0 - std::abs(y - top - dy));
            sum = sum + spot.shade * share;
            weight += share;
        }
    return {weight > 0.0 ? sum * (1.0 / weight) : nearest.shade, Matter::Paint};
}

void Canvas::Blend(int x, int y, Shade shade, double share) {
    Spot& spot = At(x, y);
    if (spot.matter == Matter::Paint) spot.shade = Mix(spot.shade, shade, share);
}

double Noise(double u, double v, int period, unsigned salt) {
    const double x = u * period;
    const double y = v * period;
    const int left = static_cast<int>(std::floor(x));
    const int top = static_cast<int>(std::floor(y));
    const double fx = Smooth(0.0, 1.0, x - left);
    const double fy = Smooth(0.0, 1.0, y - top);
    const auto value = [&](int dx, int dy) { return Scatter(Wrap(left + dx, period), Wrap(top + dy, period), salt); };
    return std::lerp(std::lerp(value(0, 0), value(1, 0), fx), std::lerp(value(0, 1), value(1, 1), fx), fy);
}

double Clouds(double u, double v, int period, int octaves, unsigned salt) {
    double sum = 0.0;
    double weights = 0.0;
    double weight = 1.0;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += weight * Noise(u, v, period << octave, salt + static_cast<unsigned>(octave));
        weights += weight;
        weight *= 0.55;
    }
    return sum / weights;
}

Pebble Pebbles(double u, double v, int count, unsigned salt) {
    const double x = u * count;
    const double y = v * count;
    const int cellX = static_cast<int>(std::floor(x));
    const int cellY = static_cast<int>(std::floor(y));
    double best = 9.0;
    double second = 9.0;
    double pick = 0.0;
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            const int px = Wrap(cellX + dx, count);
            const int py = Wrap(cellY + dy, count);
            const double distance = std::hypot(cellX + dx + 0.15 + 0.7 * Scatter(px, py, salt) - x,
                                               cellY + dy + 0.15 + 0.7 * Scatter(px, py, salt + 1) - y);
            second = std::min(second, std::max(distance, best));
            if (distance >= best) continue;
            best = distance;
            pick = Scatter(px, py, salt + 2);
        }
    return {best, second - best, pick};
}

double Smooth(double from, double to, double value) {
    const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

}  // namespace demo
