#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>
#include <utility>

#include "formats/Palette.h"
#include "world/SpriteTexels.h"

namespace {

// The texels by their plain formula, one after another.
struct PlainTexels {
    const SpriteImage& sprite;
    unsigned width;
    unsigned height;

    static void Clamp(float place, int size, int& first, float& weight) {
        first = static_cast<int>(std::floor(place));
        weight = 1.0F - std::fmod(place, 1.0F);
        if (first > size - 2) std::tie(first, weight) = std::pair(size - 2, 1.0F);
        if (first < 0) std::tie(first, weight) = std::pair(0, 0.0F);
    }

    [[nodiscard]] std::uint32_t At(unsigned x, unsigned y, bool wall, int index) const {
        const float u = static_cast<float>(x) / static_cast<float>(width);
        const float v = static_cast<float>(y) / static_cast<float>(height);
        float su = 0, sv = 0;
        if (wall)
            WallTexelToSprite(u, v, su, sv, index);
        else
            FloorTexelToSprite(u, v, su, sv);
        int ix = 0, iy = 0;
        float wx = 0, wy = 0;
        Clamp(su * static_cast<float>(sprite.Width()) - 0.5F, static_cast<int>(sprite.Width()), ix, wx);
        Clamp(sv * static_cast<float>(sprite.Height()) - 0.5F, static_cast<int>(sprite.Height()), iy, wy);
        const float weights[4] = {wy * wx, wy * (1 - wx), (1 - wy) * wx, (1 - wy) * (1 - wx)};
        float red = 0, green = 0, blue = 0, total = 0;
        std::uint8_t sample = 0;
        for (int i = 0; i < 4; ++i) {
            sample = sprite.rows[static_cast<std::size_t>(iy + i / 2)][static_cast<std::size_t>(ix + i % 2)];
            if (sample == sprite.keyIndex) continue;
            red += weights[i] * static_cast<float>(currentPalette[sample].red);
            green += weights[i] * static_cast<float>(currentPalette[sample].green);
            blue += weights[i] * static_cast<float>(currentPalette[sample].blue);
            total += weights[i];
        }
        const auto level = [&](float sum) {
            return total > 0 ? static_cast<std::uint32_t>(sum / total + 1.0F / 1024.0F) : 0U;
        };
        const std::uint32_t alpha = wall && sample == sprite.keyIndex ? 0U : 0xFF000000U;
        return alpha | level(red) << 16 | level(green) << 8 | level(blue);
    }
};

SpriteImage Filled(unsigned width, unsigned height, std::uint8_t index, std::uint8_t key) {
    return {key, std::vector<std::vector<std::uint8_t>>(height, std::vector<std::uint8_t>(width, index))};
}

TEST(SpriteTexels, MappingsMeetTheirCorners) {
    float su[4];
    float sv[4];
    FloorTexelToSprite(0, 0, su[0], sv[0]);
    FloorTexelToSprite(1, 0, su[1], sv[1]);
    WallTexelToSprite(0, 0, su[2], sv[2], 1);
    WallTexelToSprite(1, 1, su[3], sv[3], 2);
    const float expected[4][2] = {{0.5F, 0.012195F}, {0.987805F, 0.5F}, {0, -0.10F}, {0.5F, 0.815F}};
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(std::abs(su[i] - expected[i][0]) < 1e-6F && std::abs(sv[i] - expected[i][1]) < 1e-6F) << i;
}

// Random sprites of several sizes in random order, so that kept mappings are found again and thrown out.
TEST(SpriteTexels, EveryTexelIsThatOfThePlainFormula) {
    std::mt19937 random(7);
    const auto byte = [&](unsigned below) { return static_cast<std::uint8_t>(random() % below); };
    for (Color& color : currentPalette)
        color = {0, byte(256), byte(256), byte(256)};
    const unsigned sizes[][2] = {{62, 32}, {2, 2}, {3, 5}, {64, 64}, {32, 90}, {255, 255}};
    SpriteConverter floors(64, 64);
    SpriteConverter walls(64, 128);
    std::vector<std::uint32_t> texels;
    for (int round = 0; round < 30; ++round) {
        const unsigned* size = sizes[random() % 6];
        SpriteImage sprite = Filled(size[0], size[1], 0, byte(3));
        for (auto& row : sprite.rows)
            for (auto& pixel : row)
                pixel = byte(round % 2 == 0 ? 6 : 206);
        const bool wall = round % 3 == 0;
        ASSERT_TRUE(wall ? walls.Wall(sprite, round, texels) : floors.Floor(sprite, texels));
        const PlainTexels plain{sprite, 64, wall ? 128U : 64U};
        ASSERT_EQ(texels.size(), 64U * plain.height);
        for (unsigned i = 0; i < texels.size(); ++i)
            ASSERT_EQ(texels[i], plain.At(i % 64, i / 64, wall, round)) << round << ": " << i % 64 << ", " << i / 64;
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
