#pragma once
// The program's shell: window, start-up, message and frame loop, shutdown.

#include <cstdint>
#include <memory>
#include <string>

#include "graphics/device/DXGDevice.h"

namespace platform {
class Window;
struct WindowMessage;
}  // namespace platform

// The drawing area of a resolution setting in pixels; there is one, 800 x 600.
void CalcResolution(int setting, int& width, int& height);

class MainGame {
  public:
    MainGame();
    ~MainGame();
    MainGame(const MainGame&) = delete;
    MainGame& operator=(const MainGame&) = delete;

    // The whole run. The code of the quit message, or 1 when there is no window.
    int WinMain();

    // What the window does with one message. The window is for its default procedure and for quitting.
    void WindowProcedure(platform::Window& target, const platform::WindowMessage& message);
    [[nodiscard]] bool IsActive() const { return active; }

  private:
    bool CreateMainWindow();
    void StartUp();
    void StartGraphics();
    void RunLoop();
    bool HandleMessage();
    void RunFrame(double elapsed);
    void ShutDown();

    std::unique_ptr<platform::Window> window;
    bool active = false;
    int resolution = 0;
    int exitCode = 0;
    DXG::Setup setup;
    std::int64_t previousCounter = 0;
    std::int64_t counterFrequency = 1;
};
