#pragma once
// The OpenGL context of a window. Making one costs tens of milliseconds, so the one made to examine the hardware waits
// for the device that is made after it.

#include <cstdint>
#include <memory>

#include "platform/GraphicsDevice.h"

struct SDL_Window;

namespace platform::gl {

// What the window's own framebuffer has, in bits.
struct FramebufferBits {
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 0;
    int depth = 0;
    int stencil = 0;
};

class Context {
  public:
    // Of a window made for OpenGL; the waiting one when it is of this window. Null when OpenGL 3.3 cannot be had.
    static std::shared_ptr<Context> Of(SDL_Window* window);
    // Of the main window, or else of a hidden window of its own.
    static std::shared_ptr<Context> ForQuestions();
    // Lets the waiting context go; a device does so when it ends.
    static void ForgetWaiting();

    ~Context();
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    // Current on the calling thread. Calls are cheap when it already is.
    bool MakeCurrent();
    [[nodiscard]] bool IsCurrent() const;
    // Destroys the context with all its objects and makes a new one. False leaves it without one.
    bool Renew();
    [[nodiscard]] bool WasReset() const;  // by the driver, after a fault of the card

    [[nodiscard]] SDL_Window* Window() const { return window; }
    [[nodiscard]] const FramebufferBits& Bits() const { return bits; }
    // Of the window in pixels.
    void DrawableSize(int& width, int& height) const;

  private:
    Context(SDL_Window* onWindow, bool owns);
    bool Make();

    SDL_Window* window = nullptr;
    std::uint32_t windowId = 0;
    bool ownsWindow = false;
    void* handle = nullptr;  // SDL_GLContext
    bool reportsResets = false;
    FramebufferBits bits;
};

// Sets SDL's attributes for a window or context: 3.3 core, 24 bits of depth, 8 of stencil, double buffered.
void SetContextAttributes();

}  // namespace platform::gl
