#pragma once
// The graphics foundation: the one device of the program, its start, its frames, its loss and its end.

#include <cstdint>
#include <string>

#include "diag/CThread.h"

namespace platform {
class GraphicsDevice;
class Window;
}  // namespace platform

namespace DXG {

struct Setup {
    unsigned adapter = 0;
    bool fullscreen = false;
    bool colour32 = false;  // in a window: replaced by whether the desktop has 32 bits per pixel
    unsigned width = 0;     // of the back buffer in pixels
    unsigned height = 0;
    bool tripleBuffer = false;
    unsigned vertexProcessing = 0;  // 0 software, 1 mixed, 2 hardware
    bool multithreaded = false;
    bool vsync = false;
    bool stencil = false;  // cleared by Init when there is none
};

// Examines and reports the hardware; true when `warningText` should be shown to the user. `noGraphics` is set when
// there is no graphics interface at all.
bool CheckHardware(unsigned& vertexProcessing, std::string& warningText, bool& noGraphics);

// Creates the device and sets the default states; false, with the reasons in the error log, when it cannot. A failed
// start sets the failed flag, with which every later one fails silently.
bool Init(platform::Window* window, const Setup* setup);
// Runs the shutdown hooks, drops every device object still held by a record, then the device, and writes the
// statistics. A foundation still up at the end of the process is shut down with a warning.
void Shutdown();
// Takes back the failed flag and, when the foundation is down, everything learnt by earlier starts (tests).
void ForgetFailure();

// False when no frame can be drawn now: a lost device sleeps 100 ms a call until it can be reset, which happens when
// `allowReset` is true. `seconds` since the last frame go into the average when `countFrame` is true.
bool BeginFrame(float seconds, bool countFrame, bool allowReset);
void EndFrame0();  // ends the scene
void EndFrame1();  // presents it

bool IsInitialized();
bool HasFailed();
bool IsDeviceLost();
platform::GraphicsDevice* GetDevice();     // reports a misuse when down
platform::GraphicsDevice* DeviceOrNull();  // the same without a report
const Setup& GetSetup();
bool Uses32BitColour();
bool UsesStencil();
bool HasPixelShaders();
unsigned VertexShaderMajor();
bool HasVolumeTextures();
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
