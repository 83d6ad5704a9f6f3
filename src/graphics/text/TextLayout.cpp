#include "graphics/text/TextLayout.h"

#include <algorithm>

namespace G {
namespace {

constexpr unsigned char lineFeed = 10;
constexpr unsigned char space = 32;

// Keeps positions off the exact boundary between two pixels, where rounding would decide which texel is drawn.
constexpr float pixelNudge = 0.005F;

// Takes the line that starts at `first` and says where the next one starts.
std::size_t TakeLine(std::string_view text, std::size_t first, const TextMetrics& metrics, float wrapWidth,
                     TextLine& line) {
    line = {first, text.size(), 0.0F};
    std::size_t afterSpace = first;  // nothing but the line's start: no space yet
    float widthAtSpace = 0.0F;
    bool holdsCharacter = false;
    for (std::size_t i = first; i < text.size(); ++i) {
        const auto code = static_cast<unsigned char>(text[i]);
        if (code == lineFeed) {
            line.end = i;
            return i + 1;
        }
        if (code < space) continue;
        const float pen = line.width + metrics.Advance(code);
        if (wrapWidth > 0.0F && pen >= wrapWidth && holdsCharacter) {
            line.end = i;
            if (afterSpace != first) {
                line.end = afterSpace;
                line.width = widthAtSpace;
            }
            return line.end;
        }
        holdsCharacter = true;
        line.width = pen;
        if (code == space) {
            afterSpace = i + 1;
            widthAtSpace = pen;
        }
    }
    return text.size();
}

void AddQuad(std::vector<TextVertex>& vertices, float x, float y, float size, unsigned char code,
             std::uint32_t colour) {
    const int column = code % 16;
    const int row = code / 16;
    const float u0 = static_cast<float>(column) / 16.0F;
    const float v0 = static_cast<float>(row) / 16.0F;
    const float u1 = u0 + 1.0F / 16.0F;
    const float v1 = v0 + 1.0F / 16.0F;
    const TextVertex topLeft{x, y, colour, u0, v0};
    const TextVertex topRight{x + size, y, colour, u1, v0};
    const TextVertex bottomRight{x + size, y + size, colour, u1, v1};
    const TextVertex bottomLeft{x, y + size, colour, u0, v1};
    vertices.insert(vertices.end(), {topLeft, topRight, bottomRight, topLeft, bottomRight, bottomLeft});
}

}  // namespace

float TextMetrics::Advance(unsigned char code) const {
    if (code < space) return 0.0F;
    if (centred) return size * fixedAdvance;
    return static_cast<float>(widths[code]) / static_cast<float>(pixelHeight) * size;
}

std::vector<TextLine> WrapText(std::string_view text, const TextMetrics& metrics, float wrapWidth) {
    std::vector<TextLine> lines;
    for (std::size_t next = 0; next < text.size();)
        next = TakeLine(text, next, metrics, wrapWidth, lines.emplace_back());
    return lines;
}

TextExtent ExtentOf(const std::vector<TextLine>& lines, float size) {
    TextExtent extent{0.0F, static_cast<float>(lines.size()) * size};
    for (const TextLine& line : lines)
        extent.width = std::max(extent.width, line.width);
    return extent;
}

std::vector<TextVertex> BuildTextQuads(const ColouredText& text, const std::vector<TextLine>& lines,
                                       const TextMetrics& metrics, float x, float y) {
    std::vector<TextVertex> vertices;
    vertices.reserve(text.text.size() * verticesPerCharacter);
    std::uint32_t colour = defaultTextColour;
    auto change = text.changes.begin();
    float top = y + pixelNudge;
    for (const TextLine& line : lines) {
        float pen = 0.0F;
        for (std::size_t i = line.first; i < line.end; ++i) {
            for (; change != text.changes.end() && change->index <= i; ++change)
                colour = change->colour;
            const auto code = static_cast<unsigned char>(text.text[i]);
            if (code < space) continue;
            AddQuad(vertices, x + pixelNudge + pen, top, metrics.size, code, colour);
            pen += metrics.Advance(code);
        }
        top += metrics.size;
    }
    return vertices;
}

}  // namespace G
