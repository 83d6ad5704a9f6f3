#include "input/ShellInput.h"

#include "platform/Window.h"

namespace {

constexpr int wheelNotch = 120;

// 0 for a key that is not queued. Codes as in platform/KeyTable.h.
std::uint8_t QueueCodeOf(std::uint8_t scanCode) {
    switch (scanCode) {
        case 0xD2:
            return typed::insert;
        case 0xD3:
            return typed::remove;
        case 0xC7:
            return typed::home;
        case 0xCF:
            return typed::end;
        case 0xC9:
            return typed::pageUp;
        case 0xD1:
            return typed::pageDown;
        case 0xC8:
            return typed::up;
        case 0xD0:
            return typed::down;
        case 0xCB:
            return typed::left;
        case 0xCD:
            return typed::right;
        default:
            return 0;
    }
}

}  // namespace

ShellInput& ShellInput::Default() {
    static ShellInput input;
    return input;
}

bool ShellInput::CollectTyped(const platform::WindowMessage& message) {
    if (message.kind == platform::MessageKind::Character) {
        if (message.character == 13) {
            typedQueue.push_back(typed::enter);
            return true;
        }
        if (message.character == 8) typedQueue.push_back(typed::backspace);
        typedQueue.push_back(message.character);
        return true;
    }
    if (message.kind != platform::MessageKind::KeyDown || !message.extended) return false;
    const std::uint8_t code = QueueCodeOf(message.scanCode);
    if (code) typedQueue.push_back(code);
    return code != 0;
}

bool ShellInput::CollectMouse(const platform::WindowMessage& message) {
    switch (message.kind) {
        case platform::MessageKind::MouseMove:
            mouseX = message.x;
            mouseY = message.y;
            return true;
        case platform::MessageKind::LeftDown:
            leftClicked = true;
            leftHeld = true;
            return true;
        case platform::MessageKind::RightDown:
            rightClicked = true;
            rightHeld = true;
            return true;
        case platform::MessageKind::LeftUp:
            leftHeld = false;
            return false;
        case platform::MessageKind::RightUp:
            rightHeld = false;
            return false;
        case platform::MessageKind::Wheel:
            wheelSteps = -message.wheelDelta / wheelNotch;
            return false;
        default:
            return false;
    }
}

std::uint8_t ShellInput::TakeTyped() {
    if (typedQueue.empty()) return 0;
    const std::uint8_t code = typedQueue.front();
    typedQueue.pop_front();
    return code;
}

void ShellInput::ClearFrame() {
    leftClicked = false;
    rightClicked = false;
    wheelSteps = 0;
}
