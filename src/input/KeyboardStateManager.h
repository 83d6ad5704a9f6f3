#pragma once
// The whole keyboard, read once per drawn frame.

#include <bitset>
#include <cstdint>
#include <memory>

namespace platform {
class KeyTable;
class KeyTableSystem;
class Window;
}  // namespace platform

class KeyboardStateManager {
  public:
    KeyboardStateManager();
    ~KeyboardStateManager();

    static KeyboardStateManager& Default();

    // False, with a message, when the keyboard cannot be had. `system` is null when the platform has none.
    bool Start(std::unique_ptr<platform::KeyTableSystem> system, platform::Window& window, bool exclusive);
    void Poll();
    // By scan code.
    [[nodiscard]] bool IsKeyDown(std::uint8_t code) const { return current[code]; }
    [[nodiscard]] bool WasKeyPressed(std::uint8_t code) const { return current[code] && !previous[code]; }
    void Stop();

  private:
    std::unique_ptr<platform::KeyTableSystem> keySystem;
    std::unique_ptr<platform::KeyTable> table;
    std::bitset<256> current;
    std::bitset<256> previous;
};
