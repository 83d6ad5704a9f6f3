#include <gtest/gtest.h>

#include "input/KeyboardStateManager.h"
#include "input/ShellInput.h"
#include "platform/scripted/ScriptedDevice.h"
#include "support/ScriptedKeyboard.h"
#include "support/TestFolder.h"

namespace {

using platform::MessageKind;
using platform::WindowMessage;

WindowMessage Character(unsigned char character) {
    return {.kind = MessageKind::Character, .character = character};
}
WindowMessage Key(std::uint8_t scanCode, bool extended) {
    return {.kind = MessageKind::KeyDown, .scanCode = scanCode, .extended = extended};
}

TEST(TypedQueue, HoldsCharactersAndCodes) {
    const struct {
        const char* name;
        WindowMessage message;
        std::vector<int> queued;
    } rows[] = {
        {"letter", Character('a'), {'a'}},
        {"accent", Character(0xE9), {0xE9}},
        {"backspace", Character(8), {0xFF, 8}},
        {"enter", Character(13), {0xFE}},
        {"insert", Key(0xD2, true), {0xFD}},
        {"delete", Key(0xD3, true), {0xFC}},
        {"home", Key(0xC7, true), {0xFB}},
        {"end", Key(0xCF, true), {0xFA}},
        {"page up", Key(0xC9, true), {0xF9}},
        {"page down", Key(0xD1, true), {0xF8}},
        {"up", Key(0xC8, true), {0xF7}},
        {"down", Key(0xD0, true), {0xF6}},
        {"left", Key(0xCB, true), {0xF5}},
        {"right", Key(0xCD, true), {0xF4}},
        {"not of the arrow block", Key(0xC8, false), {}},
        {"keypad enter", Key(0x9C, true), {}},
        {"letter key", Key(30, false), {}},
    };
    for (const auto& row : rows) {
        ShellInput input;
        EXPECT_EQ(input.CollectTyped(row.message), !row.queued.empty()) << row.name;
        for (const int code : row.queued)
            EXPECT_EQ(input.TakeTyped(), code) << row.name;
        EXPECT_FALSE(input.HasTyped() || input.TakeTyped()) << row.name;
    }
}

TEST(MouseState, ClicksAndWheelLastAFrameAndHoldsLastTillTheRelease) {
    ShellInput input;
    EXPECT_TRUE(input.CollectMouse({.kind = MessageKind::MouseMove, .x = -3, .y = 700}));
    EXPECT_EQ(std::pair(input.MouseX(), input.MouseY()), std::pair(-3, 700));
    EXPECT_TRUE(input.CollectMouse({.kind = MessageKind::LeftDown}));
    EXPECT_TRUE(input.CollectMouse({.kind = MessageKind::RightDown}));
    EXPECT_TRUE(input.LeftClicked() && input.LeftHeld() && input.RightClicked() && input.RightHeld());
    for (const auto& [delta, steps] :
         {std::pair<std::int16_t, int>{120, -1}, {-120, 1}, {119, 0}, {-119, 0}, {-250, 2}}) {
        EXPECT_FALSE(input.CollectMouse({.kind = MessageKind::Wheel, .wheelDelta = delta}));
        EXPECT_EQ(input.WheelSteps(), steps) << delta;
    }
    input.ClearFrame();
    EXPECT_FALSE(input.LeftClicked() || input.RightClicked() || input.WheelSteps() != 0);
    EXPECT_FALSE(input.CollectMouse({.kind = MessageKind::LeftUp}));
    EXPECT_TRUE(!input.LeftHeld() && input.RightHeld());
    EXPECT_FALSE(input.CollectMouse({.kind = MessageKind::RightUp}) || input.RightHeld());
}

using support::ScriptedKeyboard;
support::KeyboardScript& script = support::KeyboardScript::Default();

class Keyboard : public testing::Test {
  protected:
    void SetUp() override { script = support::KeyboardScript(); }
    void PollWith(std::vector<int> down) {
        script.down = std::move(down);
        manager.Poll();
    }
    support::TestFolder folder;
    platform::ScriptedWindow window;
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

TEST_F(Keyboard, KeysArePressedOnceAndForgottenWithTheFocus) {
    ASSERT_TRUE(manager.Start(std::make_unique<ScriptedKeyboard>(), window, false));
    PollWith({28, 200});
    EXPECT_TRUE(manager.IsKeyDown(28) && manager.WasKeyPressed(28) && manager.WasKeyPressed(200));
    PollWith({28});
    EXPECT_TRUE(manager.IsKeyDown(28) && !manager.WasKeyPressed(28) && !manager.IsKeyDown(200));
    script.focused = false;
    PollWith({});
    EXPECT_TRUE(manager.IsKeyDown(28)) << "the background freezes the state";
    script.focused = true;
    PollWith({28});
    EXPECT_TRUE(manager.WasKeyPressed(28));
    script.readable = false;
    PollWith({});
    EXPECT_TRUE(manager.IsKeyDown(28) && !manager.WasKeyPressed(28));
}

}  // namespace
