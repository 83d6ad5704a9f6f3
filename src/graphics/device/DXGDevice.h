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

// Examines and reports the hardware; true when `warningText` should be shown to the user. `noGraphics` is set when there is no
// graphics interface at all.
bool CheckHardware(unsigned& vertexProcessing, std::string& warningText, bool& noGraphics);

bool Init(platform::Window* window, const Setup* setup);
void Shutdown();
// Frees the foundation's state for another start within one process (tests).
void ForgetFailure();

// False when no frame can be drawn now.
bool BeginFrame(float seconds, bool countFrame, bool allowReset);
void EndFrame0();  // ends the scene
void EndFrame1();  // presents it

bool IsInitialized();
bool HasFailed();
bool IsDeviceLost();
platform::GraphicsDevice* GetDevice();        // reports a misuse when down
platform::GraphicsDevice* DeviceOrNull();     // the same without a report
const Setup& GetSetup();
bool Uses32BitColour();
bool UsesStencil();
bool HasPixelShaders();
unsigned VertexShaderMajor();
bool HasVolumeTextures();
// Whether the device can sample a texture format (named by platform::PixelFormat's number).
bool CanSampleFormat(int pixelFormat);

// Run in the order of registration: on loss, after a reset, and at shutdown.
void AddReleaseHook(void (*hook)());
void AddRestoreHook(void (*hook)());
void AddShutdownHook(void (*hook)());

// Bytes; the lowest value seen is kept for the report at shutdown.
std::uint64_t FreeTextureMemory();

// Serialises device creation, shutdown, scene drawing and the creation of resources on any thread. Taken before the texture
// registry's lock and before the network lock; never taken under a lock of the session.
CriticalSection& GraphicsLock();

// "Error: NAME used when graphics foundation is not initialized.\n" with `header` and the call stack.
void ReportNotInitialized(const char* operation, const char* header, bool fromCaller);

}  // namespace DXG
