// The servers that misbehave: each way does what its name says, and none of them hurts the server itself.
#include <gtest/gtest.h>

#include <set>

#include "demo/DemoClient.h"
#include "demo/storms/StormServer.h"
#include "support/TestFolder.h"

namespace demo {
namespace {

using support::DemoClient;

struct Storms : testing::Test {
    Storms() {
        folder.Write("dreams/tidegarden.dream", std::string(10000, 'd'));
        log.Silence();
    }
    ~Storms() override { Stop(); }

    void Serve(std::vector<const Misbehaviour*> modes) {
        Stop();
        server = std::make_unique<StormServer>(folder.Path(), std::move(modes), log);
        std::string reason;
        ASSERT_TRUE(server->Listen(0, 0, reason)) << reason;
        worker = std::thread([this] { server->Run(); });
    }
    void Serve(std::string_view mode) { Serve({FindMisbehaviour(mode)}); }
    void Stop() {
        if (!worker.joinable()) return;
        server->Stop();
        worker.join();
    }

    support::TestFolder folder;
    ServerLog log;
    std::unique_ptr<StormServer> server;
    std::thread worker;
};

TEST_F(Storms, EveryModeBearsAClientAndItsHangingUp) {
    std::set<std::string_view> names;
    std::vector<const Misbehaviour*> modes;
    for (const Misbehaviour& mode : Misbehaviours()) {
        EXPECT_TRUE(names.insert(mode.name).second && !mode.text.empty()) << mode.name;
        modes.push_back(FindMisbehaviour(mode.name));
    }
    EXPECT_EQ(FindMisbehaviour("kind"), nullptr);
    Serve(modes);
    for (const Misbehaviour* const mode : modes) {
        DemoClient game(server->GamePort());
        EXPECT_TRUE(game.WaitForBytes(1) || game.HasEnded()) << mode->name;
        game.Send("connect Ada pw\ndesc x\ncolor x \n");
        DemoClient file(server->FilePort());
        file.Send("RC Ada pw storm 0 2 4096\nPKOK 0\nPKOK 1\nPKOK 2\n");
        game.Send("vascodagama\n");
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

TEST_F(Storms, ConnectionsEndWhereTheyShould) {
    for (const char* const mode : {"reset-connect", "close-connect", "reset-login"}) {
        Serve(mode);
        DemoClient game(server->GamePort());
        game.Send("connect Ada pw\n");
        EXPECT_TRUE(game.WaitForEnd()) << mode;
        EXPECT_EQ(game.WasReset(), mode[0] == 'r') << mode;
    }
    Serve("stall-map");
    DemoClient stalled(server->GamePort());
    stalled.Send("connect Ada pw\ncolor x \n");
    const std::string half = "\n;" + MakePlaces().front().mapPath.substr(0, 5);
    EXPECT_TRUE(stalled.WaitForText(half));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_TRUE(stalled.received.ends_with(half) && !stalled.HasEnded());
}

TEST_F(Storms, LinesAndFilesAreAsBadAsTheyShould) {
    Serve("endless-line");
    DemoClient endless(server->GamePort());
    ASSERT_TRUE(endless.LogIn("Ada pw"));
    ASSERT_TRUE(endless.WaitForBytes(1U << 20));
    EXPECT_EQ(endless.received.find_last_of('\n', 1U << 20), std::string::npos);

    Serve("dreams");
    DemoClient dreamer(server->GamePort());
    dreamer.Send("connect Ada pw\ncolor x \n");
    ASSERT_TRUE(
        dreamer.WaitFor([&] { return std::count(dreamer.received.begin(), dreamer.received.end(), ']') >= 300; }));

    Serve("sizes");
    for (const char* const reply : {"44 100 0 4096\n", "44 40000 0 4096\n", "44 0 0 4096\n", "44 -1 0 4096\n"}) {
        DemoClient file(server->FilePort());
        file.Send("RC Ada pw storm 0 2 4096\n");
        file.TakeLine();
        EXPECT_EQ(file.TakeLine(), reply);
    }
    Serve("blocks");
    DemoClient file(server->FilePort());
    file.Send("RC Ada pw storm 0 2 4096\nPKOK 0\nPKOK 1\n");
    file.TakeLine();
    EXPECT_EQ(file.TakeLine(), "44 10000 0 4096\n");
    ASSERT_TRUE(file.WaitForBytes(3U * 4096));
    for (const auto& [at, number] : {std::pair{0U, '\0'}, {4096U, '\1'}, {8192U, '\3'}})
        EXPECT_EQ(file.received.substr(at, 6), std::string("SC") + number + std::string(3, '\0'));
}

}  // namespace
}  // namespace demo
