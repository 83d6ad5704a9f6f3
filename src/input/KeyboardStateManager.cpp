#include "input/KeyboardStateManager.h"

#include "diag/LogFile.h"
#include "platform/KeyTable.h"

KeyboardStateManager::KeyboardStateManager() = default;
KeyboardStateManager::~KeyboardStateManager() = default;

KeyboardStateManager& KeyboardStateManager::Default() {
    static KeyboardStateManager manager;
    return manager;
}

bool KeyboardStateManager::Start(std::unique_ptr<platform::KeyTableSystem> system, platform::Window& window,
                                 bool exclusive) {
    keySystem = std::move(system);
    if (!keySystem) {
        errorLog.Write("Failed to initialize DirectInput (keyboard state manager)\n");
        return false;
    }
    table = keySystem->CreateKeyboard();
    if (!table) {
        errorLog.Write("Failed to create DirectInput keyboard device\n");
        Stop();
        return false;
    }
    if (!table->SetCooperation(window, exclusive)) {
        errorLog.Write("Keyboard refused to cooperate\n");
        Stop();
        return false;
    }
    table->Acquire();
    current.reset();
    previous.reset();
    return true;
}

void KeyboardStateManager::Poll() {
    if (!table) return;
    if (!table->Poll() && table->Acquire()) {
        current.reset();
        previous.reset();
    }
    previous = current;
    std::uint8_t state[256];
    if (!table->Read(state)) return;
    for (std::size_t code = 0; code < current.size(); ++code)
        current[code] = state[code] != 0;
}

void KeyboardStateManager::Stop() {
    table.reset();
    keySystem.reset();
}
