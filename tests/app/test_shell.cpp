#include <gtest/gtest.h>

#include "app/CMain.h"
#include "app/MainGame.h"
#include "input/ShellInput.h"
#include "platform/scripted/ScriptedDevice.h"
#include "support/TestFolder.h"

namespace {

using platform::MessageKind;
using platform::WindowMessage;

class Shell : public testing::Test {
  protected:
    void Take(const WindowMessage& message) { game.WindowProcedure(window, message); }
    support::TestFolder folder;
    platform::ScriptedWindow window;
    MainGame game;
};

TEST_F(Shell, RefusesToBeResizedAndPassesTheRestOn) {
    for (const std::uint32_t command :
         {0xF000U, 0xF030U, 0xF070U, 0xF080U, 0xF100U, 0xF140U, 0xF150U, 0xF170U, 0xF180U})
        Take({.kind = MessageKind::SystemCommand, .command = command});
    EXPECT_TRUE(window.left.empty());
    // The value is compared as it comes: its low four bits are not masked. 0xF020 minimises.
    for (const std::uint32_t command : {0xF012U, 0xF031U, 0xF020U, 0xF060U})
        Take({.kind = MessageKind::SystemCommand, .command = command});
    EXPECT_EQ(window.left.size(), 4U);
}

TEST_F(Shell, MessagesGoToTheInputFirst) {
    ShellInput& input = ShellInput::Default();
    Take({.kind = MessageKind::Character});
    Take({.kind = MessageKind::LeftDown});
    Take({.kind = MessageKind::Paint});
    EXPECT_TRUE(input.HasTyped() && input.LeftHeld() && window.left.empty());
    Take({.kind = MessageKind::LeftUp});
    Take({.kind = MessageKind::Close});
    ASSERT_EQ(window.left.size(), 2U);
    EXPECT_TRUE(window.left[0].kind == MessageKind::LeftUp && window.left[1].kind == MessageKind::Close);
    input.ClearTyped();
    input.ClearFrame();
}

TEST_F(Shell, KeepsTheActiveFlagAndQuitsWhenTheWindowGoes) {
    for (const bool active : {true, false}) {
        Take({.kind = MessageKind::Activate, .active = active});
        EXPECT_EQ(game.IsActive(), active);
    }
    EXPECT_TRUE(window.waiting.empty());
    Take({.kind = MessageKind::Destroy});
    ASSERT_EQ(window.waiting.size(), 1U);
    EXPECT_TRUE(window.waiting[0].kind == MessageKind::Quit && window.waiting[0].code == 0);
}

TEST(TypedLine, TakesItsPrefix) {
    const std::pair<const char*, const char*> rows[] = {
        {"hello", "\"hello"}, {"`who", "who"},      {"`", ""},        {"/Bram hi", "wh Bram hi"},
        {"/", "wh "},         {":waves", ":waves"}, {"\"x", "\"\"x"}, {" `x", "\" `x"},
    };
    for (const auto& [typedText, sent] : rows)
        EXPECT_EQ(WireLineOf(typedText), sent) << typedText;
}

TEST(TypedLine, TakesPrintableBytesUpToItsCap) {
    std::string line(caps::typedLineBytes - 1, 'x');
    for (const std::uint8_t code : {'a', 'b'})
        EXPECT_TRUE(EditTypedLine(line, code, false));
    EXPECT_EQ(line, std::string(caps::typedLineBytes - 1, 'x') + "a");
    EXPECT_FALSE(EditTypedLine(line, 'c', true) || EditTypedLine(line, 0x7F, false));
    EXPECT_TRUE(EditTypedLine(line, typed::backspace, false));
    EXPECT_EQ(line.back(), 'x');
}

TEST(ChatColours, AreChosenAtEveryLineStart) {
    const G::ColouredText chat = ColouredChat("*a*\n[b\n(c\n>d\nplain (\n");
    EXPECT_EQ(chat.text, "*a*\n[b\n(c\n>d\nplain (\n");
    const std::vector<std::pair<unsigned, unsigned>> expected = {
        {0, 0xFFFFBFBFU}, {4, 0xFFBFBFFFU}, {7, 0xFFBFFFBFU}, {10, 0xFFBFFFBFU}, {13, 0xFFFFFFFFU}};
    ASSERT_EQ(chat.changes.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(std::pair(chat.changes[i].index, chat.changes[i].colour), expected[i]);
    EXPECT_TRUE(ColouredChat("").changes.empty());
}

}  // namespace
