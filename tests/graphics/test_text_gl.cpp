// A scene of texts and a texture as the OpenGL device shows it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "graphics/device/DXGDevice.h"
#include "graphics/device/DXGState.h"
#include "graphics/device/DXGTexture.h"
#include "graphics/text/Draw2D.h"
#include "graphics/text/GBTextWindow.h"
#include "graphics/text/GlyphGrid.h"
#include "platform/FontRaster.h"
#include "platform/GraphicsDevice.h"
#include "platform/Window.h"
#include "platform/gl/OpenGl.h"
#include "support/TestFolder.h"

namespace {

constexpr std::uint32_t tint = 0xFF8040C0;

// What lives from frame to frame: texts in static and dynamic buffers, the text shader, a texture made in memory.
struct Scene {
    G::TextWindow chat{40, 300, 700, 250, 60};
    DXG::Texture picture;

    Scene() {
        for (int i = 0; i < 40; ++i)
            chat.AddLine({"[] a line with letters of all heights, (Qgj)", {}});
        chat.SetScroll(1 - 8.0F / 390);  // half a line stands out above and below
        EXPECT_TRUE(picture.Create(32, 16, DXG::TextureType::ColourAlpha, 1, false));
        const DXG::TextureLock lock = picture.Lock(false);
        for (unsigned y = 0; y < 16; ++y)
            std::fill_n(reinterpret_cast<std::uint32_t*>(lock.data[0] + y * lock.rowPitch[0]), 32, 0xFF000050U + y);
    }
    std::vector<std::uint32_t> Picture() {
        std::vector<std::uint32_t> argb;
        unsigned width = 0;
        unsigned height = 0;
        if (!DXG::BeginFrame(0, false, true)) return argb;
        DXG::Clear(0xFF000000, true, true, true, 0);
        DXG::Set2DWholeBackBuffer();
        G::DrawTexture(picture, 300, 50, 1);
        G::DrawFreeText({"K", {{0, tint}}}, 100, 50, 16, "", false);
        chat.Draw();
        DXG::GetDevice()->ReadBackBuffer(argb, width, height);
        DXG::EndFrame0();
        return argb;
    }
};

TEST(TextOnOpenGl, IsSharpAndClippedAndComesBackAfterALoss) {
    const support::TestFolder folder;
    const std::string shader = "data/shaders/gbfont.hlsl_f";
    folder.Write(shader, support::LogText(std::getenv("KELVANE_SOURCE_DIR") + ("/" + shader)));
    platform::UseOpenGl();
    platform::WindowFailure failure{};
    const auto window = platform::CreateMainWindow({"KelvaneTest", "Kelvane", 800, 600}, failure);
    DXG::Setup setup;
    setup.width = 800;
    setup.height = 600;
    ASSERT_TRUE(window && DXG::Init(window.get(), &setup));
    auto scene = std::make_unique<Scene>();
    const std::vector<std::uint32_t> picture = scene->Picture();
    ASSERT_EQ(picture.size(), 800U * 600U);
    EXPECT_EQ(support::ErrorLogText() + support::LogText("_shaders.txt"), "");
    DXG::GetDevice()->ProvokeLoss(1);
    EXPECT_TRUE(scene->Picture().empty());
    EXPECT_TRUE(scene->Picture() == picture);
    EXPECT_TRUE(scene->Picture() == picture);
    scene.reset();
    DXG::Shutdown();
    EXPECT_EQ(picture[51 * 800 + 301], 0xFF000050U);

    // The cell lies on whole pixels: every texel once, tinted and blended with black.
    const G::GlyphGrid grid = G::DrawGlyphGrid(*platform::OpenFont("", 15), 16, false);
    for (unsigned y = 0; y < 16; ++y)
        for (unsigned x = 0; x < 16; ++x) {
            const double coverage = grid.coverage.at(('K' / 16 * 16 + y) * 256 + 'K' % 16 * 16 + x) / 255.0;
            const std::uint32_t pixel = picture[(51 + y) * 800 + 101 + x];
            for (const unsigned shift : {0U, 8U, 16U})
                EXPECT_NEAR(pixel >> shift & 0xFFU, (tint >> shift & 0xFFU) * coverage, 2) << x << ' ' << y;
        }
    for (const unsigned y : {299U, 300U, 549U, 550U}) {
        const std::uint32_t* row = &picture[y * 800];
        const bool lit = std::any_of(row, row + 800, [](std::uint32_t pixel) { return (pixel & 0xFFU) > 64; });
        EXPECT_EQ(lit, y >= 300 && y < 550) << y;
    }
}

}  // namespace
