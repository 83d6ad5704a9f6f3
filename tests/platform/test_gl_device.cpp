// The picture that the OpenGL device makes, pixel by pixel.

#include "platform/GlFixture.h"

namespace glfixture {

using namespace platform;

TEST_F(GlDevice, ClearsTheWholeTargetWhateverTheMasks) {
    Set(RenderState::ColourWrite, 0);
    device->SetViewport({8, 8, 8, 8, 0, 1});
    Draw(Quad(0, 0, 64, 48));
    device->Clear(true, true, false, 0xFF123456, 1.0F, 0);
    Read();
    EXPECT_EQ(RegionOf(0xFF123456).count, pictureWidth * pictureHeight);
    Draw(Quad(0, 0, 64, 48));
    Read();
    EXPECT_EQ(RegionOf(0xFF123456).count, pictureWidth * pictureHeight) << "colour writes are still off";
}

// A vertex at a whole position lies on a pixel's centre, and a pixel on a left or top edge is inside.
TEST_F(GlDevice, CoversPixelsAsDirect3D9Does) {
    struct Row {
        const char* name;
        float left, top, right, bottom;
        Region covered;
    };
    const Row rows[] = {
        {"whole positions", 4, 6, 12, 10, {32, 4, 6, 11, 9}},
        {"the offset of drawn text", 4.005F, 6.005F, 12.005F, 10.005F, {32, 5, 7, 12, 10}},
        {"half a pixel up and left", 3.5F, 5.5F, 11.5F, 9.5F, {32, 4, 6, 11, 9}},
        {"the whole picture", 0, 0, 64, 48, {64 * 48, 0, 0, 63, 47}},
    };
    for (const Row& row : rows) {
        device->Clear(true, false, false, black, 1.0F, 0);
        Draw(Quad(row.left, row.top, row.right, row.bottom, 0, red));
        Read();
        EXPECT_EQ(RegionOf(red), row.covered) << row.name;
    }
}

TEST_F(GlDevice, DrawsTexelsOneToOne) {
    std::vector<std::uint32_t> texels;
    for (std::uint32_t at = 0; at < 16; ++at)
        texels.push_back(0xFF000000 | at * 0x0F0701 | (15 - at) << 20);
    const auto texture = Texture(PixelFormat::A8R8G8B8, 4, 4, texels, 4);
    device->SetTexture(0, texture.get());
    // At a whole position the texels' own edges lie on the pixel centres, at 0.005 the picture is one pixel further.
    for (const float offset : {0.0F, 0.005F}) {
        device->Clear(true, false, false, black, 1.0F, 0);
        Draw(Quad(20 + offset, 30 + offset, 24 + offset, 34 + offset));
        Read();
        const unsigned first = offset > 0 ? 1 : 0;
        for (unsigned y = 0; y < 4; ++y)
            for (unsigned x = 0; x < 4; ++x)
                EXPECT_EQ(At(20 + first + x, 30 + first + y), texels[4 * y + x]) << x << ", " << y << " at " << offset;
    }
}

TEST_F(GlDevice, DropsFacesByTheirTurnOnScreen) {
    const std::vector<Vertex> clockwise{{10, 10, 0, red}, {30, 10, 0, red}, {10, 30, 0, red}};
    const std::vector<Vertex> counter{{40, 10, 0, green}, {40, 30, 0, green}, {60, 10, 0, green}};
    struct Row {
        CullMode mode;
        bool clockwise, counter;
    };
    for (const Row& row : {Row{CullMode::None, true, true}, Row{CullMode::Clockwise, false, true},
                           Row{CullMode::CounterClockwise, true, false}}) {
        device->Clear(true, false, false, black, 1.0F, 0);
        Set(RenderState::Cull, static_cast<std::uint32_t>(row.mode));
        Draw(clockwise);
        Draw(counter);
        Read();
        EXPECT_EQ(At(12, 12) == red, row.clockwise) << static_cast<int>(row.mode);
        EXPECT_EQ(At(42, 12) == green, row.counter) << static_cast<int>(row.mode);
    }
}

}  // namespace glfixture
