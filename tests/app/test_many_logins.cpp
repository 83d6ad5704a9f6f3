// One login after the other in one process: the game scene whole, on the scripted device, against the demo's servers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <thread>

#include "app/CMain.h"
#include "app/SceneManager.h"
#include "demo/install/Installation.h"
#include "demo/server/DemoServer.h"
#include "diag/CMemMan.h"
#include "graphics/model/GBMesh.h"
#include "platform/FileSystem.h"
#include "session/PlayerData.h"
#include "session/TolvSession.h"
#include "support/LoopbackPeer.h"
#include "support/ScriptedFoundation.h"
#include "support/Usage.h"

namespace {

namespace fs = std::filesystem;

// The first logins make what is made once. From then on the last logouts of all are held against the first ones.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int logins = 10;
constexpr int firstLogins = 3;
constexpr int compared = 2;
#else
constexpr int logins = 100;
constexpr int firstLogins = 10;
constexpr int compared = 6;
#endif
constexpr std::size_t heapAllowance = 256U << 10;

struct ManyLogins : testing::Test {
    ManyLogins() {
        const demo::InstallationOptions options{folder.Path(), fs::path(std::getenv("KELVANE_SOURCE_DIR")) / "data"};
        std::string reason;
        EXPECT_TRUE(demo::WriteInstallation(options, reason)) << reason;
        // The large dream would take the test's time for nothing.
        fs::copy_file("dreams/tidegarden.dream", "dreams/starlibrary.dream", fs::copy_options::overwrite_existing);
        log.Silence();
        server.emplace(folder.Path(), demo::GameOptions{.crowd = 20, .tourSeconds = 0.05}, log);
        EXPECT_TRUE(server->Listen(0, 0, reason)) << reason;
        EXPECT_TRUE(demo::WriteAddresses(folder.Path(), server->GamePort(), server->FilePort()));
        platform::ForgetListings();
        GetPlayerData() = {"Ada", "engine", "+5+\"%$!#+&", "Here again.", {0, 0}};
        serving = std::thread([this] { server->Run(); });
    }
    ~ManyLogins() override {
        scenes.Shutdown();
        G::EmptyModelRegistry();
        G::DestroyModelBones();
        server->Stop();
        serving.join();
    }
    void Frame() {
        foundation.scripted.ForgetCalls();
        scenes.PreRender();
        ASSERT_TRUE(DXG::BeginFrame(0.01F, true, true));
        scenes.Render();
        DXG::EndFrame0();
        scenes.Update(0.01F);
        DXG::EndFrame1();
    }
    [[nodiscard]] bool FramesUntil(const char* traffic) {
        const auto seen = [&] {
            Frame();
            return folder.Read("_netlog.txt").find(traffic) != std::string::npos;
        };
        return support::WaitFor(seen, 60000);
    }
    // In at the town, into a dream, and out: from the dream or on the way there.
    void LogInAndOut(bool arrive) {
        support::ClearLog("_netlog.txt");
        // What the session knows of a login lasts for the whole run.
        std::destroy_at(&TolvSession::Default());
        std::construct_at(&TolvSession::Default());
        scenes.AddScene(new2<CMain>({"CMain", "CMain", "test_many_logins", __LINE__}));
        ASSERT_TRUE(FramesUntil(arrive ? "{SENT TO SERVER}vascodagama\n" : "\n]q "));
        scenes.RemoveScene();
        scenes.Update(0.01F);
    }

    support::TestFolder folder;
    demo::ServerLog log;
    std::optional<demo::DemoServer> server;
    std::thread serving;
    support::ScriptedFoundation foundation;
    SceneManager& scenes = SceneManager::Default();
};

TEST_F(ManyLogins, LeaveNothingBehind) {
    support::Usage before;
    support::Usage after;
    int objects = 0;
    std::size_t blocks = 0;
    for (int login = 0; login < logins; ++login) {
        // Every other time the dream is there already.
        if (login % 2 == 0) fs::remove_all("kvn2_tmp");
        platform::ForgetListings();
        ASSERT_NO_FATAL_FAILURE(LogInAndOut(login % 3 != 0)) << login;
        if (login == firstLogins) {
            before = support::Usage::Now();
            objects = foundation.scripted.liveObjects;
            blocks = MemoryManager::Default().LiveBlocks();
        }
        // How much a logout leaves for the next login to use again depends on its moment, so the least counts.
        if (login > firstLogins && login <= firstLogins + compared)
            before.heapBytes = std::min(before.heapBytes, support::Usage::Now().heapBytes);
        if (login == logins - compared) after = support::Usage::Now();
        if (login > logins - compared) after.heapBytes = std::min(after.heapBytes, support::Usage::Now().heapBytes);
    }
    // The server needs a moment to see that its clients are gone.
    EXPECT_TRUE(support::WaitFor([&] { return support::Usage::Now().handles <= before.handles; }));
    after.threads = support::Usage::Now().threads;
    after.handles = support::Usage::Now().handles;
    EXPECT_EQ(after.threads, before.threads);
    EXPECT_LE(after.heapBytes, before.heapBytes + heapAllowance);
    EXPECT_EQ(foundation.scripted.liveObjects, objects);
    EXPECT_EQ(MemoryManager::Default().LiveBlocks(), blocks);
    // Some downloads were cut off; nothing else went wrong.
    std::istringstream errors(support::ErrorLogText());
    for (std::string line; std::getline(errors, line);)
        EXPECT_TRUE(line.starts_with("Note: deleting incompletely") || line.starts_with("Failed to delete")) << line;
    std::printf("after %d and %d logins: %td and %td threads, %td and %td handles, %zu and %zu bytes of heap\n",
                firstLogins, logins, before.threads, after.threads, before.handles, after.handles, before.heapBytes,
                after.heapBytes);
}

}  // namespace
