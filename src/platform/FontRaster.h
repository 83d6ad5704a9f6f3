#pragma once
// Font faces to glyph coverage, for the Windows western code page (1252).

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class FontFace {
  public:
    virtual ~FontFace() = default;
    // Draws one character code with its cell's top left corner at (x, y) into a square bitmap of `side` x `side` coverage
    // bytes (0 nothing, 255 full), which is cleared first. What lies outside is cut off. Codes without a glyph draw nothing.
    virtual void DrawGlyph(unsigned char code, int x, int y, int side, std::vector<std::uint8_t>& coverage) = 0;
};

// A face by name (aliases and case as the system's font matching has them) whose cell, ascent plus descent, is `cellHeight`
// pixels high; normal weight, upright, antialiased. Null when no face at all can be had.
std::unique_ptr<FontFace> OpenFont(const std::string& faceName, int cellHeight);

}  // namespace platform
