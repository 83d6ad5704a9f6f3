#include "platform/sdl/DisplayLoss.h"

#include <SDL.h>
#include <SDL_syswm.h>

#include <atomic>

namespace platform {

namespace {

std::atomic<bool> displayLost{false};

#ifdef SDL_VIDEO_DRIVER_X11

// In the place of the X library's own handlers, which write to standard error and call exit(). When the second returns,
// the library fails every further call on the connection by itself (XSetIOErrorExitHandler(3)).
int OnConnectionError(Display*) {
    return 0;
}
void OnConnectionLost(Display*, void*) {
    displayLost = true;
}

void WatchX11(Display* display) {
    // SDL has loaded the library; it is not linked.
    void* library = SDL_LoadObject("libX11.so.6");
    if (!library) return;
    using SetErrorHandler = XIOErrorHandler (*)(XIOErrorHandler);
    using SetExitHandler = void (*)(Display*, void (*)(Display*, void*), void*);
    const auto setError = reinterpret_cast<SetErrorHandler>(SDL_LoadFunction(library, "XSetIOErrorHandler"));
    const auto setExit = reinterpret_cast<SetExitHandler>(SDL_LoadFunction(library, "XSetIOErrorExitHandler"));
    if (setError && setExit) {
        setError(OnConnectionError);
        setExit(display, OnConnectionLost, nullptr);
    }
    SDL_UnloadObject(library);
}

#endif

}  // namespace

void WatchDisplay(SDL_Window* window) {
    SDL_SysWMinfo about;
    SDL_VERSION(&about.version);
    if (!SDL_GetWindowWMInfo(window, &about)) return;
#ifdef SDL_VIDEO_DRIVER_X11
    if (about.subsystem == SDL_SYSWM_X11) WatchX11(about.info.x11.display);
#endif
}

bool IsDisplayLost() {
    return displayLost;
}

}  // namespace platform
