#pragma once
// A world on the recording device, with a keyboard that a test presses.

#include <gtest/gtest.h>

#include "demo/formats/MapWriter.h"
#include "formats/Palette.h"
#include "formats/TolvMap.h"
#include "graphics/device/DXGDevice.h"
#include "input/KeyboardStateManager.h"
#include "platform/KeyTable.h"
#include "platform/scripted/ScriptedDevice.h"
#include "session/TolvDataManager.h"
#include "support/TestFolder.h"
#include "world/TolvRenderer.h"

class PressedKeys : public platform::KeyTable, public platform::KeyTableSystem {
  public:
    explicit PressedKeys(const std::vector<int>& pressed) : down(pressed) {}
    std::unique_ptr<KeyTable> CreateKeyboard() override { return std::make_unique<PressedKeys>(down); }
    bool SetCooperation(platform::Window&, bool) override { return true; }
    bool Acquire() override { return true; }
    bool Poll() override { return true; }
    bool Read(std::uint8_t state[256]) override {
        std::fill_n(state, 256, std::uint8_t{0});
        for (const int code : down)
            state[code] = 1;
        return true;
    }

  private:
    const std::vector<int>& down;
};

// The view stands on (40, 40) of a grid of 80 x 80 cells without floors.
class WorldOn : public testing::Test {
  protected:
    void Begin(platform::Window& window) {
        DXG::ForgetFailure();
        DXG::Setup setup;
        setup.width = 800;
        setup.height = 600;
        ASSERT_TRUE(DXG::Init(&window, &setup));
        KeyboardStateManager::Default().Start(std::make_unique<PressedKeys>(keys), window, false);
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
        keys = codes;
        KeyboardStateManager::Default().Poll();
    }

    support::TestFolder folder;
    TolvDataManager& data = TolvDataManager::Default();
    std::vector<int> keys;
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
