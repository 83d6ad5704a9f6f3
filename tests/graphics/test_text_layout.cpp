// Wrapping, measuring and quads on the CPU, with a made-up font: letters 10 texels wide, spaces 5, code 0x81 nothing.
#include <gtest/gtest.h>

#include "graphics/text/GlyphGrid.h"
#include "graphics/text/TextLayout.h"
#include "platform/FontRaster.h"

namespace {

G::TextMetrics TestMetrics(float size = 16.0F) {
    G::TextMetrics metrics;
    metrics.widths.fill(10);
    metrics.widths[' '] = 5;
    metrics.widths[0x81] = 0;
    metrics.pixelHeight = 16;
    metrics.size = size;
    return metrics;
}

std::vector<std::string> Wrapped(const std::string& text, float wrapWidth, const G::TextMetrics& metrics) {
    std::vector<std::string> pieces;
    for (const G::TextLine& line : G::WrapText(text, metrics, wrapWidth))
        pieces.push_back(text.substr(line.first, line.end - line.first));
    return pieces;
}

TEST(TextLayout, Wraps) {
    const struct {
        const char* name;
        std::string text;
        float wrapWidth;
        std::vector<std::string> lines;
    } rows[] = {
        {"empty", "", 100, {}},
        {"no wrapping", "aaaaaaaaaaaaaaa bbb", 0, {"aaaaaaaaaaaaaaa bbb"}},
        {"after the last space", "aaa bbb ccc", 100, {"aaa bbb ", "ccc"}},
        {"the limit itself is too far", "aaaa", 40, {"aaa", "a"}},
        {"just below the limit", "aaaa", 40.5F, {"aaaa"}},
        {"inside a long word", "aaaaaaaaaaaa", 100, {"aaaaaaaaa", "aaa"}},
        {"a space that reaches the limit", "aaaa bb", 45, {"aaaa", " bb"}},
        {"such a space after another", "aa aa bb", 50, {"aa ", "aa bb"}},
        {"one space alone", "  aaaaa", 50, {"  ", "aaaa", "a"}},
        {"narrower than a character", "ab c", 3, {"a", "b", " ", "c"}},
        {"narrower, after a dropped code", "\1ab", 3, {"\1a", "b"}},
        {"line feeds", "a\nb\n\nc", 100, {"a", "b", "", "c"}},
        {"last line feed", "a\n", 100, {"a"}},
        {"line feed where it would wrap", "aaa\nb", 31, {"aaa", "b"}},
        {"nothing wide", "\x81\x81\x81", 1, {"\x81\x81\x81"}},
        {"bytes above 127", "\xE9\xFF\xE9\xE9", 31, {"\xE9\xFF\xE9", "\xE9"}},
        {"negative width", "aa", -1, {"aa"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Wrapped(row.text, row.wrapWidth, TestMetrics()), row.lines) << row.name;

    G::TextMetrics centred = TestMetrics();
    centred.centred = true;  // 8 pixels each, spaces too
    EXPECT_EQ(Wrapped("aaa aaa", 50, centred), (std::vector<std::string>{"aaa ", "aaa"}));
}

TEST(TextLayout, Measures) {
    const G::TextMetrics metrics = TestMetrics(32.0F);
    const G::TextExtent extent = G::ExtentOf(G::WrapText("aa\taa a\nb", metrics, 0), 32.0F);
    EXPECT_FLOAT_EQ(extent.width, 2 * (5 * 10 + 5));
    EXPECT_FLOAT_EQ(extent.height, 64);
    const G::TextExtent wrapped = G::ExtentOf(G::WrapText("aa aa", metrics, 60), 32.0F);
    EXPECT_FLOAT_EQ(wrapped.width, 50);  // the space before the break counts
    EXPECT_FLOAT_EQ(wrapped.height, 64);
}

TEST(TextLayout, QuadsCoverTheirCells) {
    const G::TextMetrics metrics = TestMetrics(24.0F);
    const G::ColouredText text{"a\t \xE9\nb", {}};
    const auto vertices = G::BuildTextQuads(text, G::WrapText(text.text, metrics, 0), metrics, 100, 50);
    const struct {
        float x, y;
        unsigned char code;
    } quads[] = {{100, 50, 'a'}, {115, 50, ' '}, {122.5F, 50, 0xE9}, {100, 74, 'b'}};
    ASSERT_EQ(vertices.size(), std::size(quads) * 6);
    for (std::size_t i = 0; i < std::size(quads); ++i) {
        float area = 0;
        for (std::size_t k = 0; k < 6; ++k) {
            const G::TextVertex& vertex = vertices[6 * i + k];
            // Every vertex is a corner of the square, and its place in the cell agrees with its place on screen.
            const float right = (vertex.x - 0.005F - quads[i].x) / 24;
            const float down = (vertex.y - 0.005F - quads[i].y) / 24;
            EXPECT_TRUE(std::abs(right) < 1e-4F || std::abs(right - 1) < 1e-4F) << i << ' ' << right;
            EXPECT_NEAR(vertex.u * 16 - static_cast<float>(quads[i].code % 16), right, 1e-4);
            EXPECT_NEAR(vertex.v * 16 - static_cast<float>(quads[i].code / 16), down, 1e-4);
            EXPECT_EQ(vertex.colour, 0xFFDDDDDDU);
            const G::TextVertex& next = vertices[6 * i + k / 3 * 3 + (k + 1) % 3];
            area += (vertex.x * next.y - next.x * vertex.y) / 2;
        }
        EXPECT_NEAR(area, 24 * 24, 0.1) << "the two triangles fill the square, clockwise";
    }
}

TEST(TextLayout, ColourChanges) {
    constexpr std::uint32_t grey = 0xFFDDDDDD;
    const struct {
        const char* name;
        G::ColouredText text;
        std::vector<std::uint32_t> colours;  // of each drawn character
    } rows[] = {
        {"none", {"ab", {}}, {grey, grey}},
        {"at the start", {"ab", {{0, 1}}}, {1, 1}},
        {"the last of several counts", {"abc", {{1, 1}, {1, 2}}}, {grey, 2, 2}},
        {"at a dropped code", {"a\tb", {{1, 1}}}, {grey, 1}},
        {"at a line feed", {"a\nb", {{1, 1}}}, {grey, 1}},
        {"where the line breaks", {"aaaab", {{3, 1}, {4, 2}}}, {grey, grey, grey, 1, 2}},
        {"beyond the text", {"ab", {{1, 1}, {2, 2}, {0xFFFFFFFF, 3}}}, {grey, 1}},
    };
    for (const auto& row : rows) {
        const auto lines = G::WrapText(row.text.text, TestMetrics(), 40);
        const auto vertices = G::BuildTextQuads(row.text, lines, TestMetrics(), 0, 0);
        std::vector<std::uint32_t> colours;
        for (std::size_t i = 0; i < vertices.size(); i += 6)
            colours.push_back(vertices[i + 5].colour);
        EXPECT_EQ(colours, row.colours) << row.name;
    }
    EXPECT_EQ(G::ColouredText().Colour(1).Add("ab").Colour(2).Add("c"), (G::ColouredText{"abc", {{0, 1}, {2, 2}}}));
}

// Draws code % 8 columns of pixels from 3 columns right of the given place, so that grids can be worked out by hand.
class BarFace : public platform::FontFace {
  public:
    void DrawGlyph(unsigned char code, int x, int y, int side, std::vector<std::uint8_t>& coverage) override {
        coverage.assign(static_cast<std::size_t>(side * side), 0);
        if (code == ' ') return;
        for (int column = x + 3; column < x + 3 + code % 8; ++column)
            if (column >= 0 && column < side) coverage[static_cast<std::size_t>(y * side + column)] = code;
    }
};

TEST(GlyphGrid, PlacesGlyphsAndAdvances) {
    BarFace face;
    for (const bool centred : {false, true}) {
        const G::GlyphGrid grid = G::DrawGlyphGrid(face, 16, centred);
        ASSERT_EQ(grid.coverage.size(), 256U * 256U);
        EXPECT_EQ(grid.widths[' '], 4);  // 16 x 0.3
        EXPECT_EQ(grid.widths[9], 0);    // drawn as a space
        EXPECT_EQ(grid.widths['@'], 0);  // lights nothing
        EXPECT_EQ(grid.widths['A'], 2);
        EXPECT_EQ(grid.widths[0xFF], 8);
        for (const int code : {0x41, 0x44, 0xFF}) {
            // Measured from column 4 on: margins 4 and 12 - n, half the difference truncated toward zero.
            const int count = code % 8;
            const int first = centred ? 4 + (12 - count - 4) / 2 : 1;
            for (int x = 0; x < 16; ++x) {
                const int texel =
                    grid.coverage[static_cast<std::size_t>((code / 16 * 16 + 1) * 256 + code % 16 * 16 + x)];
                EXPECT_EQ(texel, x >= first && x < first + count ? code : 0) << code << ' ' << x << ' ' << centred;
            }
        }
    }
    EXPECT_EQ(G::DrawGlyphGrid(face, 64, false).widths[' '], 19);
}

}  // namespace
