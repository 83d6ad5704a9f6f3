#pragma once
// The state of the graphics foundation, its hooks and its lock, for everything that is built on the device.

#include <cstdint>
#include <string>

#include "diag/CThread.h"
#include "graphics/device/DXGSetup.h"

namespace platform {
class GraphicsDevice;
}

namespace DXG {

bool IsInitialized();
bool HasFailed();
bool IsDeviceLost();
platform::GraphicsDevice* GetDevice();     // reports a misuse when down
platform::GraphicsDevice* DeviceOrNull();  // the same without a report
const Setup& GetSetup();
bool Uses32BitColour();
bool UsesStencil();
// Whether the device can sample a texture format (named by platform::PixelFormat's number).
bool CanSampleFormat(int pixelFormat);

// Run in the order of registration: on loss, after a reset, and at shutdown. The lists last as long as the process.
void AddReleaseHook(void (*hook)());
void AddRestoreHook(void (*hook)());
void AddShutdownHook(void (*hook)());
// Run after all shutdown hooks, under the graphics lock, while the device is still there: the owners of device objects
// drop them.
void AddTeardownHook(void (*hook)());

// Bytes; the lowest value seen is kept for the report at shutdown.
std::uint64_t FreeTextureMemory();

// Serialises device creation, shutdown, scene drawing and the creation of resources on any thread. Lock order: this one
// first, then the texture registry's, then the network lock; never taken under a lock of the session.
CriticalSection& GraphicsLock();

// "Error: NAME used when graphics foundation is not initialized.\n", for the caller's own report.
std::string NotInitializedMessage(const char* operation);

}  // namespace DXG
