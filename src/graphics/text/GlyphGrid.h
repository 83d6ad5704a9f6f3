#pragma once
// The 256 character codes of a face drawn into a 16 x 16 grid of cells, with how far each advances.

#include <array>
#include <cstdint>
#include <vector>

namespace platform {
class FontFace;
}

namespace G {

struct GlyphGrid {
    int cell = 0;  // side of a cell in texels
    std::vector<std::uint8_t>
        coverage;                   // 16 cell x 16 cell, row by row; code's cell at column code % 16, row code / 16
    std::array<int, 256> widths{};  // advances in texels; 0 for codes that light nothing
};

// Each glyph begins at its cell's column 1, or is centred in its cell; its top at row 1.
GlyphGrid DrawGlyphGrid(platform::FontFace& face, int cell, bool centred);

}  // namespace G
