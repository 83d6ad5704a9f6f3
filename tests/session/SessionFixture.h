#pragma once
// What the tests of the session share: a recording world, the messages posted, a small map.

#include <string>

#include "formats/TolvMap.h"
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

// A map file of 2 columns of 2 cells with nothing on them: a grid of 8 x 8 cells.
inline std::string SmallMapFile() {
    return "MAP V01.10 Tolvarin\nwidth=2\nheight=2\nBODY\n" + std::string(24, '\0');
}

struct RecordingWorld : WorldPort {
    void MarkFloorsDirtyNear(int gx, int gy) override {
        calls += "dirty " + std::to_string(gx) + "," + std::to_string(gy) + "\n";
    }
    void LoadDreamGraphics(const std::string& folder) override { calls += "graphics " + folder + "\n"; }
    std::string calls;
};

}  // namespace support
