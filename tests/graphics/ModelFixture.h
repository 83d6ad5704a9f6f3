#pragma once
// Models on the recording device, with pictures from a table.

#include <gtest/gtest.h>

#include "diag/CMemMan.h"
#include "graphics/FakeImageCodec.h"
#include "graphics/model/GBMesh.h"
#include "support/ScriptedFoundation.h"
#include "support/TestFolder.h"

inline std::string Repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

// Whatever a test does, nothing of its models is left at its end.
class Models : public testing::Test {
  protected:
    Models() {
        FakePictures().clear();
        AddPicture("art\\tri.png", 2, 2, platform::ImageLayout::Argb32);
    }
    ~Models() override {
        model.Release();
        G::EmptyModelRegistry();
        EXPECT_EQ(G::LiveBones(), 0U);
        G::DestroyModelBones();
        EXPECT_EQ(MemoryManager::Default().LiveBlocks(), blocksBefore);
        foundation.Stop();
        EXPECT_EQ(foundation.scripted.faults, std::vector<std::string>());
        EXPECT_EQ(foundation.scripted.liveObjects, 0);
    }
    bool Load(G::Mesh& into, const std::string& text, bool readable = false) {
        folder.Write("art/m.mbm", text);
        support::ClearErrorLog();
        return into.Load("art\\m.mbm", false, readable, true);
    }
    // The whole log without call stacks.
    static std::string Errors() { return support::ErrorLogWithoutStacks(); }

    support::TestFolder folder;
    support::ScriptedFoundation foundation;
    G::Mesh model;
    std::size_t blocksBefore = MemoryManager::Default().LiveBlocks();
};
