#include <gtest/gtest.h>

#include <algorithm>

#include "platform/FontRaster.h"

namespace {

using Coverage = std::vector<std::uint8_t>;

struct Box {
    int left, top, right, bottom;  // of the lit pixels, inclusive
};

Box LitBox(const Coverage& coverage, int side) {
    Box box{side, side, -1, -1};
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            if (coverage[static_cast<std::size_t>(y * side + x)] != 0)
                box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x), std::max(box.bottom, y)};
    return box;
}

Coverage Draw(platform::FontFace& face, int code, int x, int y, int side) {
    Coverage coverage;
    face.DrawGlyph(static_cast<unsigned char>(code), x, y, side, coverage);
    return coverage;
}

Coverage DrawWith(const char* name, int code) {
    const auto face = platform::OpenFont(name, 31);
    return face ? Draw(*face, code, 1, 1, 40) : Coverage();
}

TEST(FontRaster, CellIsAscentPlusDescent) {
    const auto face = platform::OpenFont("Arial", 64);
    ASSERT_TRUE(face);
    // The cell spans rows 10 to 73: its base line lies at ascent / (ascent + descent) = 0.81 of it.
    const Box upright = LitBox(Draw(*face, 'H', 10, 10, 100), 100);
    EXPECT_NEAR(upright.bottom + 1, 10 + 52, 1);
    EXPECT_NEAR(upright.bottom + 1 - upright.top, 39, 2);
    const Box accent = LitBox(Draw(*face, 0xC5, 10, 10, 100), 100);  // A with ring
    EXPECT_GE(accent.top, 10);
    const Box descender = LitBox(Draw(*face, 'g', 10, 10, 100), 100);
    EXPECT_GT(descender.bottom, 10 + 55);
    EXPECT_LE(descender.bottom, 73);
}

TEST(FontRaster, MovesAndCutsOff) {
    const auto face = platform::OpenFont("Arial", 15);
    ASSERT_TRUE(face);
    const Box whole = LitBox(Draw(*face, 'W', 20, 20, 64), 64);
    const Box moved = LitBox(Draw(*face, 'W', 23, 18, 64), 64);
    EXPECT_EQ(moved.left, whole.left + 3);
    EXPECT_EQ(moved.top, whole.top - 2);
    for (const auto& [x, y] : {std::pair{-5, 0}, {0, -8}, {12, 0}, {0, 10}, {-500, -500}, {500, 500}}) {
        const Coverage cut = Draw(*face, 'W', x, y, 16);
        EXPECT_EQ(cut.size(), 256U);
        const Box box = LitBox(cut, 16);
        EXPECT_EQ(box.right < 0, x == -500 || x == 500) << x << ' ' << y;
    }
    EXPECT_TRUE(Draw(*face, 'W', 0, 0, 0).empty());
}

TEST(FontRaster, CodesOfTheWesternPage) {
    const auto face = platform::OpenFont("Arial", 31);
    ASSERT_TRUE(face);
    for (int code = 0; code < 256; ++code) {
        const bool nothing = code < 33 || code == 127 || code == 0x81 || code == 0x8D || code == 0x8F || code == 0x90 ||
                             code == 0x9D || code == 0xA0;
        const Coverage drawn = Draw(*face, code, 1, 1, 40);
        EXPECT_EQ(LitBox(drawn, 40).right < 0, nothing) << code;
    }
    // 0x8A is S with caron: taller than S and unlike Latin-1's control code.
    EXPECT_LT(LitBox(Draw(*face, 0x8A, 1, 1, 40), 40).top, LitBox(Draw(*face, 'S', 1, 1, 40), 40).top);
}

TEST(FontRaster, NamesFindTheirFaces) {
    const Coverage sans = DrawWith("Liberation Sans", 'R');
    const Coverage serif = DrawWith("Liberation Serif", 'R');
    ASSERT_FALSE(sans.empty());
    ASSERT_NE(sans, serif);
    EXPECT_EQ(DrawWith("Arial", 'R'), sans);
    EXPECT_EQ(DrawWith("ARIAL", 'R'), sans);
    EXPECT_EQ(DrawWith("times new roman", 'R'), serif);
    for (const char* unknown : {"Ariel", "", "no such face", "a:b=c"})
        EXPECT_EQ(DrawWith(unknown, 'R'), sans) << unknown;
}

TEST(FontRaster, SizesOfOneFaceDoNotDisturbEachOther) {
    const auto small = platform::OpenFont("Arial", 15);
    ASSERT_TRUE(small);
    const Coverage before = Draw(*small, 'g', 1, 1, 40);
    const auto large = platform::OpenFont("Arial", 31);
    ASSERT_TRUE(large);
    EXPECT_NE(Draw(*large, 'g', 1, 1, 40), before);
    EXPECT_EQ(Draw(*small, 'g', 1, 1, 40), before);
    for (const int height : {0, -3, platform::maxCellHeight + 1})
        EXPECT_FALSE(platform::OpenFont("Arial", height)) << height;
}

}  // namespace
