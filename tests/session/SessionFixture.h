#pragma once
// What the tests of the session share: a recording world and the messages posted.

#include <string>

#include "session/MessageQueue.h"
#include "session/WorldPort.h"

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

}  // namespace support
