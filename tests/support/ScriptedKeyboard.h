#pragma once
// A keyboard that answers as told.

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/KeyTable.h"

namespace support {

struct KeyboardScript {
    static KeyboardScript& Default() {
        static KeyboardScript script;
        return script;
    }
    bool cooperates = true;
    bool focused = true;
    bool readable = true;
    bool acquired = false;
    std::vector<int> down;  // scan codes
};

class ScriptedKeyTable : public platform::KeyTable {
  public:
    bool SetCooperation(platform::Window&, bool) override { return script.cooperates; }
    bool Acquire() override { return script.acquired = script.focused; }
    bool Poll() override {
        if (!script.focused) script.acquired = false;
        return script.acquired;
    }
    bool Read(std::uint8_t state[256]) override {
        if (!script.readable || !script.acquired) return false;
        std::fill_n(state, 256, std::uint8_t{0});
        for (const int code : script.down)
            state[code] = 1;
        return true;
    }

  private:
    KeyboardScript& script = KeyboardScript::Default();
};

class ScriptedKeyboard : public platform::KeyTableSystem {
  public:
    explicit ScriptedKeyboard(bool withKeyboard = true) : hasKeyboard(withKeyboard) {}
    std::unique_ptr<platform::KeyTable> CreateKeyboard() override {
        return hasKeyboard ? std::make_unique<ScriptedKeyTable>() : nullptr;
    }

  private:
    bool hasKeyboard;
};

}  // namespace support
