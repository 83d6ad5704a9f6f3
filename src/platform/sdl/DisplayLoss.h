#pragma once
// Notices that the display is gone while windows are still on it.

struct SDL_Window;

namespace platform {

// Watches the display connection that SDL has opened for this window. Without it the X library ends the process on the
// spot when the connection breaks.
void WatchDisplay(SDL_Window* window);

// True once a watched connection has broken. From then on nothing can be shown or asked, and calls to the display
// library answer with failure. Any thread.
bool IsDisplayLost();

}  // namespace platform
