#pragma once
// The graphics foundation on the scripted device, for tests that draw. Link kelvane_device and kelvane_scripted.

#include "graphics/device/DXGDevice.h"
#include "platform/scripted/ScriptedDevice.h"
#include "support/TestFolder.h"

namespace support {

// Up from construction to its end, 800 x 600 in a window. The script may be changed before Start.
class ScriptedFoundation {
  public:
    explicit ScriptedFoundation(bool startNow = true) : scripted(platform::ScriptedGraphics::Start()) {
        DXG::ForgetFailure();
        setup.width = 800;
        setup.height = 600;
        setup.colour32 = true;
        setup.vertexProcessing = 2;
        setup.multithreaded = true;
        if (startNow) Start();
    }
    ~ScriptedFoundation() { Stop(); }
    ScriptedFoundation(const ScriptedFoundation&) = delete;
    ScriptedFoundation& operator=(const ScriptedFoundation&) = delete;

    // The hardware check and Init.
    bool Start() {
        unsigned processing = 0;
        bool noGraphics = false;
        DXG::CheckHardware(processing, warning, noGraphics);
        return DXG::Init(&window, &setup);
    }
    void Stop() {
        if (DXG::IsInitialized()) DXG::Shutdown();
        DXG::ForgetFailure();
    }

    platform::ScriptedGraphics& scripted;
    platform::ScriptedWindow window;
    DXG::Setup setup;
    std::string warning;
};

// What the error log says without stacks; empties it.
inline std::string TakeErrors() {
    std::string text = ErrorLogWithoutStacks();
    if (!ErrorLogText().ends_with('\n') && !text.empty()) text.pop_back();
    ClearErrorLog();
    return text;
}

}  // namespace support
