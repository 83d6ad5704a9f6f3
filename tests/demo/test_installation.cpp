// What the demo world writes, read back by the client's own readers.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "demo/install/Installation.h"
#include "demo/world/Catalogue.h"
#include "demo/world/Place.h"
#include "formats/ByteCursor.h"
#include "formats/DreamArchive.h"
#include "formats/SpriteArchive.h"
#include "formats/TolvMap.h"
#include "support/TestFolder.h"

namespace demo {
namespace {

class Installation : public testing::Test {
  protected:
    // Written once; painting takes a second.
    static void SetUpTestSuite() {
        folder = new support::TestFolder;
        std::string reason;
        ASSERT_TRUE(
            WriteInstallation({.folder = folder->Path(), .clientData = {}, .gamePort = 7, .filePort = 8}, reason))
            << reason;
    }
    static void TearDownTestSuite() { delete folder; }
    void SetUp() override { support::ClearErrorLog(); }

    static support::TestFolder* folder;
};
support::TestFolder* Installation::folder = nullptr;

// Every floor and wall of the place must have an image, and the map must come back as it was drawn.
void CheckPlace(const Place& place, const std::string& mapPath, const std::string& graphics) {
    TolvMap& map = TolvMap::Current();
    ASSERT_TRUE(map.LoadMap(mapPath)) << place.name;
    SpriteArchive floors;
    ASSERT_TRUE(LoadSpriteArchive(floors, graphics + "floors.ts2"));
    ASSERT_TRUE(LoadTs2(floors, graphics + "floore.ts2", 500));
    // By wall list position, from 7 on.
    std::vector<bool> wallImages(7, true);
    for (const char* name : {"wall.ts2", "wall_1.ts2"}) {
        SpriteArchive archive;
        if (!LoadSpriteArchive(archive, graphics + name)) continue;
        for (const auto& image : archive.images)
            wallImages.push_back(image && image->Width() > 1);
    }
    const auto drawable = [&](int wall) {
        return wall == 0 ||
               (wall > 0 && wallImages.size() > 2U * wall && wallImages[2U * wall] && wallImages[2U * wall - 1]);
    };
    std::set<int> missing;
    for (int fx = 0; fx < place.map.FileWidth(); ++fx)
        for (int fy = 0; fy < place.map.FileHeight(); ++fy) {
            const Cell cell = place.map.ToGrid({fx, fy});
            Cell readers;
            map.FileToGrid(fx, fy, readers.gx, readers.gy);
            ASSERT_EQ(readers, cell);
            ASSERT_EQ(place.map.ToFile(cell), (FileCell{fx, fy}));
            const CellContent& drawn = *place.map.At(cell);
            ASSERT_EQ(map.GetFloor(cell.gx, cell.gy), drawn.floor);
            ASSERT_EQ(map.GetObject(cell.gx, cell.gy), drawn.object);
            ASSERT_EQ(map.GetLowXWall(cell.gx, cell.gy), drawn.lowXWall);
            ASSERT_EQ(map.GetLowYWall(cell.gx, cell.gy), drawn.lowYWall);
            const bool hasFloor = drawn.floor < floors.images.size() && floors.images[drawn.floor] &&
                                  floors.images[drawn.floor]->Width() > 1;
            if (!hasFloor || !drawable(drawn.lowXWall) || !drawable(drawn.lowYWall)) missing.insert(drawn.floor);
            EXPECT_FALSE(FloorText(drawn.floor).empty()) << drawn.floor;
        }
    EXPECT_TRUE(missing.empty()) << place.name << ", a floor or wall at floor " << *missing.begin();
}

TEST_F(Installation, TheTownCanBeDrawnWhole) {
    const Place town = MakePlaces().front();
    EXPECT_GE(town.map.FileWidth(), 60);
    EXPECT_GE(town.map.FileHeight(), 100);
    CheckPlace(town, town.mapPath, "patches\\default\\");
    SpriteArchive junctions;
    ASSERT_TRUE(LoadSpriteArchive(junctions, "junction.ts2"));
    EXPECT_EQ(junctions.images.size(), 10U);
    EXPECT_EQ(support::ErrorLogText(), "");
}

TEST_F(Installation, TheDreamsUnpackWithEveryMethod) {
    for (const Place& place : MakePlaces()) {
        if (!place.IsDream()) continue;
        const std::string home = "kvn2_tmp/" + place.name + "/";
        const std::string archive = folder->Read("dreams/" + place.name + ".dream");
        folder->Write(home + "x.dream", archive);
        ASSERT_TRUE(UnpackDreamArchive("kvn2_tmp\\" + place.name + "\\x.dream"));
        std::set<unsigned> methods;
        ByteCursor cursor(archive);
        cursor.Skip(28);
        while (cursor.Remaining() > 0 && !cursor.Failed()) {
            cursor.Skip(50);
            const std::uint32_t size = cursor.U32();
            cursor.Skip(4);
            methods.insert(cursor.U32());
            cursor.Skip(size);
        }
        EXPECT_EQ(methods, (std::set<unsigned>{0, 1, 2})) << place.name;
        EXPECT_EQ(archive.size() >= 1000000, place.name == starLibraryName) << archive.size();
        CheckPlace(place, "kvn2_tmp\\" + place.name + "\\default.map", "kvn2_tmp\\" + place.name + "\\");
    }
    EXPECT_EQ(support::ErrorLogText(), "");
}

}  // namespace
}  // namespace demo
