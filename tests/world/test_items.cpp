// The item table and the items on the map.

#include <algorithm>

#include "demo/formats/MapWriter.h"
#include "demo/formats/ModelWriter.h"
#include "formats/TolvMap.h"
#include "graphics/ModelFixture.h"
#include "graphics/device/DXGShader.h"
#include "graphics/device/DXGState.h"
#include "world/ItemTable.h"
#include "world/TolvRenderObjects.h"

namespace {

std::string Box(const std::string& texture, float size) {
    demo::ModelChunk chunk;
    chunk.textures.push_back({0, texture});
    chunk.AddBox({0, 0, 0}, {size, size, size});
    demo::ModelDrawing drawing;
    drawing.meshes = {{"box", {chunk}}};
    drawing.bones = {{"root", "box"}};
    return demo::WriteModel(drawing);
}

class Items : public Models {
  protected:
    Items() {
        for (const char* name : {"wood.png", "red.png", "red_norm.png"})
            AddPicture(std::string("data\\items\\") + name, 2, 2, platform::ImageLayout::Argb32);
        folder.Write("data/items/placeholder.mbm", Box("wood.png", 1));
        folder.Write("data/items/lamp.mbm", Box("wood.png", 2));
    }
    void WriteList(const std::string& list) {
        folder.Write("data/items/items.txt", list);
        support::ClearErrorLog();
    }
};

// The first draw of a model shows which it is: its size is the highest coordinate.
float SizeOf(const G::Mesh* item) {
    if (!item) return 0;
    const std::vector<Vec3>& places = item->TopBone()->mesh.Mesh().positions;
    return std::max_element(places.begin(), places.end(), [](const Vec3& a, const Vec3& b) { return a.x < b.x; })->x;
}

TEST_F(Items, ComeFromTheList) {
    WriteList(
        "100 items\r\n\r\n12\n\t 7  lamp.mbm \n\n8 lamp.mbm wood.png\n0 lamp.mbm\n101 lamp.mbm\n100 lamp.mbm\n"
        " \t \n9 lamp.mbm wood.png red.png brass.png red.png wood.png none.png\n10 none.mbm wood.png red.png\n"
        "11 ..\\lamp.mbm\n7 placeholder.mbm\n");
    ItemTable table;
    table.Load();
    const std::string all = Errors();
    // What the loaders of models and textures say has tests of its own.
    std::string errors;
    for (std::size_t at = 0; at < all.size();) {
        const std::size_t end = all.find('\n', at) + 1;
        const std::string line = all.substr(at, end - at);
        if (line.find("items.txt") != std::string::npos || line.find("refused") != std::string::npos) errors += line;
        at = end;
    }
    EXPECT_EQ(errors,
              "Error in line 1 of items.txt: missing model name?\n"
              "Error in line 3 of items.txt: mismatched texture replacement pair?\n"
              "Error in line 4 of items.txt: object number must be >=1\n"
              "Error in line 5 of items.txt: an object number greater than the max number was specified.\n"
              "Warning: Texture replacement operation failed, in loading an item: items.txt, line 8, name: brass.png\n"
              "Warning: Texture replacement failed to load, in loading an item: items.txt, line 8, name: "
              "data\\items\\none.png\n"
              "Bad: file name refused: \"..\\lamp.mbm\"\n");
    EXPECT_EQ(table.Size(), 101U);
    EXPECT_EQ(table.Find(0), nullptr);
    EXPECT_EQ(table.Find(101), nullptr);
    EXPECT_EQ(SizeOf(table.Find(7)), 1) << "the later line";
    EXPECT_EQ(SizeOf(table.Find(100)), 2);
    EXPECT_EQ(SizeOf(table.Find(10)), 1) << "the placeholder stays";
    ASSERT_EQ(table.Find(9)->TopBone()->mesh.Overrides().size(), 1U);
    EXPECT_EQ(table.Find(9)->TopBone()->mesh.Overrides()[0].texture0.FileName(), "data\\items\\red.png");
    EXPECT_TRUE(table.Find(100)->TopBone()->mesh.Overrides().empty()) << "the replacement is its own item's";
}

TEST_F(Items, DoWithoutAPlaceholder) {
    ItemTable table;
    folder.Write("data/items/placeholder.mbm", "");
    G::EmptyModelRegistry();
    WriteList("3\n2 lamp.mbm\n");
    table.Load();
    EXPECT_EQ(table.Find(1), nullptr);
    EXPECT_EQ(SizeOf(table.Find(2)), 2);
}

TEST_F(Items, StandOnTheirCells) {
    WriteList("2500\n5 lamp.mbm\n2400 lamp.mbm\n");
    folder.Write("data/shaders/simple.hlsl_v",
                 support::LogText(std::getenv("KELVANE_SOURCE_DIR") + std::string("/data/shaders/simple.hlsl_v")));
    TolvMap::Current().LoadMapBytes(demo::WriteMap(demo::MapDrawing(20, 20)), "test");
    const struct {
        int gx, gy, object;
    } cells[] = {{3, 4, 5}, {7, 4, 5}, {5, 5, 6}, {6, 5, 2400}, {6, 6, 2501}, {8, 4, 5}, {3, 3, 5}, {3, 9, 5}};
    for (const auto& cell : cells)
        TolvMap::Current().SetObject(cell.gx, cell.gy, static_cast<std::uint16_t>(cell.object));
    support::ClearErrorLog();
    TOLV::RenderObjects items;
    items.SetRange(3, 8, 4, 9);
    ASSERT_TRUE(DXG::BeginFrame(0, false, true));
    items.Draw();
    DXG::EndFrame0();
    EXPECT_EQ(Errors(), "");
    const auto& draws = foundation.scripted.draws;
    const float places[][3] = {{3, 4, 2}, {7, 4, 2}, {5, 5, 1}};  // and the size of what stands there
    ASSERT_EQ(draws.size(), std::size(places));
    for (std::size_t i = 0; i < draws.size(); ++i) {
        const auto& world = draws[i].transforms[static_cast<std::size_t>(platform::TransformKind::World)];
        EXPECT_EQ(world[12], places[i][0]);
        EXPECT_EQ(world[13], places[i][1]);
        EXPECT_EQ(world[14], 0);
        float size = 0;
        for (unsigned vertex = 0; vertex < 24; ++vertex)
            size = std::max(size, draws[i].FloatAt(vertex, 0));
        EXPECT_EQ(size, places[i][2]);
        EXPECT_NE(draws[i].vertexShader, nullptr);
        EXPECT_EQ(draws[i].fragmentShader, nullptr);
    }
    EXPECT_EQ(DXG::GetCullMode(), 0U);
}

}  // namespace
