#pragma once
// What the window's messages leave for the scenes: typed characters and the mouse.

#include <cstdint>
#include <deque>

namespace platform {
struct WindowMessage;
}

// Codes of keys in the typed-character queue.
namespace typed {
constexpr std::uint8_t backspace = 0xFF;  // followed by 8
constexpr std::uint8_t enter = 0xFE;
constexpr std::uint8_t insert = 0xFD;
constexpr std::uint8_t remove = 0xFC;
constexpr std::uint8_t home = 0xFB;
constexpr std::uint8_t end = 0xFA;
constexpr std::uint8_t pageUp = 0xF9;
constexpr std::uint8_t pageDown = 0xF8;
constexpr std::uint8_t up = 0xF7;
constexpr std::uint8_t down = 0xF6;
constexpr std::uint8_t left = 0xF5;
constexpr std::uint8_t right = 0xF4;
}  // namespace typed

class ShellInput {
  public:
    static ShellInput& Default();

    // True when the message was a character or a navigation key.
    bool CollectTyped(const platform::WindowMessage& message);
    // True when the message is used up; button releases and the wheel are noted and passed on.
    bool CollectMouse(const platform::WindowMessage& message);

    [[nodiscard]] bool HasTyped() const { return !typedQueue.empty(); }
    std::uint8_t TakeTyped();  // 0 when the queue is empty
    void ClearTyped() { typedQueue.clear(); }

    [[nodiscard]] int MouseX() const { return mouseX; }
    [[nodiscard]] int MouseY() const { return mouseY; }
    [[nodiscard]] bool LeftClicked() const { return leftClicked; }  // this frame
    [[nodiscard]] bool RightClicked() const { return rightClicked; }
    [[nodiscard]] bool LeftHeld() const { return leftHeld; }
    [[nodiscard]] bool RightHeld() const { return rightHeld; }
    [[nodiscard]] int WheelSteps() const { return wheelSteps; }  // this frame; away from the user is negative
    void ClearFrame();

  private:
    std::deque<std::uint8_t> typedQueue;
    int mouseX = 0;
    int mouseY = 0;
    bool leftClicked = false;
    bool rightClicked = false;
    bool leftHeld = false;
    bool rightHeld = false;
    int wheelSteps = 0;
};
