#include "graphics/device/DXGDevice.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "graphics/device/DXGFoundationState.h"
#include "graphics/device/DXGState.h"
#include "platform/Clock.h"
#include "platform/GraphicsDevice.h"
#include "platform/SystemQuery.h"

namespace DXG {

namespace {

constexpr unsigned lostDeviceSleepMs = 100;
constexpr std::uint64_t bytesPerMegabyte = 1ULL << 20;

// A hook may register more hooks.
void RunHooks(const std::vector<Hook>& hooks) {
    for (std::size_t i = 0; i < hooks.size(); ++i)
        hooks[i]();
}

// The last act of a process that ends without a shutdown.
struct ExitGuard {
    ExitGuard() { (void)MemoryManager::Default(); }  // born first, so that it goes later
    ~ExitGuard() {
        if (!IsInitialized()) return;
        errorLog.Write("Warning: Graphics foundation never shut down\n");
        errorLog.Write(" -Attempting automatic shutdown... ");
        try {
            Shutdown();
            errorLog.Write("OK\n");
        } catch (...) {
            errorLog.Write("Error\n");
        }
    }
    ExitGuard(const ExitGuard&) = delete;
    ExitGuard& operator=(const ExitGuard&) = delete;
};

bool IsDesktopDepthKnown(unsigned bits) {
    return bits == 16 || bits == 32;
}

// Null when the setup serves, else why not.
const char* RefusalOf(const Setup* setup) {
    if (!setup) return "Invalid pointer passed for Setup struct.";
    if (!setup->fullscreen && !IsDesktopDepthKnown(platform::DesktopBitsPerPixel()))
        errorLog.Write(
            "Windows desktop should be set to either 16 or 32 bit color to run in windowed mode... but will try it "
            "anyways...\n");
    return nullptr;
}

platform::VertexProcessing ProcessingOf(unsigned code) {
    if (code == 2) return platform::VertexProcessing::Hardware;
    return code == 1 ? platform::VertexProcessing::Mixed : platform::VertexProcessing::Software;
}

platform::PresentParameters ParametersOf(const Setup& setup, const DeviceFormats& formats) {
    platform::PresentParameters parameters;
    parameters.backBufferWidth = setup.width;
    parameters.backBufferHeight = setup.height;
    parameters.backBufferFormat = formats.display;
    parameters.backBufferCount = setup.tripleBuffer ? 2 : 1;
    parameters.windowed = !setup.fullscreen;
    parameters.depthFormat = formats.depth;
    parameters.waitForRetrace = setup.vsync;
    return parameters;
}

void ReportCreationFailure(platform::DeviceResult result) {
    errorLog.Write("bad.\nFailed to create D3D device:\n");
    if (result == platform::DeviceResult::InvalidCall)
        errorLog.Write("  -bad parameters\n");
    else if (result == platform::DeviceResult::NotAvailable)
        errorLog.Write("  -device doesn't support requested features\n");
    else if (result == platform::DeviceResult::OutOfVideoMemory)
        errorLog.Write("  -device doesn't have enough video memory free\n");
}

// Three attempts: as asked, as the interface may have adjusted it, and with the plainest depth buffer.
bool MakeDevice(Foundation& state, platform::Window& window) {
    const auto attempt = [&] {
        return state.graphics->CreateDevice(state.setup.adapter, window, ProcessingOf(state.setup.vertexProcessing),
                                            state.setup.multithreaded, state.parameters, state.device);
    };
    if (attempt() == platform::DeviceResult::Ok) return true;
    errorLog.Write("CreateDevice failed... trying again in case the API fixed a parameter...");
    if (attempt() == platform::DeviceResult::Ok) return true;
    state.formats.depth = platform::PixelFormat::D16;
    state.parameters.depthFormat = platform::PixelFormat::D16;
    state.setup.stencil = false;
    const platform::DeviceResult result = attempt();
    if (result == platform::DeviceResult::Ok)
        errorLog.Write(" good.\n");
    else
        ReportCreationFailure(result);
    return result == platform::DeviceResult::Ok;
}

void EstimateMemory(Foundation& state) {
    const Setup& setup = state.setup;
    const std::uint64_t buffers = setup.tripleBuffer ? 3 : 2;
    const std::uint64_t bytesPerPixel = setup.colour32 ? 4 : 2;
    const std::uint64_t frameBytes = buffers * bytesPerPixel * setup.width * setup.height;
    state.lowestFree = state.device->FreeTextureMemory();
    state.estimatedPeak = state.lowestFree + (frameBytes / 1024 + 512) * 1024;
}

void WriteDeviceReport(Foundation& state) {
    statLog.Write("Using Vertex Shader version: ");
    statLog.Write(state.device->VertexProfile());
    statLog.Write("\nUsing Pixel Shader version: ");
    statLog.Write(state.device->PixelProfile());
    state.initialFreeMegabytes = FreeTextureMemory() / bytesPerMegabyte;
    statLog.Write("\nInitial free texture memory(vid mem + agp mem): ");
    statLog.Write(std::to_string(state.initialFreeMegabytes));
    statLog.Write("MB.\n");
    statLog.Write(state.device->SupportsOcclusionQuery() ? "Device does support Occlusion Queries.\n\n"
                                                         : "Device does NOT support Occlusion Queries.\n\n");
}

void WriteShutdownReport(Foundation& state) {
    if (state.estimatedPeak != 0) {
        // A device that frees more than it began with has used nothing.
        const std::uint64_t used = state.estimatedPeak - std::min(state.estimatedPeak, state.lowestFree);
        statLog.Write("Approximate max video memory used: ");
        statLog.Write(std::to_string(used / bytesPerMegabyte));
        statLog.Write("MB\n\n");
    }
    if (state.countedFrames > 0) {
        const double rate = state.countedSeconds > 0.0 ? state.countedFrames / state.countedSeconds : 0.0;
        statLog.Write("Average framerate (over ");
        statLog.Write(std::lround(state.countedSeconds));
        statLog.Write(" seconds): ");
        statLog.Write(std::lround(rate));
        statLog.Write(" frames/second\n\n");
    }
    state.estimatedPeak = 0;
    state.countedFrames = 0;
    state.countedSeconds = 0.0;
}

void EnterLostState(Foundation& state) {
    if (state.deviceLost) return;
    state.deviceLost = true;
    RunHooks(state.releaseHooks);
}

// A scene has been begun: the device is there again.
void EnterFrame(Foundation& state) {
    if (state.deviceLost) {
        state.deviceLost = false;
        RunHooks(state.restoreHooks);
    }
    state.inFrame = true;
    if (state.statesStale) ApplyDefaultStates();
    state.statesStale = false;
}

// True when the device was reset and a scene begun.
bool ResetAndBegin(Foundation& state) {
    const platform::DeviceResult result = state.device->Reset(state.parameters);
    if (result == platform::DeviceResult::DriverInternalError || result == platform::DeviceResult::OutOfVideoMemory) {
        state.failed = true;
        errorLog.Write(result == platform::DeviceResult::OutOfVideoMemory ? "Graphics device out of memory\n"
                                                                          : "Internal graphics driver error occured\n");
        return false;
    }
    if (result != platform::DeviceResult::Ok) return false;
    state.statesStale = true;
    if (state.device->BeginScene() != platform::DeviceResult::Ok) return false;
    EnterFrame(state);
    return true;
}

}  // namespace

bool Init(platform::Window* window, const Setup* setup) {
    const ScopedLock held(GraphicsLock());
    Foundation& state = TheFoundation();
    if (state.failed) return false;
    state.failed = true;
    if (state.initialized) {
        errorLog.Write("Attempt to call DXG::Init while already ready\n");
        return false;
    }
    if (!window) {
        errorLog.Write("Null window passed to DXG::Init\n");
        return false;
    }
    static ExitGuard atExit;
    if (const char* refusal = RefusalOf(setup)) {
        errorLog.Write("DXG::Init failed:\n  -");
        errorLog.Write(refusal);
        errorLog.Write("\n");
        Shutdown();
        return false;
    }
    state.setup = *setup;
    state.setupValid = true;
    if (!state.setup.fullscreen) state.setup.colour32 = platform::DesktopBitsPerPixel() == 32;
    state.graphics = platform::CreateGraphicsInterface();
    if (!state.graphics) {
        errorLog.Write("Failed to create Direct3D9 object\n");
        Shutdown();
        return false;
    }
    ChooseFormats(*state.graphics, state.setup, state.formats);
    state.parameters = ParametersOf(state.setup, state.formats);
    if (!MakeDevice(state, *window)) {
        Shutdown();
        return false;
    }
    state.initialized = true;  // the state setters below need it
    SetViewportToBackBuffer();
    EstimateMemory(state);
    state.failed = false;
    ApplyDefaultStates();
    WriteDeviceReport(state);
    return true;
}

void Shutdown() {
    const ScopedLock held(GraphicsLock());
    Foundation& state = TheFoundation();
    RunHooks(state.shutdownHooks);
    if (state.device) RunHooks(state.teardownHooks);
    state.device.reset();
    state.graphics.reset();
    WriteShutdownReport(state);
    state.initialized = false;
    state.inFrame = false;
    state.deviceLost = false;
    state.statesStale = false;
}

void ForgetFailure() {
    const ScopedLock held(GraphicsLock());
    Foundation& state = TheFoundation();
    state.failed = false;
    if (state.initialized) return;
    state.setupValid = false;
    state.setup = Setup();
    state.formats = DeviceFormats();
    ForgetCapabilities();
}

bool BeginFrame(float seconds, bool countFrame, bool allowReset) {
    Foundation& state = TheFoundation();
    if (!state.initialized) {
        ReportMisuse(NotInitializedMessage("DXG::BeginFrame"));
        return false;
    }
    if (state.inFrame) {
        ReportMisuse("Error: Previous BeginFrame call was not matched with an EndFrame call\n",
                     "  -2nd call made from:\n");
        return false;
    }
    const platform::DeviceResult level = state.device->TestCooperativeLevel();
    if (level != platform::DeviceResult::Ok) {
        EnterLostState(state);
        if (level == platform::DeviceResult::DeviceLost) platform::SleepMs(lostDeviceSleepMs);
        return level == platform::DeviceResult::DeviceNotReset && allowReset && ResetAndBegin(state);
    }
    if (state.device->BeginScene() != platform::DeviceResult::Ok) return false;
    EnterFrame(state);
    if (countFrame) {
        state.countedSeconds += static_cast<double>(seconds);
        ++state.countedFrames;
    }
    return true;
}

void EndFrame0() {
    Foundation& state = TheFoundation();
    if (!state.initialized) return ReportMisuse(NotInitializedMessage("DXG::EndFrame0"));
    if (!state.inFrame) {
        errorLog.Write("EndFrame should not be called if BeginFrame was not successfully called before.\n");
        return;
    }
    state.device->EndScene();
    state.inFrame = false;
}

void EndFrame1() {
    Foundation& state = TheFoundation();
    if (!state.initialized) return ReportMisuse(NotInitializedMessage("DXG::EndFrame1"));
    state.device->Present();
}

}  // namespace DXG
