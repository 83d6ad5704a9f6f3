#include <gtest/gtest.h>

#include "app/CMain.h"
#include "app/MainGame.h"
#include "input/ShellInput.h"
#include "platform/Window.h"
#include "support/TestFolder.h"

namespace {

using platform::MessageKind;
using platform::WindowMessage;

class NotedWindow : public platform::Window {
  public:
    void Show() override {}
    bool TakeMessage(WindowMessage&) override { return false; }
    void DefaultProcedure(const WindowMessage& message) override { defaults.push_back(message.kind); }
    void PostQuit(int code) override { quitCode = code; }
    [[nodiscard]] bool CloseWanted() const override { return false; }
    void ShowCursor(bool) override {}
    void* NativeHandle() override { return nullptr; }

    std::vector<MessageKind> defaults;
    int quitCode = -1;
};

WindowMessage Message(MessageKind kind) {
    WindowMessage message;
    message.kind = kind;
    return message;
}

class Shell : public testing::Test {
  protected:
    support::TestFolder folder;
    NotedWindow window;
    MainGame game;
};

TEST_F(Shell, RefusesToBeResizedAndPassesTheRestOn) {
    for (const std::uint32_t command :
         {0xF000U, 0xF030U, 0xF070U, 0xF080U, 0xF100U, 0xF140U, 0xF150U, 0xF170U, 0xF180U}) {
        WindowMessage message = Message(MessageKind::SystemCommand);
        message.command = command;
        game.WindowProcedure(window, message);
    }
    EXPECT_TRUE(window.defaults.empty());
    // The value is compared as it comes: its low four bits are not masked. 0xF020 minimises.
    for (const std::uint32_t command : {0xF012U, 0xF031U, 0xF020U, 0xF060U}) {
        WindowMessage message = Message(MessageKind::SystemCommand);
        message.command = command;
        game.WindowProcedure(window, message);
    }
    EXPECT_EQ(window.defaults.size(), 4U);
}

TEST_F(Shell, MessagesGoToTheInputFirst) {
    game.WindowProcedure(window, Message(MessageKind::Character));
    game.WindowProcedure(window, Message(MessageKind::LeftDown));
    EXPECT_TRUE(ShellInput::Default().HasTyped() && ShellInput::Default().LeftHeld());
    EXPECT_TRUE(window.defaults.empty());
    game.WindowProcedure(window, Message(MessageKind::LeftUp));
    game.WindowProcedure(window, Message(MessageKind::Paint));
    game.WindowProcedure(window, Message(MessageKind::Close));
    EXPECT_EQ(window.defaults, (std::vector{MessageKind::LeftUp, MessageKind::Close}));
    ShellInput::Default().ClearTyped();
    ShellInput::Default().ClearFrame();
}

TEST_F(Shell, KeepsTheActiveFlagAndQuitsWhenTheWindowGoes) {
    WindowMessage activation = Message(MessageKind::Activate);
    activation.active = true;
    game.WindowProcedure(window, activation);
    EXPECT_TRUE(game.IsActive());
    activation.active = false;
    game.WindowProcedure(window, activation);
    EXPECT_FALSE(game.IsActive());
    EXPECT_EQ(window.quitCode, -1);
    game.WindowProcedure(window, Message(MessageKind::Destroy));
    EXPECT_EQ(window.quitCode, 0);
}

TEST(TypedLine, TakesItsPrefix) {
    const std::pair<const char*, const char*> rows[] = {
        {"hello", "\"hello"}, {"`who", "who"},      {"`", ""},        {"/Bram hi", "wh Bram hi"},
        {"/", "wh "},         {":waves", ":waves"}, {"\"x", "\"\"x"}, {" `x", "\" `x"},
    };
    for (const auto& [typedText, sent] : rows)
        EXPECT_EQ(WireLineOf(typedText), sent) << typedText;
}

TEST(ChatColours, AreChosenAtEveryLineStart) {
    const G::ColouredText chat = ColouredChat("*a*\n[b\n(c\n>d\nplain (\n");
    EXPECT_EQ(chat.text, "*a*\n[b\n(c\n>d\nplain (\n");
    const std::vector<std::pair<unsigned, unsigned>> expected = {
        {0, 0xFFFFBFBFU}, {4, 0xFFBFBFFFU}, {7, 0xFFBFFFBFU}, {10, 0xFFBFFFBFU}, {13, 0xFFFFFFFFU}};
    ASSERT_EQ(chat.changes.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(chat.changes[i].index, expected[i].first);
        EXPECT_EQ(chat.changes[i].colour, expected[i].second);
    }
    EXPECT_TRUE(ColouredChat("").changes.empty());
}

}  // namespace
