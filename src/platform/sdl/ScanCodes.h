#pragma once
// Keyboard scan codes of the key table from SDL's: the codes of the AT keyboard's set 1, with bit 7 for its extended
// keys.

#include <SDL_scancode.h>

#include <cstdint>

namespace platform {

// 0 for a key that has none.
std::uint8_t ScanCodeOf(SDL_Scancode scancode);
// The keys of the separate navigation and arrow blocks, the right-hand Ctrl and Alt, and the keypad's Enter and divide.
bool IsExtendedKey(SDL_Scancode scancode);

}  // namespace platform
