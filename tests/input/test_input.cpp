#include <gtest/gtest.h>

#include "input/KeyboardStateManager.h"
#include "input/ShellInput.h"
#include "platform/Window.h"
#include "support/ScriptedKeyboard.h"
#include "support/TestFolder.h"

namespace {

using platform::MessageKind;
using platform::WindowMessage;

WindowMessage Character(unsigned char character) {
    WindowMessage message;
    message.kind = MessageKind::Character;
    message.character = character;
    return message;
}

WindowMessage Key(std::uint8_t scanCode, bool extended) {
    WindowMessage message;
    message.kind = MessageKind::KeyDown;
    message.scanCode = scanCode;
    message.extended = extended;
    return message;
}

WindowMessage Mouse(MessageKind kind, int x = 0, int y = 0) {
    WindowMessage message;
    message.kind = kind;
    message.x = static_cast<std::int16_t>(x);
    message.y = static_cast<std::int16_t>(y);
    return message;
}

WindowMessage Wheel(int delta) {
    WindowMessage message;
    message.kind = MessageKind::Wheel;
    message.wheelDelta = static_cast<std::int16_t>(delta);
    return message;
}

TEST(TypedQueue, HoldsCharactersAndCodes) {
    struct Row {
        const char* name;
        WindowMessage message;
        bool handled;
        std::vector<int> queued;
    };
    const Row rows[] = {
        {"letter", Character('a'), true, {'a'}},
        {"accent", Character(0xE9), true, {0xE9}},
        {"backspace", Character(8), true, {0xFF, 8}},
        {"enter", Character(13), true, {0xFE}},
        {"insert", Key(0xD2, true), true, {0xFD}},
        {"delete", Key(0xD3, true), true, {0xFC}},
        {"home", Key(0xC7, true), true, {0xFB}},
        {"end", Key(0xCF, true), true, {0xFA}},
        {"page up", Key(0xC9, true), true, {0xF9}},
        {"page down", Key(0xD1, true), true, {0xF8}},
        {"up", Key(0xC8, true), true, {0xF7}},
        {"down", Key(0xD0, true), true, {0xF6}},
        {"left", Key(0xCB, true), true, {0xF5}},
        {"right", Key(0xCD, true), true, {0xF4}},
        {"keypad 8 without Num Lock", Key(72, false), false, {}},
        {"keypad 4", Key(75, false), false, {}},
        {"keypad enter", Key(0x9C, true), false, {}},
        {"letter key", Key(30, false), false, {}},
    };
    for (const Row& row : rows) {
        ShellInput input;
        EXPECT_EQ(input.CollectTyped(row.message), row.handled) << row.name;
        for (const int code : row.queued)
            EXPECT_EQ(input.TakeTyped(), code) << row.name;
        EXPECT_FALSE(input.HasTyped()) << row.name;
        EXPECT_EQ(input.TakeTyped(), 0) << row.name;
    }
}

TEST(MouseState, ClicksLastAFrameAndHoldsLastTillTheRelease) {
    ShellInput input;
    EXPECT_TRUE(input.CollectMouse(Mouse(MessageKind::MouseMove, -3, 700)));
    EXPECT_EQ(input.MouseX(), -3);
    EXPECT_EQ(input.MouseY(), 700);
    EXPECT_TRUE(input.CollectMouse(Mouse(MessageKind::LeftDown)));
    EXPECT_TRUE(input.CollectMouse(Mouse(MessageKind::RightDown)));
    EXPECT_TRUE(input.LeftClicked() && input.LeftHeld() && input.RightClicked() && input.RightHeld());
    input.ClearFrame();
    EXPECT_FALSE(input.LeftClicked() || input.RightClicked());
    EXPECT_TRUE(input.LeftHeld() && input.RightHeld());
    EXPECT_FALSE(input.CollectMouse(Mouse(MessageKind::LeftUp)));
    EXPECT_FALSE(input.LeftHeld());
    EXPECT_TRUE(input.RightHeld());
    EXPECT_FALSE(input.CollectMouse(Mouse(MessageKind::RightUp)));
    EXPECT_FALSE(input.RightHeld());
}

TEST(MouseState, WheelCountsNotchesTowardsTheUser) {
    for (const auto& [delta, steps] : {std::pair{120, -1}, {-120, 1}, {119, 0}, {-119, 0}, {-250, 2}, {0, 0}}) {
        ShellInput input;
        EXPECT_FALSE(input.CollectMouse(Wheel(delta)));
        EXPECT_EQ(input.WheelSteps(), steps) << delta;
        input.ClearFrame();
        EXPECT_EQ(input.WheelSteps(), 0);
    }
}

using support::ScriptedKeyboard;
support::KeyboardScript& script = support::KeyboardScript::Default();

class FakeWindow : public platform::Window {
  public:
    void Show() override {}
    bool TakeMessage(WindowMessage&) override { return false; }
    void DefaultProcedure(const WindowMessage&) override {}
    void PostQuit(int) override {}
    [[nodiscard]] bool CloseWanted() const override { return false; }
    void ShowCursor(bool) override {}
    void* NativeHandle() override { return nullptr; }
};

class Keyboard : public testing::Test {
  protected:
    void SetUp() override { script = support::KeyboardScript(); }
    support::TestFolder folder;
    FakeWindow window;
    KeyboardStateManager manager;
};

TEST_F(Keyboard, StartSaysWhatIsMissing) {
    EXPECT_FALSE(manager.Start(nullptr, window, false));
    EXPECT_FALSE(manager.Start(std::make_unique<ScriptedKeyboard>(false), window, false));
    script.cooperates = false;
    EXPECT_FALSE(manager.Start(std::make_unique<ScriptedKeyboard>(), window, false));
    EXPECT_EQ(support::ErrorLogText(),
              "Failed to initialize DirectInput (keyboard state manager)\n"
              "Failed to create DirectInput keyboard device\n"
              "Keyboard refused to cooperate\n");
    manager.Poll();  // harmless while stopped
}

TEST_F(Keyboard, AKeyIsPressedInItsFirstPollOnly) {
    ASSERT_TRUE(manager.Start(std::make_unique<ScriptedKeyboard>(), window, false));
    script.down = {28, 200};
    manager.Poll();
    EXPECT_TRUE(manager.IsKeyDown(28) && manager.WasKeyPressed(28) && manager.WasKeyPressed(200));
    script.down = {28};
    manager.Poll();
    EXPECT_TRUE(manager.IsKeyDown(28));
    EXPECT_FALSE(manager.WasKeyPressed(28));
    EXPECT_FALSE(manager.IsKeyDown(200));
}

TEST_F(Keyboard, TheBackgroundFreezesAndTheReturnForgets) {
    ASSERT_TRUE(manager.Start(std::make_unique<ScriptedKeyboard>(), window, false));
    script.down = {28};
    manager.Poll();
    manager.Poll();
    script.focused = false;
    script.down = {};
    manager.Poll();
    EXPECT_TRUE(manager.IsKeyDown(28));
    script.focused = true;
    script.down = {28};
    manager.Poll();
    EXPECT_TRUE(manager.WasKeyPressed(28));
    script.readable = false;
    script.down = {};
    manager.Poll();
    EXPECT_TRUE(manager.IsKeyDown(28));
    EXPECT_FALSE(manager.WasKeyPressed(28));
}

}  // namespace
