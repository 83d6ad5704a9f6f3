#include "app/SceneManager.h"

#include <algorithm>

#include "app/RunState.h"
#include "app/Scene.h"
#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "diag/Vary.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/device/DXGState.h"
#include "graphics/text/GBText.h"
#include "input/KeyboardStateManager.h"

namespace {

constexpr std::uint8_t keyF11 = 87;
constexpr std::uint32_t black = 0xFF000000U;
constexpr float longestStep = 0.25F;  // seconds a scene is told of at most
constexpr float firstStep = 0.001F;   // what a scene's first update gets
constexpr const char* module = "SceneManager";

// Whole numbers of reports and displays are cut off, not rounded; what no int can hold becomes 0.
int Truncated(float value) {
    return value > -2147483648.0F && value < 2147483648.0F ? static_cast<int>(value) : 0;
}

}  // namespace

SceneManager& SceneManager::Default() {
    static SceneManager manager;
    return manager;
}

void SceneManager::AddScene(Scene* scene) {
    if (!hooksRegistered) {
        hooksRegistered = true;
        DXG::AddReleaseHook(ReleaseHook);
        DXG::AddRestoreHook(RestoreHook);
    }
    if (!scene) {
        ReportMisuse("Bad.. attempt to add null pointer as a scene.\n", "  -attempt made from:\n");
        return;
    }
    if (!scenes.empty()) scenes.back()->OnLeave();
    scenes.push_back(scene);
    scene->OnEnter();
    sceneChanged = true;
}

void SceneManager::RemoveScene() {
    if (scenes.empty()) {
        ReportMisuse("Bad.. attempt to remove a scene when none exist.\n", "  -attempt made from:\n");
        return;
    }
    scenes.back()->OnLeave();
    removed.push_back(scenes.back());
    scenes.pop_back();
}

void SceneManager::RemoveAllScenes() {
    while (!scenes.empty())
        RemoveScene();
    if (statisticsWritten) return;
    statisticsWritten = true;
    WriteStatistics();
}

void SceneManager::WriteStatistics() {
    if (!statistics.empty()) statLog.Write("average FPS for invididual scenes:\n");
    for (const SceneStats& stats : statistics) {
        statLog.Write("  -");
        statLog.Write(stats.name);
        statLog.Write(" (over ");
        statLog.Write(Truncated(stats.seconds));
        statLog.Write(" seconds): ");
        statLog.Write(Truncated(static_cast<float>(stats.updates) / stats.seconds));
        statLog.Write(" frames/sec\n");
    }
    statLog.Write("\n");
}

void SceneManager::PreRender() {
    const ScopedLock held(DXG::GraphicsLock());
    if (Scene* top = Top()) top->PreRender();
}

void SceneManager::Render() {
    const ScopedLock held(DXG::GraphicsLock());
    const bool wireframe = KeyboardStateManager::Default().IsKeyDown(keyF11);
    if (wireframe) {
        DXG::Clear(black, true, false, false, 0);
        DXG::SetState(DXG::wireframe, true);
    }
    if (Scene* top = Top()) top->Render();
    if (wireframe) DXG::SetState(DXG::wireframe, false);
    if (!frameRateText) return;
    DXG::UnbindShaders();
    DXG::Set2DWholeBackBuffer();
    frameRateText->Draw();
}

void SceneManager::Update(float seconds) {
    UpdateFrameRateText(seconds);
    if (scenes.empty()) {
        DestroyRemoved();
        RunState::Default().Stop();
        return;
    }
    UpdateTop(std::min(seconds, longestStep));
    DestroyRemoved();
}

void SceneManager::UpdateFrameRateText(float seconds) {
    if (!frameRateText && DXG::IsInitialized()) frameRateText = new2<G::Text>({"G::Text", "G::Text", module, 212});
    if (!frameRateText || seconds <= 0.0F) return;
    const float rate = 1.0F / seconds;
    const float mean = (rate + lastRates[0] + lastRates[1] + lastRates[2] + lastRates[3]) * 0.2F;
    Vary content("FPS: ");
    content += Vary(Truncated(rate));
    content += "\nFPS (last 5 avg): ";
    content += Vary(Truncated(mean));
    frameRateText->SetPosition(5.0F, 5.0F);
    frameRateText->SetText(content);
    lastRates = {rate, lastRates[0], lastRates[1], lastRates[2]};
}

void SceneManager::UpdateTop(float seconds) {
    if (sceneChanged) {
        sceneChanged = false;
        scenes.back()->Update(firstStep);
        return;
    }
    scenes.back()->Update(seconds);
    CountUpdate(seconds);
}

void SceneManager::CountUpdate(float seconds) {
    if (statisticsWritten || scenes.empty()) return;
    const std::string name = scenes.back()->GetName();
    const auto known = std::find_if(statistics.begin(), statistics.end(),
                                    [&name](const SceneStats& stats) { return stats.name == name; });
    if (known == statistics.end()) {
        statistics.push_back({name, 1, seconds});
        return;
    }
    ++known->updates;
    known->seconds += seconds;
}

void SceneManager::DestroyRemoved() {
    while (!removed.empty()) {
        Scene* oldest = removed.front();
        removed.erase(removed.begin());
        delete2(oldest, module, __LINE__);
    }
}

void SceneManager::Shutdown() {
    RemoveAllScenes();
    DestroyRemoved();
    if (!frameRateText) return;
    delete2(frameRateText, module, 350);
    frameRateText = nullptr;
}

void SceneManager::ReleaseHook() {
    SceneManager& manager = Default();
    for (std::size_t i = 0; i < manager.scenes.size(); ++i)
        errorLog.Write("Release junk removed... it was only an old dx hack.\n");
    if (!manager.frameRateText) return;
    delete2(manager.frameRateText, module, 94);
    manager.frameRateText = nullptr;
}

void SceneManager::RestoreHook() {
    for (std::size_t i = 0; i < Default().scenes.size(); ++i)
        errorLog.Write("Restore junk removed... it was only an old dx hack.\n");
}
