#pragma once
// What the tests of the session share: a game server's end, a recording world and the messages posted.

#include <gtest/gtest.h>

#include <string>

#include "net/NetClient.h"
#include "session/MessageQueue.h"
#include "session/TolvDataManager.h"
#include "session/TolvSession.h"
#include "session/WorldPort.h"
#include "support/LoopbackPeer.h"
#include "support/TestFolder.h"

namespace support {

// Everything posted for the player, each text in a line of its own.
inline std::string TakeMessages() {
    std::string all;
    for (std::string text; MessageQueue::Default().Pop(text);)
        all += text + "\n";
    return all;
}

struct RecordingWorld : WorldPort {
    void MarkFloorsDirtyNear(int gx, int gy) override {
        calls += "dirty " + std::to_string(gx) + "," + std::to_string(gy) + "\n";
    }
    void LoadDreamGraphics(const std::string& folder) override { calls += "graphics " + folder + "\n"; }
    std::string calls;
};

inline TolvDataManager& Data() {
    return TolvDataManager::Default();
}

struct SessionTest : testing::Test {
    SessionTest() { TakeMessages(); }
    void Connect(TolvSession& session) {
        session.SetNetClient(&client);
        session.SetWorldPort(&world);
        ASSERT_TRUE(client.Connect("127.0.0.1", game.Port()) && game.Accept());
    }

    TestFolder folder;
    LoopbackPeer game;
    NET::Client client;
    RecordingWorld world;
};

}  // namespace support
