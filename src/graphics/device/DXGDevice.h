#pragma once
// The graphics foundation: the one device of the program, its start, its frames, its loss and its end.

#include "graphics/device/DXGFoundation.h"
#include "graphics/device/DXGHardware.h"
#include "graphics/device/DXGSetup.h"

namespace platform {
class Window;
}

namespace DXG {

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

}  // namespace DXG
