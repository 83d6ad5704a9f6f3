// Wrapping, measuring and quads on the CPU, with a made-up font: letters 10 texels wide, spaces 5, code 0x81 nothing.
#include <gtest/gtest.h>

#include "graphics/text/GlyphGrid.h"
#include "graphics/text/TextLayout.h"
#include "platform/FontRaster.h"

namespace {

G::TextMetrics TestMetrics(float size = 16.0F, bool centred = false) {
    G::TextMetrics metrics{{}, 16, centred, size, 0.5F};
    metrics.widths.fill(10);
    metrics.widths[' '] = 5;
    metrics.widths[0x81] = 0;
    return metrics;
}

using Lines = std::vector<std::string>;
Lines Wrapped(const std::string& text, float wrapWidth, bool centred = false) {
    Lines pieces;
    for (const G::TextLine& line : G::WrapText(text, TestMetrics(16, centred), wrapWidth))
        pieces.push_back(text.substr(line.first, line.end - line.first));
    return pieces;
}

TEST(TextLayout, Wraps) {
    const struct {
        const char* name;
        std::string text;
        float wrapWidth;
        Lines lines;
    } rows[] = {
        {"empty", "", 100, {}},
        {"no wrapping", "aaaaaaaaaaaaaaa bbb", 0, {"aaaaaaaaaaaaaaa bbb"}},
        {"after the last space", "aaa bbb ccc", 100, {"aaa bbb ", "ccc"}},
        {"the limit itself is too far", "aaaa", 40, {"aaa", "a"}},
        {"just below the limit", "aaaa", 40.5F, {"aaaa"}},
        {"inside a long word", "aaaaaaaaaaaa", 100, {"aaaaaaaaa", "aaa"}},
        {"a space that reaches the limit", "aaaa bb", 45, {"aaaa", " bb"}},
        {"such a space after another", "aa aa bb", 50, {"aa ", "aa bb"}},
        {"spaces before a long word", "  aaaaa", 50, {"  ", "aaaa", "a"}},
        {"narrower than a character", "ab c", 3, {"a", "b", " ", "c"}},
        {"narrower, after a dropped code", "\1ab", 3, {"\1a", "b"}},
        {"line feeds", "a\nb\n\nc", 100, {"a", "b", "", "c"}},
        {"last line feed", "a\n", 100, {"a"}},
        {"nothing wide", "\x81\x81\x81", 1, {"\x81\x81\x81"}},
        {"bytes above 127", "\xE9\xFF\xE9\xE9", 31, {"\xE9\xFF\xE9", "\xE9"}},
        {"negative width", "aa", -1, {"aa"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Wrapped(row.text, row.wrapWidth), row.lines) << row.name;
    EXPECT_EQ(Wrapped("aaa aaa", 50, true), (Lines{"aaa ", "aaa"})) << "centred: 8 pixels each, spaces too";

    const G::TextExtent extent = G::ExtentOf(G::WrapText("aa\ta aa", TestMetrics(32), 75), 32);
    EXPECT_FLOAT_EQ(extent.width, 70) << "the space before the break counts";
    EXPECT_FLOAT_EQ(extent.height, 64);
}

TEST(TextLayout, QuadsCoverTheirCells) {
    const G::TextMetrics metrics = TestMetrics(24);
    const G::ColouredText text{"a\t \xE9\nb", {}};
    const auto vertices = G::BuildTextQuads(text, G::WrapText(text.text, metrics, 0), metrics, 100, 50);
    const float places[][4] = {{100, 50, 1, 6}, {115, 50, 0, 2}, {122.5F, 50, 9, 14}, {100, 74, 2, 6}};  // x, y, cell
    ASSERT_EQ(vertices.size(), std::size(places) * 6);
    float area = 0;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const auto& [x, y, column, row] = places[i / 6];
        const G::TextVertex& vertex = vertices[i];
        const G::TextVertex& next = vertices[i / 3 * 3 + (i + 1) % 3];
        area += (vertex.x * next.y - next.x * vertex.y) / 2;
        EXPECT_NEAR(vertex.u * 16 - column, (vertex.x - 0.005F - x) / 24, 1e-4) << i;
        EXPECT_NEAR(vertex.v * 16 - row, (vertex.y - 0.005F - y) / 24, 1e-4) << i;
    }
    EXPECT_NEAR(area, 4 * 24 * 24, 0.5) << "the triangles fill the squares, clockwise";
}

TEST(TextLayout, ColourChanges) {
    using Colours = std::vector<std::uint32_t>;
    constexpr std::uint32_t grey = 0xFFDDDDDD;
    const std::pair<G::ColouredText, Colours> rows[] = {
        {{"ab", {}}, {grey, grey}},
        {{"abc", {{0, 3}, {1, 1}, {1, 2}}}, {3, 2, 2}},
        {{"a\tb", {{1, 1}}}, {grey, 1}},
        {{"a\nb", {{1, 1}}}, {grey, 1}},
        {{"aaaab", {{3, 1}, {4, 2}}}, {grey, grey, grey, 1, 2}},  // where the line breaks
        {{"ab", {{1, 1}, {2, 2}, {0xFFFFFFFF, 3}}}, {grey, 1}},
    };
    for (const auto& [text, wanted] : rows) {
        Colours colours;
        const auto lines = G::WrapText(text.text, TestMetrics(), 40);
        const auto vertices = G::BuildTextQuads(text, lines, TestMetrics(), 0, 0);
        for (std::size_t i = 0; i < vertices.size(); i += 6)
            colours.push_back(vertices[i + 5].colour);
        EXPECT_EQ(colours, wanted) << text.text;
    }
}

// Lights code % 8 columns from 3 to the right of the given place, so that grids can be worked out by hand.
class BarFace : public platform::FontFace {
  public:
    void DrawGlyph(unsigned char code, int x, int y, int side, std::vector<std::uint8_t>& coverage) override {
        coverage.assign(static_cast<std::size_t>(side * side), 0);
        for (int column = x + 3; column < std::min(x + 3 + code % 8, side); ++column)
            coverage.at(static_cast<std::size_t>(y * side + column)) = code;
    }
};

TEST(GlyphGrid, PlacesGlyphsAndAdvances) {
    BarFace face;
    EXPECT_EQ(G::DrawGlyphGrid(face, 64, false).widths[' '], 19);
    for (const bool centred : {false, true}) {
        const G::GlyphGrid grid = G::DrawGlyphGrid(face, 16, centred);
        const std::pair<std::size_t, int> widths[] = {{' ', 4}, {9, 0}, {'@', 0}, {'A', 2}, {0xFF, 8}};
        for (const auto& [code, width] : widths)
            EXPECT_EQ(grid.widths[code], width) << code;
        const auto row = grid.coverage.begin() + (15 * 16 + 1) * 256 + 15 * 16;  // the second one of the last cell
        // Measured in columns 4 to 10: margins 4 and 5, half the difference truncated toward zero.
        const std::string lit = centred ? "....#######....." : ".#######........";
        for (int x = 0; x < 16; ++x)
            EXPECT_EQ(row[x], lit[static_cast<std::size_t>(x)] == '#' ? 0xFF : 0) << x << ' ' << centred;
    }
}

}  // namespace
