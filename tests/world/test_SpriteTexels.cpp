#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "formats/Palette.h"
#include "world/SpriteTexels.h"

namespace {

SpriteImage Filled(unsigned width, unsigned height, std::uint8_t index, std::uint8_t key) {
    return {key, std::vector<std::vector<std::uint8_t>>(height, std::vector<std::uint8_t>(width, index))};
}

// A sprite of 2 x 2 pixels, red 100 and 200 above 40 and 240, and texels worked out by hand.
TEST(SpriteTexels, MixesTheFourPixelsAround) {
    for (const auto& [index, level] : {std::pair{1, 100}, {2, 200}, {3, 40}, {4, 240}})
        currentPalette[static_cast<std::size_t>(index)] = {0, static_cast<std::uint8_t>(level), 0, 0};
    const auto redsOf = [](std::uint8_t key, int wall) {
        std::vector<std::uint32_t> texels;
        const SpriteImage sprite{key, {{1, 2}, {3, 4}}};
        EXPECT_TRUE(wall < 0 ? FloorTexels(sprite, 2, 2, texels) : WallTexels(sprite, wall, 2, 2, texels));
        std::vector<int> reds;
        for (const std::uint32_t texel : texels)
            reds.push_back(static_cast<int>(texel >> 16 & 255) * (texel >> 24 == 255 ? 1 : -1));
        return reds;
    };
    // Before the first row the second is taken; in the middle all four count the same.
    const std::vector<int> floor = redsOf(0, -1);
    EXPECT_EQ((std::vector{floor[0], floor[1], floor[3]}), (std::vector{140, 199, 145}));
    EXPECT_EQ(redsOf(4, -1)[1], 198) << "without the fourth, the others share its weight";
    EXPECT_EQ(redsOf(0, 1)[2], 208);
    EXPECT_EQ(redsOf(0, 2)[2], 227);
    EXPECT_EQ(redsOf(4, 1)[2], -200) << "transparent, because the fourth is the key";
}

// Kept mappings are found again and thrown out.
TEST(SpriteTexels, AConverterIsAsGoodAsAFreshOne) {
    const unsigned sizes[][2] = {{62, 32}, {32, 62}, {2, 2}, {3, 5}, {64, 64}, {32, 90}, {255, 255}, {5, 3}, {9, 9}};
    SpriteConverter kept(64, 64);
    std::vector<std::uint32_t> texels, expected;
    for (int round = 0; round < 30; ++round) {
        const unsigned* size = sizes[round / 3 % 9];
        SpriteImage sprite = Filled(size[0], size[1], 0, static_cast<std::uint8_t>(round % 3));
        for (std::size_t i = 0; i < sprite.rows.size(); ++i)
            sprite.rows[i][i % size[0]] = static_cast<std::uint8_t>(i % 5);
        EXPECT_TRUE(round % 3 == 0 ? kept.Wall(sprite, round, texels) : kept.Floor(sprite, texels));
        EXPECT_TRUE(round % 3 == 0 ? WallTexels(sprite, round, 64, 64, expected)
                                   : FloorTexels(sprite, 64, 64, expected));
        EXPECT_EQ(texels, expected) << round;
    }
}

TEST(SpriteTexels, SpritesOfOneColour) {
    currentPalette[5] = {0, 255, 0, 1};
    std::vector<std::uint32_t> texels;
    const auto expectAll = [&](bool made, std::uint32_t colour) {
        EXPECT_TRUE(made);
        EXPECT_EQ(std::count(texels.begin(), texels.end(), colour), static_cast<long>(texels.size()));
    };
    for (unsigned size = 2; size < 256; size += 23) {
        expectAll(FloorTexels(Filled(size, 257 - size, 5, 0), 64, 64, texels), 0xFFFF0001U);
        expectAll(WallTexels(Filled(size, 257 - size, 5, 0), 3, 64, 128, texels), 0xFFFF0001U);
    }
    // All key: an opaque black floor, a wall that is not there.
    expectAll(FloorTexels(Filled(20, 20, 5, 5), 4, 4, texels), 0xFF000000U);
    expectAll(WallTexels(Filled(20, 20, 5, 5), 1, 4, 4, texels), 0U);
    EXPECT_FALSE(FloorTexels(Filled(1, 40, 5, 0), 4, 4, texels) || WallTexels(Filled(40, 1, 5, 0), 1, 4, 4, texels));
    EXPECT_FALSE(WallTexels(SpriteImage(), 1, 4, 4, texels));
}

// Edge pixels (206) with two key neighbours go, and in reading order each one that goes uncovers the next. 207 has
// their colour and stays.
TEST(SpriteTexels, WallEdgesAreCleaned) {
    currentPalette[206] = currentPalette[207] = {0, 9, 9, 9};
    currentPalette[5] = {0, 255, 0, 0};
    const auto texels = [](std::vector<std::vector<std::uint8_t>> rows) {
        std::vector<std::uint32_t> out;
        EXPECT_TRUE(WallTexels({0, std::move(rows)}, 2, 64, 128, out));
        return out;
    };
    EXPECT_EQ(texels({{206, 206, 5, 5}, {0, 206, 206, 5}, {5, 0, 5, 206}}),
              texels({{207, 207, 5, 5}, {0, 0, 207, 5}, {5, 0, 5, 207}}));
    EXPECT_EQ(texels({{0, 0, 0, 5}, {0, 206, 206, 5}, {5, 206, 5, 5}}),
              texels({{0, 0, 0, 5}, {0, 0, 0, 5}, {5, 207, 5, 5}}));
}

}  // namespace
