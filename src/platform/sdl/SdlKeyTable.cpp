#include <SDL.h>

#include "platform/KeyTable.h"
#include "platform/Window.h"
#include "platform/sdl/ScanCodes.h"

namespace platform {

namespace {

class SdlKeyTable : public KeyTable {
  public:
    bool SetCooperation(Window& toWatch, bool) override {
        window = static_cast<SDL_Window*>(toWatch.NativeHandle());
        return window != nullptr;
    }

    // Losing the focus loses the keyboard; it must be acquired again.
    bool Acquire() override {
        acquired = HasFocus();
        return acquired;
    }

    bool Poll() override {
        if (!HasFocus()) acquired = false;
        return acquired;
    }

    bool Read(std::uint8_t state[256]) override {
        if (!Poll()) return false;
        int count = 0;
        const Uint8* keys = SDL_GetKeyboardState(&count);
        for (int i = 0; i < 256; ++i)
            state[i] = 0;
        for (int i = 0; i < count; ++i)
            if (keys[i]) state[ScanCodeOf(static_cast<SDL_Scancode>(i))] = 0x80;
        state[0] = 0;  // keys without a code
        return true;
    }

  private:
    [[nodiscard]] bool HasFocus() const { return window && (SDL_GetWindowFlags(window) & SDL_WINDOW_INPUT_FOCUS); }

    SDL_Window* window = nullptr;
    bool acquired = false;
};

class SdlKeyTableSystem : public KeyTableSystem {
  public:
    std::unique_ptr<KeyTable> CreateKeyboard() override { return std::make_unique<SdlKeyTable>(); }
};

}  // namespace

std::unique_ptr<KeyTableSystem> CreateKeyTableSystem() {
    return SDL_WasInit(SDL_INIT_VIDEO) ? std::make_unique<SdlKeyTableSystem>() : nullptr;
}

}  // namespace platform
