#include "session/TolvSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "demo/formats/MapWriter.h"
#include "formats/Palette.h"
#include "formats/TolvMap.h"
#include "platform/Caps.h"
#include "session/PlayerData.h"
#include "session/SessionFixture.h"
#include "session/TolvFileGetter.h"

namespace {

using support::Data;
using support::TakeMessages;
using support::WaitFor;

const std::string smallMap = demo::WriteMap(demo::MapDrawing(2, 2));  // a grid of 8 x 8 cells

struct TolvSessionTest : support::SessionTest {
    TolvSessionTest() {
        (void)TolvMap::Current().LoadMapBytes(smallMap, "small.map");
        GetPlayerData() = {"Ab", "secret", "#SABC", "hello", {1, 2}};
    }
    // Past the login, over a real connection. The greeting ends with the first bytes, so its END comes too late.
    void LogIn() {
        Connect(session);
        session.PollServer();
        for (const char* const bytes : {"EN", "D\n", "&&&&&&&&&&&&&\n"})
            Poll(bytes);
        ASSERT_EQ(game.ReadLine(2), "desc hello\ncolor #SABC!\" \n");
        ASSERT_EQ(TakeMessages(), "");
    }
    void Poll(const std::string& bytes) {
        ASSERT_TRUE(game.Send(bytes));
        ASSERT_TRUE(WaitFor([&] { return client.PendingBytes() == bytes.size(); }));
        session.PollServer();
    }
    // What the lines have changed; the next state starts empty.
    std::string TakeState() {
        std::string state;
        for (const Character& c : Data().GetCharacters()) {
            state += "character " + std::to_string(c.gx) + "," + std::to_string(c.gy) + " colour";
            state += std::to_string(c.colorDigits[0]) + "-" + std::to_string(c.colorDigits[9]) + " looks";
            for (const int number : {c.group, c.variant, c.facing, c.pose})
                state += std::to_string(number);
            state += "\n";
        }
        for (const Marker& m : Data().GetMarkers())
            state +=
                "marker " + std::to_string(m.gx) + "," + std::to_string(m.gy) + " " + m.label + "/" + m.subLabel + "\n";
        int gx = 0;
        int gy = 0;
        Data().GetViewPosition(gx, gy);
        if (gx != 0 || gy != 0) state += "view " + std::to_string(gx) + "," + std::to_string(gy) + "\n";
        Data().ClearCharacters();
        Data().ClearMarkers();
        Data().SetViewPosition(0, 0);
        return state + std::exchange(world.calls, "") + TakeMessages();
    }

    TolvSession session;
};

TEST_F(TolvSessionTest, TheLoginExchange) {
    session.SetNetClient(&client);
    EXPECT_FALSE(session.SendLine("early"));
    Connect(session);
    Poll("Welcome\1\nbENDer\nEND\n&&&&&&&&&&&&&\npar");
    EXPECT_EQ(TakeMessages(), "Welcome\1\nbENDer\nEND\n&&&&&&&&&&&&&\n");
    EXPECT_EQ(game.ReadLine(2), "connect Ab secret\nconnect Ab secret\n");
    Poll("tEND\n(ignored\nInvalid Name or password.\n");
    Poll("x&&&&&&&&&&&&&&y\nNope.\nInvalid Name or password.\nNope\n(first");
    EXPECT_EQ(game.ReadLine(2), "desc hello\ncolor #SABC!\" \n");
    const std::string rejected = "Server reported error while trying to log in.\n";
    EXPECT_EQ(TakeMessages(), rejected + rejected);
    Poll(" last\n");
    EXPECT_EQ(TakeMessages(), "first last\n");

    for (int direction = -1; direction <= 6; ++direction)
        EXPECT_EQ(session.SendMove(direction), direction >= 0 && direction < 6);
    for (const char* const line : {"m 9\n", "m 7\n", "m 1\n", "m 3\n", ">\n", "<\n"})
        EXPECT_EQ(game.ReadLine(), line);
    EXPECT_TRUE(session.SendLook(1, 4));
    EXPECT_EQ(game.ReadLine(), "l  ! !\n");
    EXPECT_FALSE(session.SendLook(-49, 0));  // x would hold a line feed

    game.CloseConnection();
    ASSERT_TRUE(WaitFor([&] { return !client.IsConnected(); }));
    session.PollServer();
    session.PollServer();
    EXPECT_EQ(TakeMessages(), "(Lost Connection to game server)\n");
}

TEST_F(TolvSessionTest, OrdersThatTakeLongLeaveTimeForAFrame) {
    struct SlowWorld : support::RecordingWorld {
        void LoadDreamGraphics(const std::string& folder) override {
            std::this_thread::sleep_for(std::chrono::milliseconds(40));
            RecordingWorld::LoadDreamGraphics(folder);
        }
    } slow;
    LogIn();
    std::string talk;
    for (int i = 0; i < 2500000; ++i)
        talk += "(a\n";
    Poll(talk);
    EXPECT_FALSE(session.HasUnhandled()) << "talk is all heard at once";
    EXPECT_EQ(TakeMessages().size(), 2 * caps::waitingMessages);
    session.SetWorldPort(&slow);
    std::string orders;
    for (int i = 0; i < 8; ++i)
        orders += "(" + std::to_string(i) + "\n;nowhere.map\n";
    Poll(orders + "(the last\n");
    game.CloseConnection();
    ASSERT_TRUE(WaitFor([&] { return !client.IsConnected(); }));
    std::string messages = TakeMessages();
    EXPECT_TRUE(session.HasUnhandled());
    EXPECT_LT(messages.size(), 8U) << "one poll took the time of four maps";
    for (int polls = 1; session.HasUnhandled() && polls < 8; ++polls) {
        session.PollServer();
        messages += TakeMessages();
    }
    EXPECT_EQ(messages, "0\n1\n2\n3\n4\n5\n6\n7\nthe last\n(Lost Connection to game server)\n");
}

TEST_F(TolvSessionTest, RefusedNamesAreToldSoOften) {
    LogIn();
    std::string orders;
    for (int i = 0; i < 300; ++i)
        orders += i % 2 == 0 ? ";..\\secret.map\n" : "]cc..\\secret.pcx\n";
    Poll(orders);
    const std::string errors = folder.Read("_error.txt");
    EXPECT_LT(std::count(errors.begin(), errors.end(), '\n'), 150);
}

TEST_F(TolvSessionTest, LineKinds) {
    LogIn();
    struct Row {
        std::vector<std::string> lines;
        std::string state;
    };
    const std::string colors = "!!!!!!!!!\"";
    const std::string character = "character ";
    const Row rows[] = {
        {{"(", "[", "", "x", "](", "[a\1b", "((c", "(d\r"}, "ab\n(c\nd\n"},
        // Frames: 1, 20, 42, 104, 500, 501, 621 and none at all.
        {{"<" + colors + "    " + " !"}, character + "0,4 colour1-2 looks0020\n"},
        {{"<" + colors + "   !" + " 4more"}, character + "0,5 colour1-2 looks0011\n"},
        {{"<" + colors + " !  " + " J"}, character + "1,3 colour1-2 looks2023\n"},
        {{"<" + colors + " ! !" + "!)"}, character + "1,4 colour1-2 looks5024\n"},
        {{"<" + colors + " ! !" + "%9"}, character + "1,4 colour1-2 looks5020\n"},
        {{"<" + colors + " ! !" + "%:"}, character + "1,4 colour1-2 looks0220\n"},
        {{"<" + colors + " ! !" + "&h"}, character + "1,4 colour1-2 looks5204\n"},
        {{"<" + colors + " ! !" + "  "}, character + "1,4 colour1-2 looks0000\n"},
        {{"<" + colors + " ! ! "}, ""},
        // The mover's own record stays in place of the one it walks onto.
        {{"<" + colors + "     !", "<~" + colors.substr(1) + " !   !", "/" + colors + " !   \"    ", "/!!!"},
         character + "1,3 colour1-2 looks0023\n"},
        {{"<" + colors + "     !", "/" + colors + "     \"    "}, character + "0,4 colour1-2 looks0023\n"},
        {{"<" + colors + "     !", "/" + colors + " !   \"   "}, character + "0,4 colour1-2 looks0020\n"},
        {{"<" + colors + "     !", ")   !", ")   "}, character + "0,4 colour1-2 looks0020\n"},
        {{"<" + colors + "     !", ")    "}, ""},
        {{"1   ! #", "1   ! "}, "dirty 0,5\n"},
        {{">   !~~", ">   !~"}, ""},
        {{"@ !  x", "@ ! "}, "view 1,3\n"},
        {{"]s    xxHi Every one", "]s   !xxA|b", "]s ! !xx", "]s ! !x"},
         "marker 0,4 Hi/Everyone\nmarker 0,5 A|b/\nmarker 1,4 /\n"},
        {{"]s    xxA", "]s    xxB", "]t    ", "]t   "}, "marker 0,4 B/\n"},
        {{"]s    xx" + std::string(1025, 'l') + " " + std::string(1024, 's')},
         "marker 0,4 " + std::string(1024, 'l') + "/" + std::string(1024, 's') + "\n"},
        {{"]", "]c", "]cc", "]q  x", "]q dd", "]zzzzzzzz", "\xFF\xFF\xFF\xFF\xFF", "/\x80" + std::string(25, '\xFF')},
         "character -4752,1589 colour96-223 looks0000\n"},
    };
    for (const Row& row : rows) {
        for (const std::string& line : row.lines)
            session.HandleServerLine(line);
        EXPECT_EQ(TakeState(), row.state) << row.lines[0];
    }
    EXPECT_EQ(TolvMap::Current().GetFloor(0, 5), 3);
    EXPECT_EQ(TolvMap::Current().GetObject(0, 5), 95 * 95 - 1);
    EXPECT_EQ(folder.Read("_error.txt"),
              "Warning: Animation frame could not be correctly parsed: 500\n"
              "Warning: Animation frame could not be correctly parsed: 642\n");
}

TEST_F(TolvSessionTest, ADreamLineStartsItsTransfer) {
    LogIn();
    const support::LoopbackPeer fileServer;
    folder.Write("data/tolvfile_ip.txt", "127.0.0.1\n" + std::to_string(fileServer.Port()));
    Data().AddMarker({});
    session.HandleServerLine("]qxdd and more");
    EXPECT_EQ(TakeState(), "> Downloading Dream...\n");
    ASSERT_EQ(Data().GetTransfers().size(), 1U);
    EXPECT_EQ(Data().GetTransfers().front().getter->GetPath(), "kvn2_tmp\\dd\\dd.dream");
    Data().EndTransfer(Data().GetTransfers().front());
}

TEST_F(TolvSessionTest, FilesNamedByTheServerStayInsideTheGame) {
    LogIn();
    folder.Write("patches/default/day.pcx", std::string(768, '\3'));
    folder.Write("patches/up.pcx", std::string(768, 'x'));
    folder.Write("maps/one.map", smallMap);
    session.HandleServerLine("]ccday.pcx");
    session.HandleServerLine("]cc..\\up.pcx");
    EXPECT_EQ(currentPalette[1].red, 3);

    for (const char* const line : {";..\\one.map", ";/etc/passwd"}) {
        session.HandleServerLine(";maps\\one.map");
        EXPECT_EQ(TolvMap::Current().GetFloor(0, 4), 0);
        Data().AddMarker({});
        session.HandleServerLine("<!!!!!!!!!!     !");
        session.HandleServerLine(line);
        EXPECT_EQ(TolvMap::Current().GetFloor(0, 4), TolvMap::floorOutside) << line;
        EXPECT_EQ(TakeState(), "graphics patches\\default\\\ngraphics patches\\default\\\n");
    }
}

// The last test: what it uses up is the program's.
TEST_F(TolvSessionTest, UnknownPosturesAreToldSoOften) {
    LogIn();
    std::string postures;
    for (std::size_t i = 0; i < caps::postureMessages + 100; ++i)
        postures += "<!!!!!!!!!!    ~~\n";
    Poll(postures);
    const std::string errors = folder.Read("_error.txt");
    EXPECT_NEAR(static_cast<double>(std::count(errors.begin(), errors.end(), '\n')), caps::postureMessages, 5);
}

}  // namespace
