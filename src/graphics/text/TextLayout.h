#pragma once
// Wrapping of a text into lines and the quads of its characters, as plain arrays. Character codes are unsigned bytes.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace G {

// From the character at `index` on, the text has this colour (A8R8G8B8).
struct ColourChange {
    std::uint32_t index = 0;
    std::uint32_t colour = 0;
    bool operator==(const ColourChange&) const = default;
};

// A text with its colour changes in increasing order, built piece by piece. Of several changes at one index the last
// counts.
struct ColouredText {
    std::string text;
    std::vector<ColourChange> changes;

    ColouredText& Colour(std::uint32_t argb) {
        changes.push_back({static_cast<std::uint32_t>(text.size()), argb});
        return *this;
    }
    ColouredText& Add(const std::string& piece) {
        text += piece;
        return *this;
    }
    bool operator==(const ColouredText&) const = default;
};

// The colour of a text before its first change.
constexpr std::uint32_t defaultTextColour = 0xFFDDDDDD;

// How far each character moves the pen.
struct TextMetrics {
    std::array<int, 256> widths{};  // advances in texels of a font that is pixelHeight texels high
    int pixelHeight = 1;
    bool centred = false;       // every character advances by size x fixedAdvance instead
    float size = 16.0F;         // of a line and a quad in pixels
    float fixedAdvance = 0.5F;  // a fraction of size

    // In pixels; 0 for codes below 32, which are not drawn.
    [[nodiscard]] float Advance(unsigned char code) const;
};

// Characters [first, end) of the text; codes below 32 within it are not drawn.
struct TextLine {
    std::size_t first = 0;
    std::size_t end = 0;
    float width = 0.0F;  // where the pen stands at its end, in pixels
};

// A line ends at a line feed, which belongs to none, or when the pen reaches wrapWidth (none when not above 0): after
// its last space, else before the character that reaches it. A line holds at least one character, however narrow the
// width. What follows the last line feed is a line only when it is not empty.
std::vector<TextLine> WrapText(std::string_view text, const TextMetrics& metrics, float wrapWidth);

// The widest line and the number of lines times the size, in pixels.
struct TextExtent {
    float width = 0.0F;
    float height = 0.0F;
};
TextExtent ExtentOf(const std::vector<TextLine>& lines, float size);

struct TextVertex {
    float x, y;
    std::uint32_t colour;
    float u, v;
};
static_assert(sizeof(TextVertex) == 20, "the layout of the text's vertex format");

constexpr std::size_t verticesPerCharacter = 6;

// Two triangles per drawn character, size x size pixels with the character's cell of a 16 x 16 atlas; the first line's
// top left corner at (x, y).
std::vector<TextVertex> BuildTextQuads(const ColouredText& text, const std::vector<TextLine>& lines,
                                       const TextMetrics& metrics, float x, float y);

}  // namespace G
