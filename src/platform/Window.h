#pragma once
// The main window and its messages as values.

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

enum class MessageKind {
    Quit,     // posted by PostQuit; code
    Destroy,  // the window is gone
    Paint,
    Activate,   // active
    Character,  // character: one byte of the Windows western code page
    KeyDown,    // scanCode, extended
    MouseMove,  // x, y
    LeftDown,
    LeftUp,
    RightDown,
    RightUp,
    Wheel,          // wheelDelta, 120 per notch, positive away from the user
    SystemCommand,  // command: minimise, maximise, size and the like
    Close,          // the user asks to close the window
    Other,
};

// One message; only the fields that its kind names are meaningful.
struct WindowMessage {
    MessageKind kind = MessageKind::Other;
    int code = 0;
    bool active = false;
    unsigned char character = 0;
    std::uint8_t scanCode = 0;  // keyboard scan code 0-255 as in KeyTable.h
    bool extended = false;      // the key is of the separate navigation or arrow block
    std::int16_t x = 0;         // client pixels
    std::int16_t y = 0;
    std::int16_t wheelDelta = 0;
    std::uint32_t command = 0;
};

struct WindowRequest {
    std::string className;
    std::string title;
    int width = 0;  // of the drawing area in pixels
    int height = 0;
    int outerWidth = 0;  // with the frame, for systems that size windows by their outside
    int outerHeight = 0;
};

enum class WindowFailure { None, Class, Window };

// Fixed size, minimise box only. One window a process.
class Window {
  public:
    virtual ~Window() = default;
    virtual void Show() = 0;
    // Takes one waiting message; false when none waits. Never blocks.
    virtual bool TakeMessage(WindowMessage& out) = 0;
    // What the system does with a message that the program left alone: Close destroys the window (a Destroy message
    // follows), a minimise command minimises it.
    virtual void DefaultProcedure(const WindowMessage& message) = 0;
    virtual void PostQuit(int code) = 0;
    // True once the user has asked to close the window, even while its messages are not being taken. Any thread.
    [[nodiscard]] virtual bool CloseWanted() const = 0;
    // True once the display that the window was on is gone: nothing is shown and no message comes any more. Any thread.
    [[nodiscard]] virtual bool DisplayLost() const = 0;
    virtual void ShowCursor(bool show) = 0;
    // The system's own handle for graphics back ends of the same system; its type is theirs.
    [[nodiscard]] virtual void* NativeHandle() = 0;
};

// Null on failure; `failure` says which step refused.
std::unique_ptr<Window> CreateMainWindow(const WindowRequest& request, WindowFailure& failure);

}  // namespace platform
