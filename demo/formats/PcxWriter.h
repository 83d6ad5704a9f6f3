#pragma once
// Writes 8-bit PCX pictures with their palette.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace demo {

struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};
using RgbPalette = std::array<Rgb, 256>;

// `indices` are width x height palette indices, row by row from the top.
std::string WritePcx(unsigned width, unsigned height, const std::vector<std::uint8_t>& indices,
                     const RgbPalette& palette);

}  // namespace demo
