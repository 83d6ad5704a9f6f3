#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "platform/FontRaster.h"

namespace {

// Born before everything that opening a font makes, and so the last to die: as the final report's message box does, it
// writes when those are gone. What goes wrong then shows in the program's exit code.
struct LateWriter {
    LateWriter() = default;
    LateWriter(const LateWriter&) = delete;
    LateWriter& operator=(const LateWriter&) = delete;
    ~LateWriter() {
        if (!platform::OpenFont("Arial", 15)) std::abort();
    }
} lateWriter;

struct Drawn {
    std::vector<std::uint8_t> coverage;
    int left = 99, top = 99, right = -1, bottom = -1;  // of the lit pixels, inclusive
};

Drawn Draw(const std::unique_ptr<platform::FontFace>& face, int code, int x, int y, int side) {
    Drawn drawn;
    face->DrawGlyph(static_cast<unsigned char>(code), x, y, side, drawn.coverage);
    for (int i = 0; i < side * side; ++i) {
        if (drawn.coverage.at(static_cast<std::size_t>(i)) == 0) continue;
        drawn.left = std::min(drawn.left, i % side);
        drawn.top = std::min(drawn.top, i / side);
        drawn.right = std::max(drawn.right, i % side);
        drawn.bottom = i / side;
    }
    return drawn;
}

TEST(FontRaster, CellIsAscentPlusDescent) {
    const auto face = platform::OpenFont("Arial", 64);
    // The cell spans rows 10 to 73; the base line lies at ascent / (ascent + descent) = 0.81 of it.
    EXPECT_NEAR(Draw(face, 'H', 10, 10, 99).bottom + 1, 10 + 52, 1);
    EXPECT_NEAR(Draw(face, 'H', 10, 10, 99).top, 10 + 13, 1);
    EXPECT_GE(Draw(face, 0xC5, 10, 10, 99).top, 10);
    EXPECT_NEAR(Draw(face, 'g', 10, 10, 99).bottom, 70, 3);
    for (const int height : {0, -3, platform::maxCellHeight + 1})
        EXPECT_FALSE(platform::OpenFont("Arial", height));
}

TEST(FontRaster, MovesAndCutsOff) {
    const auto face = platform::OpenFont("Arial", 15);
    const Drawn whole = Draw(face, 'W', 20, 20, 64);
    EXPECT_EQ(Draw(face, 'W', 23, 18, 64).left, whole.left + 3);
    EXPECT_EQ(Draw(face, 'W', 23, 18, 64).top, whole.top - 2);
    for (const auto& [x, y] : {std::pair{-5, 0}, {0, -8}, {12, 0}, {0, 10}, {-500, -500}, {500, 500}})
        EXPECT_EQ(Draw(face, 'W', x, y, 16).right < 0, x == -500 || x == 500) << x << ' ' << y;
    const auto larger = platform::OpenFont("Arial", 31);  // of the same file
    EXPECT_GT(Draw(larger, 'W', 20, 20, 64).right, whole.right);
    EXPECT_EQ(Draw(face, 'W', 20, 20, 64).coverage, whole.coverage);
}

TEST(FontRaster, CodesOfTheWesternPage) {
    const auto face = platform::OpenFont("Arial", 31);
    const std::string nothing = "\x7F\x81\x8D\x8F\x90\x9D\xA0";
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(Draw(face, code, 1, 1, 40).right < 0,
                  code < 33 || nothing.find(static_cast<char>(code)) != std::string::npos)
            << code;
    EXPECT_LT(Draw(face, 0x8A, 1, 1, 40).top, Draw(face, 'S', 1, 1, 40).top) << "S with caron";
}

TEST(FontRaster, NamesFindTheirFaces) {
    const auto lookOf = [](const char* name) { return Draw(platform::OpenFont(name, 31), 'R', 1, 1, 40).coverage; };
    ASSERT_NE(lookOf("Liberation Sans"), lookOf("Liberation Serif"));
    EXPECT_EQ(lookOf("times new roman"), lookOf("Liberation Serif"));
    for (const char* name : {"Arial", "ARIAL", "Ariel", "", "no such face", "a:b=c"})
        EXPECT_EQ(lookOf(name), lookOf("Liberation Sans")) << name;
}

}  // namespace
