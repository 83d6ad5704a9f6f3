#include "graphics/text/GlyphGrid.h"

#include <algorithm>

#include "platform/FontRaster.h"

namespace G {
namespace {

constexpr int space = 32;

struct Columns {
    int leftmost = -1;  // -1: nothing is lit
    int rightmost = -1;
};

Columns LitColumns(const std::vector<std::uint8_t>& bitmap, int side) {
    Columns lit;
    for (int x = 0; x < side; ++x)
        for (int y = 0; y < side; ++y) {
            const int pixel = y * side + x;
            if (bitmap[static_cast<std::size_t>(pixel)] == 0) continue;
            if (lit.leftmost < 0) lit.leftmost = x;
            lit.rightmost = x;
            break;
        }
    return lit;
}

int AdvanceOf(int code, int cell, const Columns& lit) {
    if (code == space) return static_cast<int>(cell * 0.3);
    return lit.leftmost < 0 ? 0 : lit.rightmost - lit.leftmost + 2;
}

void CopyCell(const std::vector<std::uint8_t>& bitmap, int code, GlyphGrid& grid) {
    const int rowLength = 16 * grid.cell;
    const int corner = (code / 16) * grid.cell * rowLength + (code % 16) * grid.cell;
    for (int y = 0; y < grid.cell; ++y)
        std::copy_n(bitmap.begin() + y * grid.cell, grid.cell, grid.coverage.begin() + corner + y * rowLength);
}

}  // namespace

GlyphGrid DrawGlyphGrid(platform::FontFace& face, int cell, bool centred) {
    GlyphGrid grid;
    grid.cell = cell;
    grid.coverage.resize(static_cast<std::size_t>(256) * static_cast<std::size_t>(cell * cell));
    std::vector<std::uint8_t> bitmap;
    for (int code = 0; code < 256; ++code) {
        const auto drawn = static_cast<unsigned char>(std::max(code, space));
        face.DrawGlyph(drawn, 1, 1, cell, bitmap);
        const Columns lit = LitColumns(bitmap, cell);
        grid.widths[static_cast<std::size_t>(code)] = AdvanceOf(code, cell, lit);
        if (lit.leftmost < 0) continue;
        const int rightMargin = cell - 1 - lit.rightmost;
        const int shift = centred ? (rightMargin - lit.leftmost) / 2 : 1 - lit.leftmost;
        face.DrawGlyph(drawn, shift + 1, 1, cell, bitmap);
        CopyCell(bitmap, code, grid);
    }
    return grid;
}

}  // namespace G
