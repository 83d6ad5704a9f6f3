#pragma once
// What the files of the foundation itself share.

#include <cstdint>
#include <memory>
#include <vector>

#include "graphics/device/DXGFormats.h"
#include "graphics/device/DXGSetup.h"
#include "platform/GraphicsDevice.h"

namespace DXG {

using Hook = void (*)();

// What a shutdown hook, a record or a handle with static lifetime may still ask for late: it is never destroyed.
struct Foundation {
    std::unique_ptr<platform::GraphicsInterface> graphics;
    std::unique_ptr<platform::GraphicsDevice> device;
    bool initialized = false;
    bool failed = false;
    bool inFrame = false;
    bool deviceLost = false;
    bool statesStale = false;  // a reset took the default states away and no frame has put them back
    bool setupValid = false;
    Setup setup;
    DeviceFormats formats;
    platform::PresentParameters parameters;
    std::uint64_t initialFreeMegabytes = 0;
    std::uint64_t estimatedPeak = 0;  // bytes; 0: none
    std::uint64_t lowestFree = 0;     // bytes
    unsigned countedFrames = 0;
    double countedSeconds = 0.0;
    std::vector<Hook> releaseHooks;
    std::vector<Hook> restoreHooks;
    std::vector<Hook> shutdownHooks;
    std::vector<Hook> teardownHooks;
};

Foundation& TheFoundation();

}  // namespace DXG
