#pragma once
// Paints pictures texel by texel, with what their heights make of the light.

#include <cstdint>
#include <functional>
#include <vector>

#include "demo/art/Canvas.h"

namespace items {

// One spot of a picture. `height` is in widths of the picture; only its slopes matter.
struct Tone {
    demo::Shade shade;
    double alpha = 1.0;
    double height = 0.0;
};

// u and v run from 0 to 1 from the top left.
using Paint = std::function<Tone(double u, double v)>;

using Texels = std::vector<std::uint32_t>;  // A8R8G8B8, row by row from the top

// Every texel is the mean of nine places. A cut-out is left with alpha 0 and 255 alone, and what is clear takes the
// colour of what is near, which filtering would show at the edges.
Texels PaintTexels(unsigned width, unsigned height, const Paint& paint);
// The normals of the heights, x to the right, y down and z out of the picture in red, green and blue, 128 for 0.
Texels PaintNormals(unsigned width, unsigned height, const Paint& paint);

}  // namespace items
