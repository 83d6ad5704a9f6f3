// The world and the items on it as the OpenGL device shows them.

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "WorldFixture.h"
#include "graphics/device/DXGState.h"
#include "graphics/model/GBMesh.h"
#include "platform/Window.h"
#include "platform/gl/OpenGl.h"
#include "session/WorldPort.h"
#include "world/FloorRenderer.h"
#include "world/WallRenderer.h"

namespace {

constexpr std::uint32_t red = 0xFFFF0000U, green = 0xFF00FF00U, blue = 0xFF0000FFU;
constexpr std::uint32_t white = 0xFFFFFFFFU, grey = 0xFF505050U;

// Texels row by row.
DXG::Texture Quarters(const std::array<std::uint32_t, 4>& texels) {
    DXG::Texture texture;
    EXPECT_TRUE(texture.Create(2, 2, DXG::TextureType::ColourAlpha, 1, false));
    texture.SetWrap(false, false, true);
    const DXG::TextureLock lock = texture.Lock(false);
    std::memcpy(lock.data[0], texels.data(), 8);
    std::memcpy(lock.data[0] + lock.rowPitch[0], texels.data() + 2, 8);
    return texture;
}

class WorldPicture : public WorldOn {
  protected:
    void SetUp() override {
        const std::string source = std::getenv("KELVANE_SOURCE_DIR");
        for (const char* name : {"items/items.txt", "items/placeholder.mbm", "items/placeholder.png",
                                 "shaders/simple.hlsl_v", "shaders/gbfont.hlsl_f"})
            folder.Write(std::string("data/") + name, support::LogText(source + "/data/" + name));
        platform::UseOpenGl();
        platform::WindowFailure failure = platform::WindowFailure::None;
        window = platform::CreateMainWindow({"KelvaneTest", "", 800, 600}, failure);
        ASSERT_TRUE(window);
        Begin(*window);
    }
    void TearDown() override {
        EXPECT_EQ(support::ErrorLogText() + support::LogText("_shaders.txt"), "");
        G::EmptyModelRegistry();
        End();
        G::DestroyModelBones();
    }

    void Draw(std::uint32_t ground) {
        ASSERT_TRUE(DXG::BeginFrame(0.02F, false, true));
        DXG::Clear(ground, true, true, true, 0);
        TolvRenderer::Render();
        unsigned width = 0;
        unsigned height = 0;
        EXPECT_TRUE(DXG::GetDevice()->ReadBackBuffer(picture, width, height));
        ASSERT_EQ(width * height, 800U * 600U);
        DXG::EndFrame0();
        DXG::EndFrame1();
    }
    // The pixel that shows a world point, worked out from the rest angle: the eye 6.8 away towards +x +y and 7.9 up,
    // the right of the screen +x -y.
    [[nodiscard]] std::uint32_t At(double x, double y, double z) const {
        const double s = std::sqrt(0.5);
        const double length = std::hypot(6.8, 7.9);
        const double away = 6.8 - (x + y - 80) * s;  // level, from the eye
        const double down = 7.9 - z;
        const double scale = 300 / std::tan(3.14159265 / 8) * length / (away * 6.8 + down * 7.9);
        const long column = std::lround(400 + (x - y) * s * scale);
        const long row = std::lround(300 - (away * 7.9 - down * 6.8) / length * scale);
        return picture.at(static_cast<std::size_t>(row * 800 + column)) | 0xFF000000U;
    }
    // Mean of the three channels.
    [[nodiscard]] double BrightnessAt(double x, double y, double z) const {
        const std::uint32_t pixel = At(x, y, z);
        return ((pixel >> 16 & 0xFFU) + (pixel >> 8 & 0xFFU) + (pixel & 0xFFU)) / 3.0;
    }

    std::unique_ptr<platform::Window> window;
    std::vector<std::uint32_t> picture;
};

TEST_F(WorldPicture, StandsTheRightWayRound) {
    FloorRenderer::Current()->SetTextures({Quarters({grey, grey, grey, grey}), Quarters({red, green, blue, white})});
    TextureList walls(6);
    walls[2] = Quarters({blue, green, red, 0});  // a hole at the bottom right
    WallRenderer::Current()->SetTextures(walls);
    TolvMap& map = TolvMap::Current();
    for (int gx = 36; gx <= 44; ++gx)
        for (int gy = 36; gy <= 44; ++gy)
            map.SetFloor(gx, gy, gx == 42 && gy == 39 ? 1 : 0);
    map.SetLowXWall(39, 41, 1);
    Character character{.colorDigits = {1, 0, 0, 0, 0, 2}, .gx = 41, .gy = 43};
    GetColorTable(BodyPart::Vest)[1] = {0, 255, 0, 0};
    GetColorTable(BodyPart::Vest)[2] = {0, 0, 255, 0};
    data.MoveCharacter(0, 0, character);
    TolvRenderer::SetHoverCell(43, 37);
    TolvRenderer::Port().MarkFloorsDirtyNear(40, 40);
    Draw(0xFF000000U);

    EXPECT_EQ(At(40, 40, 0), grey);
    EXPECT_EQ(At(41.7F, 38.7F, 0), red);
    EXPECT_EQ(At(42.3F, 38.7F, 0), green);
    EXPECT_EQ(At(41.7F, 39.3F, 0), blue);
    EXPECT_EQ(At(42.3F, 39.3F, 0), white);
    EXPECT_EQ(At(44.8F, 40, 0), 0xFF000000U);
    // The wall on the low-gx edge of (39, 41) runs towards +gy with u; the floor shows through its hole.
    EXPECT_EQ(At(38.5F, 40.7F, 1.6F), blue);
    EXPECT_EQ(At(38.5F, 41.3F, 1.6F), green);
    EXPECT_EQ(At(38.5F, 40.7F, 0.4F), red);
    EXPECT_EQ(At(38.5F, 41.3F, 0.4F), grey);
    // The hovered cell: a quarter black, then a fifth white.
    const std::uint32_t hovered = At(43, 37, 0.03F);
    EXPECT_NEAR(hovered & 0xFFU, 0x50 * 0.75 * 0.8 + 255 * 0.2, 3);
    // The character's topmost tip is green, its body half red over what is below.
    EXPECT_GT(At(41, 42.82F, 0.9F) >> 8 & 0xFFU, 0xC0U);
    EXPECT_GT(At(41.1F, 43.17F, 0.9F) >> 16 & 0xFFU, 0xC0U);
}

TEST_F(WorldPicture, CratesStandOnTheirCellsInTheLight) {
    for (const auto& [gx, gy] : {std::pair{40, 40}, {42, 39}, {38, 41}})
        TolvMap::Current().SetObject(gx, gy, 77);
    TolvMap::Current().SetObject(39, 39, 2400);
    Draw(0xFF203040U);
    const double ground = (0x20 + 0x30 + 0x40) / 3.0;
    // The three faces that the eye sees, over their whole area.
    for (const auto& [gx, gy] : {std::pair{40, 40}, {42, 39}, {38, 41}}) {
        double top = 0, east = 0, north = 0;
        for (int i = 0; i < 49; ++i) {
            const double across = 0.08 * (i % 7 - 3);
            const double up = 0.34 + 0.08 * (i / 7 - 3);
            top += BrightnessAt(gx + across, gy + up - 0.34, 0.68) / 49;
            east += BrightnessAt(gx + 0.34, gy + across, up) / 49;
            north += BrightnessAt(gx + across, gy + 0.34, up) / 49;
        }
        EXPECT_GT(top, east + 5) << gx;
        EXPECT_GT(east, north + 5) << gx;
        EXPECT_GT(north, ground + 15) << gx;
    }
    EXPECT_NEAR(BrightnessAt(39, 39, 0.3), ground, 1) << "object 2400";
    EXPECT_NEAR(BrightnessAt(41, 41, 0.3), ground, 1) << "no object";
}

}  // namespace
