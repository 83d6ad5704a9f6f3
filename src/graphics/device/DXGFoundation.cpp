#include "graphics/device/DXGFoundation.h"

#include <algorithm>

#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "graphics/device/DXGFoundationState.h"

namespace DXG {

namespace {

void AddHook(std::vector<Hook>& hooks, Hook hook) {
    const ScopedLock held(GraphicsLock());
    if (hook) hooks.push_back(hook);
}

}  // namespace

Foundation& TheFoundation() {
    static Foundation* foundation = new Foundation;
    return *foundation;
}

bool IsInitialized() {
    return TheFoundation().initialized;
}
bool HasFailed() {
    return TheFoundation().failed;
}
bool IsDeviceLost() {
    return TheFoundation().deviceLost;
}

platform::GraphicsDevice* GetDevice() {
    if (!TheFoundation().initialized) ReportMisuse(NotInitializedMessage("DXG::GetDevice"));
    return DeviceOrNull();
}

platform::GraphicsDevice* DeviceOrNull() {
    return TheFoundation().initialized ? TheFoundation().device.get() : nullptr;
}

const Setup& GetSetup() {
    if (!TheFoundation().setupValid) errorLog.Write("Warning: GetSetup used, and setup is not valid.\n");
    return TheFoundation().setup;
}

bool Uses32BitColour() {
    return TheFoundation().setup.colour32;
}
bool UsesStencil() {
    return TheFoundation().setup.stencil;
}

bool CanSampleFormat(int pixelFormat) {
    const Foundation& state = TheFoundation();
    return state.graphics && state.graphics->CheckTextureFormat(state.setup.adapter, state.formats.display,
                                                                static_cast<platform::PixelFormat>(pixelFormat));
}

void AddReleaseHook(void (*hook)()) {
    AddHook(TheFoundation().releaseHooks, hook);
}
void AddRestoreHook(void (*hook)()) {
    AddHook(TheFoundation().restoreHooks, hook);
}
void AddShutdownHook(void (*hook)()) {
    AddHook(TheFoundation().shutdownHooks, hook);
}
void AddTeardownHook(void (*hook)()) {
    AddHook(TheFoundation().teardownHooks, hook);
}

std::uint64_t FreeTextureMemory() {
    Foundation& state = TheFoundation();
    if (!state.initialized) {
        ReportMisuse(NotInitializedMessage("DXG::FreeTextureMemory"));
        return 0;
    }
    const std::uint64_t bytes = state.device->FreeTextureMemory();
    state.lowestFree = std::min(state.lowestFree, bytes);
    return bytes;
}

CriticalSection& GraphicsLock() {
    static CriticalSection* lock = new CriticalSection;  // outlives every static handle
    return *lock;
}

std::string NotInitializedMessage(const char* operation) {
    return std::string("Error: ") + operation + " used when graphics foundation is not initialized.\n";
}

}  // namespace DXG
