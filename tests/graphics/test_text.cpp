// Fonts, texts, text windows and 2D rectangles on the scripted device.
#include <gtest/gtest.h>

#include <functional>

#include "graphics/device/DXGState.h"
#include "graphics/text/Draw2D.h"
#include "graphics/text/GBFont.h"
#include "graphics/text/GBTextWindow.h"
#include "graphics/text/GlyphGrid.h"
#include "platform/FontRaster.h"
#include "support/ScriptedFoundation.h"
#include "support/TestFolder.h"

namespace {

class TextTest : public ::testing::Test {
  protected:
    TextTest() { Restart(); }
    ~TextTest() override {
        foundation.Stop();
        EXPECT_EQ(graphics.faults, std::vector<std::string>());
    }
    void Restart(unsigned desktopBits = 32) {
        foundation.Stop();
        graphics.script.desktopBits = desktopBits;
        EXPECT_TRUE(foundation.Start() && DXG::BeginFrame(0, false, true));
        graphics.ForgetCalls();
    }
    // How often the buffer of a dynamic text has been filled since it was made.
    int FillsAfterDraw(G::Text& text) {
        text.Draw();
        return graphics.device->vertexBuffer->discards;
    }
    static void ExpectError(const std::string& words) {
        EXPECT_NE(support::ErrorLogText().find(words), std::string::npos) << words;
        support::ClearErrorLog();
    }

    support::TestFolder folder;
    support::ScriptedFoundation foundation{false};
    platform::ScriptedGraphics& graphics = foundation.scripted;
    platform::DeviceScript& script = graphics.script;
};

TEST_F(TextTest, AtlasHoldsTheGlyphsInEveryLife) {
    const G::GlyphGrid grid = G::DrawGlyphGrid(*platform::OpenFont("Arial", 15), 16, false);
    G::Text text;
    text.SetText("again");
    for (const unsigned bits : {32U, 16U}) {
        Restart(bits);
        const auto atlas = G::GetFont("Arial", 16, false);
        EXPECT_EQ(atlas->widths, grid.widths);
        auto& texels = dynamic_cast<platform::ScriptedTexture&>(*atlas->texture.Record()->api.object);
        for (unsigned i = 0; i < 256 * 256; ++i) {
            const std::uint32_t alpha = grid.coverage[i];
            const std::uint32_t texel = bits == 32 ? 0xFFFFFFU | alpha << 24U : 0xFFFU | alpha >> 4U << 12U;
            ASSERT_EQ(texels.TexelAt(0, i % 256, i / 256), texel) << bits << ' ' << i;
        }
        text.Draw();
        G::DrawFreeText({"abcd", {}}, 5, 6, 20, "Arial", true);
        ASSERT_EQ(graphics.draws.size(), 2U);
        EXPECT_EQ(graphics.draws[0].FloatAt(0, 16), 6.0F / 16);
        EXPECT_FLOAT_EQ(graphics.draws[1].FloatAt(6, 0), 15.005F);
    }
}

TEST_F(TextTest, FailuresAreReportedAndTriedAgain) {
    G::Text text;
    text.SetText("abc");
    using platform::DeviceResult;
    const std::pair<const char*, std::function<void()>> faults[] = {
        {"Requested font size too small.  Must be at least 2.\n  call stack:\n",
         [&] { text.SetFont("", 1.9F, false); }},
        {"Font name too long.  Can be 31 chars max.\n  -call stack:\n",
         [&] { text.SetFont(std::string(32, 'x'), 16, false); }},
        {"Font texture creation failed.\n  -call stack:\n", [&] { script.createTexture = {DeviceResult::Failed}; }},
        {"Failed to lock font texture.\n", [&] { script.texturesLock = false; }},
        {"Texture not either 16 or 32 bpp...", [&] { script.textureFormatGiven = platform::PixelFormat::A8; }},
        {"Failed to make G::Text's VB...\n  -call stack:", [&] { script.createVertexBuffer = {DeviceResult::Failed}; }},
        {"Failed to lock G::Text's VB...\n", [&] { script.buffersLock = false; }},
    };
    for (const auto& [report, provoke] : faults) {
        script = platform::DeviceScript();
        text.SetFont("", 16, false);
        provoke();
        text.Draw();
        ExpectError(report);
    }
    EXPECT_TRUE(graphics.draws.empty());
    script = platform::DeviceScript();
    text.SetSize(32);  // stretches the font of 16
    text.Draw();
    ASSERT_EQ(graphics.draws.size(), 1U);
    EXPECT_FLOAT_EQ(graphics.draws[0].FloatAt(2, 4), 32.005F);
    const auto atlas = G::GetFont("", 16, false);
    EXPECT_EQ(graphics.draws[0].textures[0], atlas->texture.Record()->api.object.get());
}

TEST_F(TextTest, RebuildsOnlyWhatChanged) {
    G::Text text;
    text.SetDynamic(true);
    text.SetText("hello");
    const G::ColouredText coloured{"hallo", {{0, 1}}};
    const std::function<void()> changes[] = {
        [&] { text.SetText("hallo"); },
        [&] { text.SetText(coloured); },
        [&] { text.SetPosition(0, 1); },
        [&] { text.SetSize(17); },
        [&] { text.SetFont("Arial", 18, true); },
        [&] { text.SetWrapWidth(20); },
        [&] { text.SetFixedAdvance(0.6F); },
        [&] { text.SetText(std::string(37, 'x')); },  // as long as the first buffer has room
    };
    int fills = 1;
    EXPECT_EQ(FillsAfterDraw(text), fills);
    for (const auto& change : changes) {
        change();
        EXPECT_EQ(FillsAfterDraw(text), ++fills);
        change();
        EXPECT_EQ(FillsAfterDraw(text), fills) << "the same again";
    }
    EXPECT_EQ(graphics.draws.back().primitiveCount, 74U);
    text.SetText(std::string(38, 'x'));
    EXPECT_EQ(FillsAfterDraw(text), 1) << "a new buffer";
    EXPECT_EQ(graphics.draws.back().vertices.size(), (38U * 3 + 96) * 2 * 20);
}

TEST_F(TextTest, WindowStacksScrollsAndClips) {
    G::TextWindow chat(40, 300, 700, 250, 60);
    for (int i = 0; i < 61; ++i)
        chat.AddLine({std::to_string(i), {}});
    ASSERT_EQ(chat.Lines().size(), 60U);
    EXPECT_EQ(chat.Lines().front()->Content(), "1");
    EXPECT_FLOAT_EQ(chat.Lines().back()->Y(), 550 - 16);
    const std::pair<float, float> scrolls[] = {{2, 1}, {0.5F, 0.5F}, {-1, 0}};
    for (const auto& [asked, scroll] : scrolls) {
        chat.SetScroll(asked);
        EXPECT_FLOAT_EQ(chat.Scroll(), scroll);
        EXPECT_FLOAT_EQ(chat.Lines().front()->Y(), 300 - scroll * (60 * 16 - 250));
    }
    chat.Lines()[15]->SetDynamic(true);
    chat.Draw();
    EXPECT_EQ(graphics.draws.size(), 16U) << "250 pixels show 16 lines";
    for (int i = 0; i < 2; ++i) {
        chat.SetScroll(-3);
        chat.Draw();
        EXPECT_EQ(graphics.device->vertexBuffer->discards, 1);
    }
    EXPECT_TRUE(graphics.Called("SetViewport 40 300 700 250"));

    G::TextWindow narrow(0, 0, 50.9F, 100, 3);
    narrow.AddLine({"a wrapped line of words", {}});
    narrow.AddLine({"\nx\n", {}});
    EXPECT_GE(narrow.Lines()[0]->Height(), 48);
    EXPECT_FLOAT_EQ(narrow.Lines()[0]->Y() + narrow.Lines()[0]->Height(), 100 - 32);
}

TEST_F(TextTest, Rectangles) {
    DXG::Texture texture;
    G::DrawTexture(texture, 0, 0, 1);
    ExpectError("Error: Attempt to draw using a blank texture.\n  -call stack:\n");
    ASSERT_TRUE(texture.Create(32, 16, DXG::TextureType::ColourAlpha, 1, false));
    G::DrawTexture(texture, 10, 20, 0.5F);
    G::DrawTextureStretched(texture, 1, 2, 100, 50, {1, 2, 3, 4});
    G::DrawTextureRotated(texture, 100, 100, 1.5707963F, 2, 7);  // a quarter turn clockwise
    G::DrawRectangle(0, 0, 40, 20, {0x50444444, 0xFF0000FF, 0x03030303, 0});
    const float thirds[][4] = {{42, 36, 1, 1}, {101, 52, 1, 1}, {84, 132, 1, 1}, {40, 0, 1, 0}};  // x, y, u, v
    const std::uint32_t colours[] = {0x7FFFFFFF, 3, 0xFFFFFFFF, 0xFF0000FF};
    ASSERT_EQ(graphics.draws.size(), std::size(thirds));
    for (std::size_t i = 0; i < std::size(thirds); ++i) {
        const platform::ScriptedDraw& draw = graphics.draws[i];
        for (unsigned k = 0; k < 4; ++k)
            EXPECT_NEAR(draw.FloatAt(2, k < 2 ? 4 * k : 20 + 4 * k), thirds[i][k] + (k < 2 ? 0.005F : 0), 1e-3) << i;
        EXPECT_EQ(draw.WordAt(2, 24), colours[i]) << i;
        EXPECT_EQ(draw.primitiveCount, i == 3 ? 4U : 2U);
        EXPECT_EQ(draw.State(platform::RenderState::DepthTest), 0U);
        EXPECT_EQ(draw.textures[0] != nullptr, i != 3);
    }
    EXPECT_EQ(graphics.draws[3].WordAt(0, 24), 0x53111150U) << "the average in the centre";
    EXPECT_TRUE(DXG::GetState(DXG::depthTest));
}

}  // namespace
