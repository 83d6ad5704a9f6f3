// The pictures of the demo world, seen through the client's own conversion.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "demo/art/Palettes.h"
#include "demo/art/Sprites.h"
#include "demo/art/WallArt.h"
#include "formats/Palette.h"
#include "world/SpriteTexels.h"

namespace demo {
namespace {

// What the client holds after it has read the sprite from an archive.
SpriteImage AsRead(const IndexedImage& image) {
    SpriteImage sprite;
    for (unsigned y = 0; y < image.height; ++y)
        sprite.rows.emplace_back(image.indices.begin() + y * image.width,
                                 image.indices.begin() + (y + 1) * image.width);
    return sprite;
}

void UsePalette(const RgbPalette& palette) {
    for (std::size_t i = 0; i < palette.size(); ++i)
        currentPalette[i] = {0, palette[i].red, palette[i].green, palette[i].blue};
}

int Difference(std::uint32_t argb, Shade shade) {
    const auto channel = [&](int shift, double value) {
        return std::abs(static_cast<int>(argb >> shift & 255U) - static_cast<int>(std::lround(value * 255.0)));
    };
    return std::max({channel(16, shade.red), channel(8, shade.green), channel(0, shade.blue)});
}

// Four quarters in colours of their own: u grows along x, v along y.
const Canvas& Quarters() {
    static const Canvas canvas(128, 128, [](double u, double v) {
        return Spot{{u < 0.5 ? 0.9 : 0.2, v < 0.5 ? 0.8 : 0.3, 0.5}};
    });
    return canvas;
}

TEST(Sprites, FloorsComeOutOfTheirDiamondsAsTheyWent) {
    const Canvas* pictures[] = {&Quarters()};
    const RgbPalette palette = ChoosePalette(pictures);
    UsePalette(palette);
    for (const unsigned side : {62U, 112U, 255U}) {
        const IndexedImage sprite = SpriteMaker(palette).FloorSprite(Quarters(), side);
        EXPECT_EQ(sprite.indices[0], 0) << "the corner lies outside the diamond";
        std::vector<std::uint32_t> texels;
        ASSERT_TRUE(FloorTexels(AsRead(sprite), 64, 64, texels));
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x) {
                if (std::abs(x - 32) < 3 || std::abs(y - 32) < 3) continue;
                ASSERT_LE(Difference(texels[static_cast<std::size_t>(y * 64 + x)],
                                     Quarters().Sample(x / 64.0, y / 64.0).shade),
                          10)
                    << side << ": " << x << ", " << y;
            }
    }
}

TEST(Sprites, WallsStandUprightOnBothKindsOfEdges) {
    // Clear above; the left third is a pane, so that the sides can be told.
    const Canvas picture(128, 256, [](double u, double v) {
        if (v < 0.3) return Clear();
        return u < 0.33 ? Glass(0.99) : Spot{{0.6, 0.4, 0.2}};
    });
    const Canvas* pictures[] = {&picture};
    const RgbPalette plain = ChoosePalette(pictures);
    RgbPalette palette = Lit(plain, Moods().front());
    palette[glassEntries + 7] = {0, 0, 255};
    UsePalette(palette);
    for (const int position : {7, 8, 21, 54}) {
        const bool mirrored = position % 2 == 0;
        std::vector<std::uint32_t> texels;
        ASSERT_TRUE(WallTexels(AsRead(SpriteMaker(plain).WallSprite(picture, position)), position, 64, 128, texels));
        for (int y = 0; y < 128; ++y)
            for (int x = 0; x < 64; ++x) {
                const int fromLeft = mirrored ? 63 - x : x;
                // The lower corner beyond the sprite repeats what is above it.
                if (std::abs(y - 38) < 4 || std::abs(fromLeft - 21) < 3) continue;
                const std::uint32_t texel = texels[static_cast<std::size_t>(y * 64 + x)];
                // The palette of one picture holds its brown alone, not the darker one of the shaded side.
                const int allowed = mirrored ? 26 : 8;
                if (y < 38)
                    ASSERT_EQ(texel >> 24, 0U) << position << ": " << x << ", " << y;
                else if (fromLeft < 21)
                    ASSERT_EQ(texel, 0xFF0000FFU) << position << ": " << x << ", " << y;
                else
                    ASSERT_LE(Difference(texel, {0.6, 0.4, 0.2}), allowed) << position << ": " << x << ", " << y;
            }
    }
}

}  // namespace
}  // namespace demo
