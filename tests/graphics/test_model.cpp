// Blocks, welding, bones, and models as they are shared, posed and drawn.

#include <array>
#include <cstring>
#include <ctime>
#include <random>
#include <stdexcept>

#include "demo/formats/ModelWriter.h"
#include "graphics/ModelFixture.h"
#include "graphics/device/DXGState.h"
#include "graphics/model/MeshWeld.h"

namespace {

TEST(BlockAlloc, ReusesTheLowestSlotAndStopsAtMisuse) {
    const support::TestFolder folder;
    const BlockAllocStop before = SetBlockAllocStop([] { throw std::runtime_error("stopped"); });
    {
        BlockAlloc<std::string> blocks(64);
        std::vector<std::string*> made;
        for (int i = 0; i < 65; ++i)
            made.push_back(blocks.Alloc());
        EXPECT_EQ(blocks.BlockCount(), 2U);
        EXPECT_EQ(blocks.FreeSlots(), 63U);
        blocks.Free(made[9]);
        blocks.Free(made[3]);
        EXPECT_THROW(blocks.Free(made[3]), std::runtime_error);
        EXPECT_EQ(blocks.Alloc(), made[3]);
        EXPECT_THROW(blocks.Free(reinterpret_cast<std::string*>(reinterpret_cast<char*>(made[3]) + 1)),
                     std::runtime_error);
        std::string other;
        EXPECT_THROW(blocks.Free(&other), std::runtime_error);
    }
    const std::string unknown = "trying to delete mem that doesn't exist in BlockAlloc.\n";
    EXPECT_EQ(support::ErrorLogWithoutStacks(),
              "trying to delete memory that was already free in BlockAlloc.\n" + unknown + unknown +
                  "Something leaked that was made with BlockAlloc. That memory is going away now though...\n"
                  "  -call stack of allocator free:\n\n");
    SetBlockAllocStop(before);
}

// The rule itself: each vertex is looked for among those kept, from the last to the first.
std::string WeldSlowly(const std::vector<unsigned char>& bytes, std::size_t stride,
                       std::vector<std::uint16_t>& indices) {
    std::string kept;
    for (std::uint32_t i = 0; i < bytes.size() / stride; ++i) {
        const std::size_t keptCount = kept.size() / stride;
        std::size_t place = keptCount;
        for (std::size_t j = keptCount; j-- > 0 && place == keptCount;)
            if (std::memcmp(&bytes[i * stride], &kept[j * stride], stride) == 0) place = j;
        if (place == keptCount) kept.append(reinterpret_cast<const char*>(&bytes[i * stride]), stride);
        for (std::uint16_t& index : indices)
            if (index == i) index = static_cast<std::uint16_t>(place);
    }
    return kept;
}

void ExpectWelded(std::size_t count, std::size_t stride, unsigned values, std::size_t probes, std::mt19937& random) {
    std::vector<unsigned char> bytes(count * stride, 9);
    // Equal but for a few bytes, the last one among them, so that long common beginnings are compared.
    for (std::size_t i = 0; i < count; ++i)
        for (const std::size_t at : {stride - 1, stride / 2})
            bytes[i * stride + at] = static_cast<unsigned char>(random() % values);
    std::vector<std::uint16_t> indices(200);
    for (std::uint16_t& index : indices)
        index = static_cast<std::uint16_t>(random() % (count + 5));
    std::vector<std::uint16_t> slowIndices = indices;
    const std::string slow = WeldSlowly(bytes, stride, slowIndices);
    const WeldedVertices welded = WeldVertices(bytes.data(), count, stride, indices, probes);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(welded.bytes.get()), welded.count * stride), slow);
    EXPECT_EQ(indices, slowIndices);
}

TEST(WeldVertices, DoesWhatTheSlowSearchDoes) {
    std::mt19937 random(7);
    for (const std::size_t stride : {1U, 12U, 28U, 32U})
        for (const unsigned values : {1U, 2U, 3U, 256U})
            for (const std::size_t count : {0U, 1U, 2U, 37U, 300U})
                for (const std::size_t probes : {0U, 1U, 8U}) {  // so few that the table gives up at once or midway
                    SCOPED_TRACE(testing::Message() << stride << ' ' << values << ' ' << count << ' ' << probes);
                    ExpectWelded(count, stride, values, probes, random);
                }
}

Vec3 PlaceOf(G::Bone& bone) {
    const Mat4& world = bone.WorldMatrix();
    return {world(0, 3), world(1, 3), world(2, 3)};
}

void ExpectPlace(G::Bone& bone, float x, float y, float z) {
    const Vec3 place = PlaceOf(bone);
    EXPECT_NEAR(place.x, x, 1e-5);
    EXPECT_NEAR(place.y, y, 1e-5);
    EXPECT_NEAR(place.z, z, 1e-5);
}

TEST_F(Models, FollowTheirBones) {
    model.MakeEmpty(false);
    G::Bone* arm = model.TopBone();
    G::Bone* hand = G::NewBone();
    G::Bone* ring = G::NewBone();
    ring->name = "ring";
    arm->SetRotation({{0, -1, 0, 1, 0, 0, 0, 0, 1}}, true);  // x goes to y
    hand->SetPosition({2, 0, 0}, true);
    ring->SetPosition({0, 0, 1}, false);
    arm->AttachChild(*hand, true, false, false);
    hand->AttachChild(*ring, true, false, false);
    ExpectPlace(*ring, 0, 2, 1);
    arm->SetPosition({5, 0, 0}, false);
    ExpectPlace(*ring, 5, 2, 1);
    ExpectPlace(*hand, 5, 2, 0);
    EXPECT_EQ(model.FindBone("ring"), ring);

    ring->AttachChild(*arm, true, false, false);  // refused
    EXPECT_EQ(Errors(), "Bad: attempt to attach a bone below itself.\n  -call stack:\n\n");
    EXPECT_EQ(arm->Parent(), nullptr);
    ring->Detach(true);
    ExpectPlace(*ring, 5, 2, 1);
    arm->AttachChild(*ring, false, true, false);
    ExpectPlace(*ring, 5, 2, 1);
    arm->SetPosition({6, 0, 0}, false);
    ExpectPlace(*ring, 6, 2, 1);
    arm->AttachChild(*ring, false, false, true);
    ExpectPlace(*ring, 0, 0, 0);

    G::Bone* copy = G::NewBone();
    copy->CloneFrom(*arm);
    ASSERT_EQ(copy->Children().size(), 1U) << "the ring is not owned";
    ExpectPlace(*copy->Children()[0], 6, 2, 0);
    EXPECT_EQ(G::LiveBones(), 5U);
    G::FreeBone(copy);
    model.Release();
    EXPECT_EQ(ring->Parent(), nullptr);
    EXPECT_EQ(support::LogText("_stat.txt").find("Last bone"), std::string::npos);
    G::FreeBone(ring);
    EXPECT_NE(support::LogText("_stat.txt").find("Last bone freed.  Peek bone count: 5\n\n"), std::string::npos);
    EXPECT_EQ(G::PeakBones(), 0U);
}

demo::ModelChunk Box(const std::string& texture, float size) {
    demo::ModelChunk chunk;
    if (!texture.empty()) chunk.textures.push_back({0, texture});
    chunk.AddBox({0, 0, 0}, {size, size, size});
    return chunk;
}

// A body with two chunks and, as its child, a hat that has none of its textures.
std::string Figure() {
    demo::ModelDrawing drawing;
    drawing.meshes = {{"body", {Box("tri.png", 1), Box("coat.png", 2)}}, {"hat", {Box("", 3)}}};
    drawing.bones = {
        {"body", "body", {"hat"}, {1, 0, 0}},
        {"hat", "hat", {}, {0, 0, 4}},
    };
    return demo::WriteModel(drawing);
}

TEST_F(Models, ShareMeshesButNotPoses) {
    AddPicture("art\\coat.png", 2, 2, platform::ImageLayout::Argb32);
    ASSERT_TRUE(Load(model, Figure()));
    folder.Write("art/m.mbm", "no model any more");
    G::Mesh second;
    ASSERT_TRUE(second.Load("art\\m.mbm", false, false, true));
    EXPECT_EQ(&second.TopBone()->mesh.Mesh(), &model.TopBone()->mesh.Mesh());
    second.TopBone()->SetPosition({9, 9, 9}, false);
    ExpectPlace(*model.FindBone("hat"), 1, 0, 4);
    ExpectPlace(*second.FindBone("hat"), 9, 9, 13);
    EXPECT_FALSE(second.Load("art\\m.mbm", false, true, true)) << "readable meshes are another model";
    EXPECT_FALSE(second.IsLoaded());
    const std::string statistics = support::LogText("_meshStats.txt");
    EXPECT_EQ(statistics.find("Model: "), statistics.rfind("Model: ", statistics.size() - 20));
    // The pass that makes the buffers write-only counts again.
    EXPECT_NE(statistics.find("-GRAPHIC, original verts: 144\n"), std::string::npos);
    EXPECT_NE(statistics.find("-POSITION, original verts: 72\n    -POSITION, optimized verts: 23\n"),
              std::string::npos);

    support::ClearErrorLog();
    G::MeshReference copy;
    EXPECT_FALSE(model.TopBone()->mesh.Duplicate(true, copy));
    G::MeshRecord& mesh = model.TopBone()->mesh.MutableMesh();
    mesh.Optimize(true);
    mesh.RebuildPositionsMesh();
    const std::string refused = "Cannot optimize mesh chunk.  Vertex/Index buffer not readable.\n  -call stack:\n\n";
    EXPECT_EQ(Errors(), "Attempt to duplicate a mesh, but it is write-only so can't.\n" + refused + refused +
                            "RebuildPositionsMesh failing... some ib/vb are write-only.\n  -Call stack:\n\n");
}

TEST_F(Models, DuplicateReadableMeshes) {
    ASSERT_TRUE(Load(model, Figure(), true));
    const G::MeshReference& original = model.FindBone("hat")->mesh;
    G::MeshReference copy;
    ASSERT_TRUE(original.Duplicate(false, copy));
    ASSERT_EQ(copy.Mesh().chunks.size(), 1U);
    const G::MeshChunk& from = original.Mesh().chunks[0];
    const G::MeshChunk& to = copy.Mesh().chunks[0];
    EXPECT_NE(to.vertexBuffer.Record(), from.vertexBuffer.Record());
    EXPECT_TRUE(to.indexBuffer.Record()->writeOnly);
    EXPECT_EQ(std::memcmp(to.vertexBuffer.Lock(false).Data(), from.vertexBuffer.Lock(false).Data(), 24 * 32), 0);
    EXPECT_EQ(std::memcmp(to.indexBuffer.Lock().Data(), from.indexBuffer.Lock().Data(), 36 * 2), 0);

    ASSERT_TRUE(original.Duplicate(true, copy));
    std::memset(copy.Mesh().chunks[0].vertexBuffer.Lock(false).Data(), 0, 24 * 32);
    copy.MutableMesh().Optimize(true);
    EXPECT_EQ(copy.Mesh().chunks[0].vertexBuffer.Count(), 1U) << "what changed is welded again";
    EXPECT_EQ(copy.Mesh().chunks[0].indexLimit, 1U) << "and drawn";
}

TEST_F(Models, AreDrawnChildrenFirst) {
    AddPicture("art\\coat.png", 2, 2, platform::ImageLayout::Argb32);
    for (const char* name : {"new.png", "new_norm.png"})
        AddPicture(name, 2, 2, platform::ImageLayout::Argb32);
    ASSERT_TRUE(Load(model, Figure()));
    DXG::Texture replacement;
    ASSERT_TRUE(replacement.Load("new.png", DXG::TextureType::AsFile, true, true));
    EXPECT_FALSE(model.SetTexture("art\\coat.png", replacement));
    EXPECT_TRUE(model.SetTexture("coat.png", replacement));
    support::ClearErrorLog();
    ASSERT_TRUE(DXG::BeginFrame(0, false, true));
    model.Draw(false);
    model.TopBone()->visible = false;
    model.Draw(false);
    model.Draw(true);
    DXG::EndFrame0();
    const std::string untextured = "Warning: Mesh being drawn without an explicitely set texture.\n  -call stack:\n\n";
    EXPECT_EQ(Errors(), untextured + untextured + untextured);

    const auto& draws = foundation.scripted.draws;
    ASSERT_EQ(draws.size(), 3U + 1U + 3U);
    const auto worldOf = [](const platform::ScriptedDraw& draw) {
        return draw.transforms[static_cast<std::size_t>(platform::TransformKind::World)];
    };
    for (const auto& draw : draws) {
        EXPECT_EQ(draw.primitiveCount, 12U);
        EXPECT_EQ(draw.vertexCount, 24U);
    }
    EXPECT_EQ(draws[0].textures[0], nullptr) << "the hat";
    EXPECT_EQ(draws[1].textures[0], model.TopBone()->mesh.Mesh().chunks[0].texture0.Record()->api.object.get());
    EXPECT_EQ(draws[1].textures[1], nullptr);
    EXPECT_EQ(draws[2].textures[0], replacement.Record()->api.object.get());
    EXPECT_NE(draws[2].textures[1], nullptr) << "its normal map";
    EXPECT_EQ(draws[4].textures[1], draws[2].textures[1]) << "a chunk without a normal map leaves the last one";
    EXPECT_EQ(worldOf(draws[0])[14], 4) << "z, in the device's own layout";
    EXPECT_EQ(worldOf(draws[1])[14], 0);
}

TEST_F(Models, TakeAndLoseNormalMaps) {
    AddPicture("art\\tri_norm.png", 2, 2, platform::ImageLayout::Argb32);
    demo::ModelDrawing drawing;
    drawing.meshes = {{"m", {Box("tri.png", 1)}}};
    drawing.bones = {{"b", "m"}};
    folder.Write("art/m.mbm", demo::WriteModel(drawing));
    ASSERT_TRUE(model.Load("art\\m.mbm", true, false, true));
    const DXG::Texture& normalMap = model.TopBone()->mesh.Mesh().chunks[0].texture1;
    G::LoadNormalMaps();
    EXPECT_EQ(normalMap.FileName(), "art\\tri_norm.png");
    G::UnloadNormalMaps();
    EXPECT_FALSE(normalMap.IsLoaded());
    ASSERT_TRUE(Load(model, ""));  // from the registry: without the flag, but the master's meshes are the same
    G::LoadNormalMaps();
    EXPECT_TRUE(model.TopBone()->mesh.Mesh().chunks[0].texture1.IsLoaded());
}

// Compared each with each, these vertices would take a minute.
TEST(WeldVertices, IsFastWhateverTheBytesAre) {
    constexpr std::uint32_t count = 200000;
    const struct {
        std::uint32_t (*first)(std::uint32_t), (*last)(std::uint32_t);
        std::uint16_t place;  // of vertex 65535
    } rows[] = {
        {[](std::uint32_t) { return 7U; }, [](std::uint32_t) { return 7U; }, 0},
        {[](std::uint32_t) { return 7U; }, [](std::uint32_t i) { return i / 2; }, 32767},
        {[](std::uint32_t i) { return i << 16; }, [](std::uint32_t i) { return i >> 16; }, 65535},
        {[](std::uint32_t i) { return count - i; }, [](std::uint32_t) { return 0U; }, 65535},
    };
    for (const auto& row : rows) {
        std::vector<std::array<std::uint32_t, 3>> vertices(count);
        for (std::uint32_t i = 0; i < count; ++i)
            vertices[i] = {row.first(i), 0, row.last(i)};
        std::uint16_t index = 65535;
        const std::clock_t start = std::clock();
        (void)WeldVertices(reinterpret_cast<const unsigned char*>(vertices.data()), count, 12, {&index, 1});
        EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 10);
        EXPECT_EQ(index, row.place);
    }
}

}  // namespace
