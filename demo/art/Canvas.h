#pragma once
// Pictures of the demo world before they become palette indices.

#include <cstddef>
#include <functional>
#include <vector>

namespace demo {

// Red, green and blue, 0 to 1; may leave the range while a picture is made.
struct Shade {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
};

Shade operator*(Shade shade, double factor);
Shade operator+(Shade a, Shade b);
Shade Mix(Shade a, Shade b, double towardB);
// From 0xRRGGBB.
Shade Hex(unsigned code);

// What a spot is made of: paint, nothing at all, or one of the two kinds of light that have palette entries of their
// own, so that a palette can light windows at night. Of a light, `shade.red` is the brightness.
enum class Matter { Paint, Clear, Glass, Glow };

struct Spot {
    Shade shade;
    Matter matter = Matter::Paint;
};

Spot Clear();
Spot Glass(double brightness);
Spot Glow(double brightness);

class Canvas {
  public:
    Canvas(int canvasWidth, int canvasHeight);
    // Every spot by the middle of its place: u and v from 0 to 1.
    Canvas(int canvasWidth, int canvasHeight, const std::function<Spot(double u, double v)>& paint);

    [[nodiscard]] int Width() const { return width; }
    [[nodiscard]] int Height() const { return height; }
    // Positions beyond an edge come in again at the other one.
    [[nodiscard]] Spot& At(int x, int y);
    [[nodiscard]] const Spot& At(int x, int y) const;
    // Between spots paint is mixed; other matter is taken from the nearest one. u and v are held within 0 to 1.
    [[nodiscard]] Spot Sample(double u, double v) const;
    // Paints over the place with this share of the shade.
    void Blend(int x, int y, Shade shade, double share);

  private:
    int width;
    int height;
    std::vector<Spot> spots;
};

// Noise from 0 to 1 that repeats in u and v; `period` cells across.
double Noise(double u, double v, int period, unsigned salt);
// Several octaves of it.
double Clouds(double u, double v, int period, int octaves, unsigned salt);

// The nearest of scattered points, `count` x `count` of them, repeating in u and v.
struct Pebble {
    double nearest = 0.0;  // distance to it in cells
    double edge = 0.0;     // how much farther the second nearest is
    double pick = 0.0;     // a number from 0 to 1 of its own
};
Pebble Pebbles(double u, double v, int count, unsigned salt);

// 0 below `from`, 1 above `to`, smooth between.
double Smooth(double from, double to, double value);

}  // namespace demo
