#pragma once
// The keyboard as a table of 256 key states by scan code: 28 Enter, 200 Up, 208 Down, 203 Left, 205 Right, 29 and 157
// the Ctrl keys, 71 to 83 the keypad, 59 to 68 F1 to F10, 87 F11.

#include <cstdint>
#include <memory>

namespace platform {

class Window;

class KeyTable {
  public:
    virtual ~KeyTable() = default;
    // Foreground use, not shared with others when `exclusive`. False when the system refuses.
    virtual bool SetCooperation(Window& window, bool exclusive) = 0;
    // False while another window has the focus.
    virtual bool Acquire() = 0;
    // Brings the state up to date; false when the table must be acquired (again).
    virtual bool Poll() = 0;
    // 256 bytes, not 0 while the key is down; false leaves `state` alone.
    virtual bool Read(std::uint8_t state[256]) = 0;
};

class KeyTableSystem {
  public:
    virtual ~KeyTableSystem() = default;
    virtual std::unique_ptr<KeyTable> CreateKeyboard() = 0;
};

// Null when the system has no keyboard interface.
std::unique_ptr<KeyTableSystem> CreateKeyTableSystem();

}  // namespace platform
