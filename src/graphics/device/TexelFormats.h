#pragma once
// The texel layouts of the formats that textures are made in, and the way from A8R8G8B8 words into each.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/GraphicsDevice.h"

namespace DXG {

// A rectangle of A8R8G8B8 words, row by row from the top.
struct PixelRectangle {
    const std::uint32_t* pixels = nullptr;
    unsigned width = 0;
    unsigned height = 0;
};

// False for formats that cannot be written (palettes, depth).
bool CanWriteFormat(platform::PixelFormat format);

// Converts a rectangle into texels of `format` at `out`, `rowPitch` bytes from row to row. Channels are cut to the
// format's bits, after an ordered dither when `dither` is set; a format of alpha alone takes the alpha, one of
// luminance alone the brightness. False, with nothing written, for formats that cannot be written.
bool WriteTexels(const PixelRectangle& from, platform::PixelFormat format, bool dither, unsigned char* out,
                 std::size_t rowPitch);

// Brightness of a pixel, 0 to 255.
std::uint32_t BrightnessOf(std::uint32_t argb);

// Half the size, at least 1 a side: each pixel the mean of its four (`smooth`) or the first of them.
std::vector<std::uint32_t> HalfSize(const PixelRectangle& from, bool smooth);

}  // namespace DXG
