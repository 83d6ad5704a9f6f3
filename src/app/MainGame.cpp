#include "app/MainGame.h"

#include "app/CChooseINI.h"
#include "app/RunState.h"
#include "app/SceneManager.h"
#include "diag/CMemMan.h"
#include "diag/LogFile.h"
#include "diag/SystemReport.h"
#include "graphics/model/GBMesh.h"
#include "input/KeyboardStateManager.h"
#include "input/ShellInput.h"
#include "net/NetClient.h"
#include "platform/Clock.h"
#include "platform/KeyTable.h"
#include "platform/MessageBox.h"
#include "platform/Window.h"

namespace {

// Seconds between the starts of two frames at least: 1/1982 in single precision.
constexpr double frameThreshold = 0.0005045408615842462;
// What the frame and the caption add to the drawing area.
constexpr int frameWidth = 6;
constexpr int frameHeight = 26;
// Apart from 1, by which the X library itself ends a program.
constexpr int exitCodeOfLostDisplay = 2;
// Codes of the system report above this are systems that know all priority classes.
constexpr int lastOldSystem = 5;

// Commands of the window's menu and of the system that the program refuses.
constexpr std::uint32_t refusedCommands[] = {
    0xF000,  // size
    0xF030,  // maximise
    0xF070,  // vertical scroll
    0xF080,  // horizontal scroll
    0xF100,  // keyboard menu
    0xF140,  // screen saver
    0xF150,  // hot key
    0xF170,  // monitor power
    0xF180,  // context help
};

bool IsRefused(std::uint32_t command) {
    for (const std::uint32_t refused : refusedCommands)
        if (command == refused) return true;
    return false;
}

bool KnowsAllPriorities() {
    return OsVersionCode() > lastOldSystem;
}

// The window whose closing gives up a name lookup or a connect under way.
platform::Window* watchedWindow = nullptr;
bool IsClosing() {
    return watchedWindow && watchedWindow->CloseWanted();
}

}  // namespace

void CalcResolution(int, int& width, int& height) {
    width = 800;
    height = 600;
}

MainGame::MainGame() = default;
MainGame::~MainGame() = default;

int MainGame::WinMain() {
    RunState::Default().Start();
    resolution = 0;
    if (!CreateMainWindow()) return 1;
    StartUp();
    RunLoop();
    ShutDown();
    return exitCode;
}

bool MainGame::CreateMainWindow() {
    platform::WindowRequest request;
    request.className = "KelvaneWindow";
    request.title = "Kelvane - an alternate Tolvarin client";
    CalcResolution(resolution, request.width, request.height);
    request.outerWidth = request.width + frameWidth;
    request.outerHeight = request.height + frameHeight;
    platform::WindowFailure failure = platform::WindowFailure::None;
    window = platform::CreateMainWindow(request, failure);
    if (failure == platform::WindowFailure::Class) errorLog.Write("couldn't register window class");
    if (failure == platform::WindowFailure::Window) errorLog.Write("couldn't make a window :(");
    if (!window) return false;
    watchedWindow = window.get();
    NET::SetConnectCancel(IsClosing);
    return true;
}

void MainGame::StartUp() {
    window->Show();
    StartGraphics();
    RunState& run = RunState::Default();
    if (run.IsRunning() && !KeyboardStateManager::Default().Start(platform::CreateKeyTableSystem(), *window, false))
        run.Stop();
    if (run.IsRunning()) {
        G::CreateBoneAllocator();
        SceneManager::Default().AddScene(new2<CChooseINI>({"FIRST_SCENE", "FIRST_SCENE", "MainGame", 139}));
    }
    previousCounter = platform::CounterValue();
    counterFrequency = platform::CounterFrequency();
}

void MainGame::StartGraphics() {
    int width = 0;
    int height = 0;
    CalcResolution(resolution, width, height);
    setup = DXG::Setup();
    setup.colour32 = true;
    setup.width = static_cast<unsigned>(width);
    setup.height = static_cast<unsigned>(height);
    setup.vertexProcessing = 1;
    setup.multithreaded = true;

    std::string warning;
    bool noGraphics = false;
    if (DXG::CheckHardware(setup.vertexProcessing, warning, noGraphics))
        platform::ShowMessageBox(warning, "warning", platform::BoxKind::Ok, true);
    if (noGraphics) {
        RunState::Default().Stop();
        return;
    }
    if (DXG::Init(window.get(), &setup)) return;
    RunState::Default().Stop();
    platform::ShowMessageBox("Graphics init failed.\n _error.txt may contain details.", "error", platform::BoxKind::Ok,
                             true);
}

void MainGame::RunLoop() {
    RunState& run = RunState::Default();
    while (run.IsRunning()) {
        if (HandleMessage()) continue;
        if (window->DisplayLost()) {
            run.Stop();
            exitCode = exitCodeOfLostDisplay;
            errorLog.Write("The display has gone away.  Program shut down.\n");
            continue;
        }
        if (DXG::HasFailed()) {
            run.Stop();
            errorLog.Write(
                "The "
                "graphics "
                "foundation has reported an unrecoverable error.  Program shut down.\n");
            continue;
        }
        const std::int64_t now = platform::CounterValue();
        const double elapsed = static_cast<double>(now - previousCounter) / static_cast<double>(counterFrequency);
        if (elapsed > frameThreshold) {
            previousCounter = now;
            RunFrame(elapsed);
        }
        platform::SleepMs(0);
    }
}

bool MainGame::HandleMessage() {
    platform::WindowMessage message;
    if (!window->TakeMessage(message)) return false;
    if (message.kind == platform::MessageKind::Quit) {
        exitCode = message.code;
        RunState::Default().Stop();
    } else {
        WindowProcedure(*window, message);
    }
    return true;
}

void MainGame::RunFrame(double elapsed) {
    SceneManager& scenes = SceneManager::Default();
    const auto seconds = static_cast<float>(elapsed);
    scenes.PreRender();
    if (!DXG::BeginFrame(seconds, true, true)) {
        scenes.Update(seconds);
        return;
    }
    scenes.Render();
    DXG::EndFrame0();
    KeyboardStateManager::Default().Poll();
    scenes.Update(seconds);
    ShellInput::Default().ClearTyped();
    ShellInput::Default().ClearFrame();
    DXG::EndFrame1();
}

void MainGame::ShutDown() {
    using platform::PriorityClass;
    platform::SetPriorityClass(KnowsAllPriorities() ? PriorityClass::AboveNormal : PriorityClass::Normal);
    // While the scenes end their transfers, those threads may still ask whether the window is closing.
    SceneManager::Default().Shutdown();
    NET::SetConnectCancel(nullptr);
    watchedWindow = nullptr;
    G::EmptyModelRegistry();
    G::DestroyModelBones();
    KeyboardStateManager::Default().Stop();
    DXG::Shutdown();
    window->ShowCursor(true);
    window.reset();
}

void MainGame::WindowProcedure(platform::Window& target, const platform::WindowMessage& message) {
    using platform::MessageKind;
    using platform::PriorityClass;
    if (ShellInput::Default().CollectTyped(message)) return;
    if (ShellInput::Default().CollectMouse(message)) return;
    switch (message.kind) {
        case MessageKind::Paint:
            return;
        case MessageKind::SystemCommand:
            if (IsRefused(message.command)) return;
            break;
        case MessageKind::Activate:
            active = message.active;
            if (active)
                platform::SetPriorityClass(PriorityClass::Normal);
            else
                platform::SetPriorityClass(KnowsAllPriorities() ? PriorityClass::BelowNormal : PriorityClass::Idle);
            return;
        case MessageKind::Destroy:
            SceneManager::Default().RemoveAllScenes();
            target.PostQuit(0);
            return;
        default:
            break;
    }
    target.DefaultProcedure(message);
}
