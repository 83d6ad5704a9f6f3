#pragma once
// Font faces to glyph coverage, for the Windows western code page (1252). One thread at a time.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class FontFace {
  public:
    virtual ~FontFace() = default;
    // Draws one character code with its cell's top left corner at (x, y) into a square bitmap of `side` x `side`
    // coverage bytes (0 nothing, 255 full), which is cleared first. What lies outside is cut off. Codes without a glyph
    // draw nothing.
    virtual void DrawGlyph(unsigned char code, int x, int y, int side, std::vector<std::uint8_t>& coverage) = 0;
};

constexpr int maxCellHeight = 1024;

// A face by name (aliases and case as the system's font matching has them; a name that the system does not know gives
// Liberation Sans) whose cell, ascent plus descent, is `cellHeight` pixels high, 1 to maxCellHeight; normal weight,
// upright, antialiased. Null when no face at all can be had. A face file is loaded once for all its sizes.
std::unique_ptr<FontFace> OpenFont(const std::string& faceName, int cellHeight);

}  // namespace platform
