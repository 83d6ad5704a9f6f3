#pragma once
// A world on the recording device, with a keyboard that a test presses.

#include <gtest/gtest.h>

#include "demo/formats/MapWriter.h"
#include "formats/Palette.h"
#include "formats/TolvMap.h"
#include "graphics/device/DXGDevice.h"
#include "input/KeyboardStateManager.h"
#include "platform/scripted/ScriptedDevice.h"
#include "session/TolvDataManager.h"
#include "support/ScriptedKeyboard.h"
#include "support/TestFolder.h"
#include "world/TolvRenderer.h"

// The view stands on (40, 40) of a grid of 80 x 80 cells without floors.
class WorldOn : public testing::Test {
  protected:
    void Begin(platform::Window& window) {
        DXG::ForgetFailure();
        DXG::Setup setup;
        setup.width = 800;
        setup.height = 600;
        ASSERT_TRUE(DXG::Init(&window, &setup));
        KeyboardStateManager::Default().Start(std::make_unique<support::ScriptedKeyboard>(), window, false);
        Press({76});
        demo::MapDrawing drawing(20, 20);
        TolvMap::Current().LoadMapBytes(demo::WriteMap(drawing), "test");
        for (int gx = 0; gx < 80; ++gx)
            for (int gy = 0; gy < 80; ++gy)
                TolvMap::Current().SetFloor(gx, gy, 0xFFFF);
        data.SetViewPosition(40, 40);
        TolvRenderer::Init();
        Press({});
        TolvRenderer::Update(0);
        support::ClearErrorLog();
    }
    void End() {
        data.ClearCharacters();
        data.ClearMarkers();
        TolvRenderer::Shutdown();
        KeyboardStateManager::Default().Stop();
        DXG::Shutdown();
    }
    void Press(const std::vector<int>& codes) {
        support::KeyboardScript::Default().down = codes;
        KeyboardStateManager::Default().Poll();
    }

    support::TestFolder folder;
    TolvDataManager& data = TolvDataManager::Default();
};

class World : public WorldOn {
  protected:
    void SetUp() override { Begin(window); }
    void TearDown() override {
        End();
        EXPECT_EQ(graphics.faults, std::vector<std::string>());
        EXPECT_EQ(graphics.liveObjects, 0);
    }
    // One frame's draws.
    const std::vector<platform::ScriptedDraw>& Frame() {
        graphics.ForgetCalls();
        EXPECT_TRUE(DXG::BeginFrame(0.02F, false, true));
        TolvRenderer::Render();
        DXG::EndFrame0();
        DXG::EndFrame1();
        return graphics.draws;
    }

    platform::ScriptedGraphics& graphics = platform::ScriptedGraphics::Start();
    platform::ScriptedWindow window;
};
