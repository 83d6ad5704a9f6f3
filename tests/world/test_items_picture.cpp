// The items on the map as the OpenGL device shows them.

#include <cmath>
#include <cstdlib>

#include "WorldFixture.h"
#include "graphics/device/DXGState.h"
#include "graphics/model/GBMesh.h"
#include "platform/Window.h"
#include "platform/gl/OpenGl.h"

namespace {

class ItemsPicture : public WorldOn {
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
        G::EmptyModelRegistry();
        End();
        G::DestroyModelBones();
    }
    void Draw() {
        ASSERT_TRUE(DXG::BeginFrame(0.02F, false, true));
        DXG::Clear(0xFF203040U, true, true, true, 0);
        TolvRenderer::Render();
        unsigned width = 0;
        unsigned height = 0;
        EXPECT_TRUE(DXG::GetDevice()->ReadBackBuffer(picture, width, height));
        ASSERT_EQ(width * height, 800U * 600U);
        DXG::EndFrame0();
        DXG::EndFrame1();
    }
    // Mean of the three channels where the picture shows a point. The eye is 6.8 from (40, 40) towards +x +y and 7.9
    // up; the right of the screen is +x -y.
    [[nodiscard]] double BrightnessAt(double x, double y, double z) const {
        const double s = std::sqrt(0.5);
        const double length = std::hypot(6.8, 7.9);
        const double away = 6.8 - (x + y - 80) * s;
        const double down = 7.9 - z;
        const double scale = 300 / std::tan(3.14159265 / 8) * length / (away * 6.8 + down * 7.9);
        const long column = std::lround(400 + (x - y) * s * scale);
        const long row = std::lround(300 - ((6.8 - away) * -7.9 + (z * 6.8)) / length * scale);
        const std::uint32_t pixel = picture.at(static_cast<std::size_t>(row * 800 + column));
        return ((pixel >> 16 & 0xFFU) + (pixel >> 8 & 0xFFU) + (pixel & 0xFFU)) / 3.0;
    }

    std::unique_ptr<platform::Window> window;
    std::vector<std::uint32_t> picture;
};

TEST_F(ItemsPicture, CratesStandOnTheirCellsInTheLight) {
    for (const auto& [gx, gy] : {std::pair{40, 40}, {42, 39}, {38, 41}})
        TolvMap::Current().SetObject(gx, gy, 77);
    TolvMap::Current().SetObject(39, 39, 2400);
    Draw();
    EXPECT_EQ(support::ErrorLogText() + support::LogText("_shaders.txt"), "");
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
