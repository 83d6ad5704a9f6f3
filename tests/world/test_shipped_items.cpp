// The items that the client ships.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>

#include "demo/world/Catalogue.h"
#include "support/ScriptedFoundation.h"
#include "world/ItemTable.h"

namespace {

const std::filesystem::path shipped = std::string(std::getenv("KELVANE_SOURCE_DIR")) + "/data/items";

std::set<std::string> FileNames(const std::filesystem::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

TEST(ShippedItems, LoadWithoutAWord) {
    const support::TestFolder folder;
    std::filesystem::create_directory("data");
    std::filesystem::create_directory_symlink(shipped, "data/items");
    support::ScriptedFoundation foundation;
    support::ClearErrorLog();
    {
        ItemTable table;
        table.Load();
        EXPECT_EQ(support::ErrorLogText(), "");
        const G::Mesh* placeholder = table.Find(table.Size() - 1);
        ASSERT_NE(placeholder, nullptr);
        for (std::size_t object = 1; object < demo::objects::Count; ++object) {
            const G::Mesh* item = table.Find(object);
            ASSERT_NE(item, nullptr) << object;
            EXPECT_NE(item->TopBone()->name, placeholder->TopBone()->name) << "object " << object << " has no model";
        }
    }
    G::EmptyModelRegistry();
    G::DestroyModelBones();
}

TEST(ShippedItems, AreWhatTheToolMakes) {
    const support::TestFolder folder;
    ASSERT_EQ(std::system(KELVANE_MAKE_ITEMS " made >/dev/null"), 0);
    std::set<std::string> expected = FileNames("made");
    for (const std::string& name : expected)
        EXPECT_TRUE(support::LogText("made/" + name) == support::LogText((shipped / name).string())) << name;
    expected.insert({"placeholder.mbm", "placeholder.png"});
    EXPECT_EQ(FileNames(shipped), expected);
}

}  // namespace
