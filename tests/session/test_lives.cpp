// Connections and downloads that end at any moment of their lives, and many of them in one process.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <random>
#include <thread>

#include "session/PlayerData.h"
#include "session/SessionFixture.h"
#include "session/TolvFileGetter.h"
#include "support/Usage.h"

namespace {

constexpr int blockSize = 60;
constexpr int blocks = 4;

// All that a file server sends for one dream, to a client whose acknowledgements it does not wait for.
std::string WholeTransfer() {
    std::string bytes = "10 hello\n44 200 0 60\n";
    for (char number = 0; number < blocks; ++number)
        bytes += std::string("SC") + number + std::string("\0\0\0????", 7) + std::string(blockSize - 10, 'x');
    return bytes;
}

struct LivesTest : support::SessionTest {
    LivesTest() {
        folder.Write("data/tolvfile_ip.txt", "127.0.0.1\n" + std::to_string(files.Port()) + "\n");
        GetPlayerData() = {"Ab", "secret", "", "", {0, 0}};
    }
    void Pause(int mostMs) {
        std::this_thread::sleep_for(std::chrono::microseconds(random() % (1000U * static_cast<unsigned>(mostMs) + 1)));
    }
    std::unique_ptr<TOLV::FileGetter> Get() { return std::make_unique<TOLV::FileGetter>("dd", "kvn2_tmp\\dd"); }

    support::LoopbackPeer files;
    std::mt19937 random{20};
};

TEST_F(LivesTest, AGetterMayBeDestroyedAtAnyMoment) {
    const std::string whole = WholeTransfer();
    int complete = 0;
    (void)Get();  // what is made once is there from now on
    ASSERT_TRUE(files.Accept());
    files.CloseConnection();
    const support::Usage before = support::Usage::Now();
    for (int round = 0; round < 45; ++round) {
        std::filesystem::remove("kvn2_tmp/dd/dd.dream");
        auto getter = Get();
        // Another one waits for its turn meanwhile, and at times outlives the first.
        std::unique_ptr<TOLV::FileGetter> waiting = round % 4 == 0 ? Get() : nullptr;
        ASSERT_TRUE(files.Accept());
        // Every third of the servers falls silent, every third goes away and every third says all there is to say.
        const std::size_t said = round % 3 == 2 ? whole.size() : random() % whole.size();
        ASSERT_TRUE(files.Send(whole.substr(0, said)));
        if (round % 3 == 1) files.CloseConnection();
        Pause(300);
        const bool kept = getter->IsComplete();
        complete += kept ? 1 : 0;
        getter.reset();
        const std::string left = folder.Read("kvn2_tmp/dd/dd.dream");
        EXPECT_TRUE(kept ? left == std::string(200, 'x') : waiting || !folder.Has("kvn2_tmp/dd/dd.dream")) << round;
        if (waiting) files.Accept();
        Pause(20);
    }
    EXPECT_GT(complete, 0);
    EXPECT_LT(complete, 45);
    files.CloseConnection();
    support::TakeMessages();
    EXPECT_EQ(support::Usage::Now().threads, before.threads);
    EXPECT_EQ(support::Usage::Now().handles, before.handles);
}

TEST_F(LivesTest, AClientMayBeDestroyedAtAnyMoment) {
    const support::Usage before = support::Usage::Now();
    for (int round = 0; round < 36; ++round) {
        auto mortal = std::make_unique<NET::Client>();
        Pause(5);
        const int stage = round % 6;
        if (stage == 1) {
            // The window closes during the lookup of a name.
            NET::SetConnectCancel([] { return true; });
            EXPECT_FALSE(mortal->Connect("nobody.invalid", 1));
            NET::SetConnectCancel(nullptr);
        }
        if (stage == 2) (void)mortal->Connect("127.0.0.1", 0);
        if (stage > 2) {
            ASSERT_TRUE(mortal->Connect("127.0.0.1", files.Port()) && files.Accept());
            ASSERT_TRUE(files.Send(std::string(random() % 100000, 'b')));
            if (stage == 4) files.CloseConnection();
            if (stage == 5) mortal->Disconnect();
            Pause(200);
        }
        mortal.reset();
    }
    files.CloseConnection();
    // A lookup that was given up ends when the system answers.
    EXPECT_TRUE(support::WaitFor([&] { return support::Usage::Now().threads == before.threads; }));
    EXPECT_EQ(support::Usage::Now().handles, before.handles);
}

}  // namespace
