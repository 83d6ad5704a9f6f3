#include <algorithm>
#include <climits>
#include <cmath>
#include <map>

#include "WorldFixture.h"
#include "graphics/model/GBMesh.h"
#include "math/VectorMatrix.h"
#include "session/WorldPort.h"
#include "world/CharacterRenderer.h"
#include "world/FloorRenderer.h"
#include "world/MarkerRenderer.h"
#include "world/WallRenderer.h"

namespace {

using platform::ScriptedDraw;

TextureList Textures(std::size_t count) {
    TextureList list(count);
    for (DXG::Texture& texture : list)
        EXPECT_TRUE(texture.Create(2, 2, DXG::TextureType::ColourAlpha, 1, true));
    return list;
}
const platform::DeviceTexture* Object(const DXG::Texture& texture) {
    return texture.Record()->api.object.get();
}

TEST_F(World, FloorsAreGroupedByNumber) {
    TolvMap& map = TolvMap::Current();
    map.SetFloor(26, 25, 7);
    map.SetFloor(25, 26, 3);
    map.SetFloor(54, 54, 7);
    map.SetFloor(40, 40, 750);  // has no slot
    map.SetFloor(55, 40, 3);    // beyond the visible area
    FloorGeometry geometry;
    BuildFloorGeometry(map, {40, 40}, geometry);
    ASSERT_EQ(geometry.vertices.size(), 18U);
    EXPECT_TRUE(geometry.count[3] == 6 && geometry.first[7] == 6 && geometry.vertices[12].x == 53.5F);
    // Outside the map everything is floor 161, at the ends of the number range too; the buffer has room for it all.
    BuildFloorGeometry(map, {-100, 5}, geometry);
    EXPECT_EQ(geometry.count[161], 900U * 6);
    BuildFloorGeometry(map, {INT_MAX, INT_MIN}, geometry);
    EXPECT_EQ(geometry.count[161], 900U * 6);
}

TEST_F(World, FloorBufferIsRebuiltOnlyWhenItMust) {
    const TextureList list = Textures(800);  // more than there are slots
    FloorRenderer::Current()->SetTextures(list);
    const auto floorDraws = [this] {
        std::map<const platform::DeviceTexture*, unsigned> triangles;
        for (const ScriptedDraw& draw : Frame())
            if (draw.stride == sizeof(FloorVertex)) triangles[draw.textures[0]] += draw.primitiveCount;
        return triangles;
    };
    EXPECT_TRUE(floorDraws().empty());  // an empty map, built now
    TolvMap::Current().SetFloor(40, 41, 5);
    EXPECT_TRUE(floorDraws().empty());
    TolvRenderer::Port().MarkFloorsDirtyNear(40, 60);  // too far away to matter
    EXPECT_TRUE(floorDraws().empty());
    TolvRenderer::Port().MarkFloorsDirtyNear(25, 55);
    EXPECT_EQ(floorDraws(), (decltype(floorDraws()){{Object(list[5]), 2}}));
    TolvMap::Current().SetFloor(41, 41, 6);
    EXPECT_EQ(floorDraws().size(), 1U);
    data.SetViewPosition(41, 40);
    TolvRenderer::Update(0.01F);
    EXPECT_EQ(floorDraws().size(), 2U);
    FloorRenderer::Current()->SetTextures({});
    EXPECT_TRUE(floorDraws().empty());
}

TEST_F(World, EachWallTextureIsBoundOnce) {
    const TextureList list = Textures(9);
    WallRenderer::Current()->SetTextures(list);
    TolvMap& map = TolvMap::Current();
    for (const int gx : {39, 41}) {
        map.SetLowXWall(gx, 42, 4);
        map.SetLowYWall(gx, 42, 4);
    }
    map.SetLowXWall(30, 30, 200);  // comes back negative
    map.SetLowYWall(31, 30, 127);  // no such texture
    std::vector<const ScriptedDraw*> walls;
    for (const ScriptedDraw& draw : Frame())
        if (draw.fromMemory && draw.primitiveCount == 4 && draw.FloatAt(2, 8) == 2) walls.push_back(&draw);
    ASSERT_EQ(walls.size(), 3U);
    EXPECT_EQ(walls[0]->textures[0], nullptr);  // the stone picture is missing
    EXPECT_TRUE(walls[1]->textures[0] == Object(list[8]) && walls[1]->FloatAt(7, 4) == 42.5F);
    EXPECT_TRUE(walls[2]->textures[0] == Object(list[7]) && walls[2]->FloatAt(7, 0) == 41.5F);
    EXPECT_EQ(support::ErrorLogText(), "");
}

TEST_F(World, CharactersPointWhereTheyFace) {
    GetColorTable(BodyPart::Vest)[63] = {0, 1, 2, 3};
    Character character;
    character.colorDigits = {63, 0, 0, 0, 0, 64};
    const float tips[5][2] = {{0, -0.2F}, {-0.2F, 0}, {0, 0.2F}, {0.2F, 0}, {-0.2F, 0}};
    for (int facing = 0; facing < 5; ++facing) {
        character.facing = facing;
        std::vector<ArrowVertex> arrows;
        AppendArrowheads(character, arrows);
        ASSERT_EQ(arrows.size(), 27U);
        EXPECT_TRUE(arrows[24].x == tips[facing][0] && arrows[24].y == tips[facing][1]) << facing;
        EXPECT_EQ((arrows[25].x + arrows[26].x) / 2, -arrows[24].x) << facing;
        EXPECT_TRUE(arrows[24].color == 0xFF000000U && arrows[25].color == 0x7F010203U);  // digit 64 names no colour
    }
    for (character.gx = 54; character.gx < 58; ++character.gx)  // two of them are too far away
        data.MoveCharacter(0, 0, character);
    EXPECT_EQ(std::ranges::count(Frame(), 18U, &ScriptedDraw::primitiveCount), 0);
    data.SetViewPosition(40, 5);
    TolvRenderer::Update(0);
    EXPECT_EQ(std::ranges::count(Frame(), 18U, &ScriptedDraw::primitiveCount), 1);
}

TEST_F(World, MarkersStandUnderTheirLabels) {
    std::size_t length = 0;
    const G::ColouredText label = MarkerLabel({0, 0, "Hi", "Every|one"}, length);
    EXPECT_EQ(label.text, "   Hi\nEvery one");
    EXPECT_EQ(length, 9U);
    ASSERT_EQ(label.changes.size(), 2U);
    EXPECT_TRUE(label.changes[1].index == 6 && label.changes[1].colour == 0xFFC8C8C8U);
    data.AddMarker({42, 39, "abcd", "ab"});
    data.AddMarker({38, 43, "abcdefgh", ""});
    data.AddMarker({56, 40, "far away", ""});
    std::vector<const ScriptedDraw*> labels;
    const std::vector<ScriptedDraw>& draws = Frame();
    for (const ScriptedDraw& draw : draws)
        if (draw.stride == 20) labels.push_back(&draw);
    ASSERT_EQ(labels.size(), 2U);
    const auto pillars = std::ranges::find(draws, 40U, &ScriptedDraw::primitiveCount);
    ASSERT_NE(pillars, draws.end());
    EXPECT_EQ(pillars->State(platform::RenderState::DepthWrite), 0U);
    EXPECT_EQ(pillars->State(platform::RenderState::Cull), static_cast<std::uint32_t>(platform::CullMode::Clockwise));
    EXPECT_NEAR(pillars->FloatAt(1, 0), 42 + 0.45F * std::sin(0.6283185F), 1e-4F);
    EXPECT_TRUE(pillars->FloatAt(59, 8) == 2 && pillars->FloatAt(59, 28) == 2 && pillars->FloatAt(59, 32) == 0.05F);
    using enum platform::TransformKind;
    const auto& kinds = pillars->transforms;
    const Mat4 drawn = Transpose(Multiply({kinds[static_cast<int>(View)]}, {kinds[static_cast<int>(Projection)]}));
    const float cells[2][3] = {{42, 39, 4}, {38, 43, 8}};
    for (std::size_t i = 0; i < 2; ++i) {
        const Vec4 clip = Transform(drawn, {cells[i][0], cells[i][1], 1.5F, 1});
        // Off by a hundredth of the way from the middle, no more.
        EXPECT_NEAR(labels[i]->FloatAt(0, 0) + 4 * cells[i][2], (clip.x / clip.w * 0.99F + 1) * 400, 0.1F) << i;
        EXPECT_NEAR(labels[i]->FloatAt(0, 4), (1 - clip.y / clip.w * 0.99F) * 300, 0.1F) << i;
    }
}

TEST_F(World, ThousandsOfMarkersLeaveTimeForOtherThings) {
    for (int i = 0; i < 8192; ++i)
        data.AddMarker({40, 40, "storm", i == 0 ? std::string(60000, 'x') : "storm"});
    const std::vector<ScriptedDraw>& draws = Frame();
    EXPECT_EQ(std::ranges::count(draws, 20U, &ScriptedDraw::stride), 1 + (2500 - 5 - 1024) / 10);
    EXPECT_EQ(data.GetMarkers()[0].subLabel.size(), 1024U);
    EXPECT_EQ(std::ranges::count(draws, 961U * 20, &ScriptedDraw::primitiveCount), 1);
}

TEST_F(World, ReadsModelsAgainAndEndsTwice) {
    folder.Write("data/items/items.txt", "5\n");
    folder.Write("data/items/placeholder.mbm", "Bone { }\n");
    for (int time = 0; time < 2; ++time) {
        Press({68});
        TolvRenderer::Update(0.01F);
        Press({});
        TolvRenderer::Update(0.01F);
    }
    const std::string model = "Model: data\\items\\placeholder.mbm\n";
    const std::string statistics = support::LogText("_meshStats.txt");
    EXPECT_EQ(statistics.find(model), 0U);
    EXPECT_NE(statistics.find(model, 1), std::string::npos);
    TolvRenderer::Shutdown();
    TolvRenderer::Shutdown();
    EXPECT_TRUE(Frame().empty());
    G::EmptyModelRegistry();
    G::DestroyModelBones();
}

}  // namespace
