// The life of the foundation: hardware check, start, frames, loss and end.

#include <gtest/gtest.h>

#include "graphics/device/DXGState.h"
#include "support/ScriptedFoundation.h"
#include "support/TestFolder.h"

namespace {

TEST(Device, StartsAndStops) {
    support::TestFolder folder;
    support::ScriptedFoundation foundation;
    EXPECT_TRUE(DXG::IsInitialized());
    EXPECT_TRUE(DXG::BeginFrame(0.1F, true, true));
    DXG::EndFrame0();
    DXG::EndFrame1();
    foundation.Stop();
    EXPECT_EQ(support::ErrorLogText(), "");
    EXPECT_TRUE(foundation.scripted.faults.empty());
}

}  // namespace
