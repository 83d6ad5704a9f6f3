// The binary cache of models: its layout byte for byte, and what becomes of broken ones.

#include <sys/resource.h>

#include <bit>
#include <csignal>
#include <filesystem>

#include "demo/formats/ByteWriter.h"
#include "graphics/ModelFixture.h"
#include "graphics/model/GBMesh_BMBM.h"
#include "support/CutAndFlip.h"

namespace {

using demo::ByteWriter;
using namespace std::string_literals;

constexpr const char* cacheName = "gen/art/m.bmbm";

ByteWriter& Floats(ByteWriter& bytes, std::initializer_list<float> numbers) {
    for (const float number : numbers)
        bytes.U32(std::bit_cast<std::uint32_t>(number));
    return bytes;
}

std::string Name(const std::string& text) {
    return static_cast<char>(text.size()) + text;
}

// Two triangles' worth of indices over three vertices of a mesh called "tri".
std::string MeshBody(const std::string& texture, unsigned stride = 32, unsigned lastIndex = 2) {
    ByteWriter bytes;
    bytes.Bytes(Name("tri")).U8(1).U8(0xFF).Bytes(Name(texture)).U8(0).Bytes(Name(""));
    bytes.U8(24).U32(2).U32(0).U32(2).U32(1).U32(1).U32(3).U16(3).U8(stride);
    const float corners[3][2] = {{0, 0}, {1, 0}, {0, 1}};
    for (const auto& [x, y] : corners)
        Floats(bytes, {x, y, 0, 0, 0, 1, x, y});
    bytes.U16(3).U16(0).U16(1).U16(lastIndex).U16(3);
    for (const auto& [x, y] : corners)
        Floats(bytes, {x, y, 0});
    return bytes.U16(3).U16(0).U16(1).U16(2).Str();
}

std::string BoneBody(const std::string& name, const std::string& mesh, const std::vector<std::string>& children,
                     unsigned tag = 0) {
    ByteWriter bytes;
    bytes.U32(tag).Bytes(Name(name)).Bytes(Name(mesh)).U8(static_cast<unsigned>(children.size()));
    for (const std::string& child : children)
        bytes.Bytes(Name(child));
    return Floats(bytes, {1, 2, 3, 0, -1, 0, 1, 0, 0, 0, 0, 1}).Str();
}

std::string Cache(const std::string& records, unsigned magic = 1335) {
    ByteWriter bytes;
    return Floats(bytes.U32(magic), {0.25F}).Bytes(records).Str();
}

const std::string mesh = "\x01" + MeshBody("art\\tri.png");
const std::string sound =
    Cache(mesh + "\x02" + BoneBody("low", "tri", {}) + mesh + "\x02" + BoneBody("top", "tri", {"low"}) + "\0"s);
const std::string pose = "ConnectPos { 1 2 3 } ConnectRot { 0 1 0 -1 0 0 0 0 1 } ";
const std::string text =
    "RandomID { 0.25 } Mesh { Name { tri } Chunk { TextureB { 0 tri.png } Indices { 3 0 1 2 } Vertices { PNT2 3 "
    "0 0 0 0 0 1 0 0 1 0 0 0 0 1 1 0 0 1 0 0 0 1 0 1 } } } "
    "Bone { Name { top } Mesh { tri } Child { low } " +
    pose + "} Bone { Name { low } Mesh { tri } " + pose + "} ";

TEST_F(Models, AreCachedByteForByte) {
    ASSERT_TRUE(Load(model, text)) << Errors();
    EXPECT_EQ(folder.Read(cacheName), sound);
    EXPECT_FALSE(folder.Has(cacheName + ".tmp"s));
    model.Release();
    G::EmptyModelRegistry();
    // The identifier agrees: nothing after it is read.
    ASSERT_TRUE(Load(model, "RandomID { 0.25 } Mesh Bone } ")) << Errors();
    EXPECT_EQ(Errors(), "");
    G::Bone* low = model.FindBone("low");
    ASSERT_TRUE(low);
    EXPECT_EQ(low->RestRotation().m[1], -1);
    const G::MeshRecord& loaded = low->mesh.Mesh();
    ASSERT_EQ(loaded.chunks.size(), 1U);
    EXPECT_EQ(loaded.positions.size(), 3U);
    EXPECT_EQ(loaded.positionIndices, (std::vector<std::uint16_t>{0, 1, 2}));
    EXPECT_TRUE(loaded.chunks[0].vertexBuffer.Record()->writeOnly);
    EXPECT_TRUE(loaded.chunks[0].texture0.Record()->mipmapped);
    EXPECT_NE(&loaded, &model.TopBone()->mesh.Mesh()) << "written once per bone";
    model.Release();
    G::EmptyModelRegistry();
    ASSERT_TRUE(Load(model, "RandomID { 0.5 }" + text.substr(17)));
    EXPECT_EQ(folder.Read(cacheName).substr(8), sound.substr(8)) << "written anew for another identifier";
    EXPECT_NE(folder.Read(cacheName), sound);
}

// A cache that cannot be used costs a message; the text is read instead and the cache replaced.
TEST_F(Models, DoWithoutABrokenCache) {
    const std::string low = "\x02" + BoneBody("low", "", {});
    const std::string end(1, '\0');
    const std::string failed = "Failed to load gen\\art\\m.bmbm\n";
    const std::string problem = "Problem during loading a binary mesh...\n" + failed;
    const struct {
        const char* name;
        std::string bytes, errors;
    } rows[] = {
        {"other magic", Cache(low + end, 1334), ""},
        {"no end", Cache(low), "Bad TYPE byte in DoLoadBMBMHierarchy.\n" + failed},
        {"child of itself", Cache("\x02" + BoneBody("b", "", {"b"}) + end),
         "Bone b asked for child b but it wasn't found...\n" + failed},
        {"unused mesh", Cache(mesh + mesh + low + low + end),
         "Note: a mesh went unused in DoLoadBMBMHierarchy.\n"
         "Too many parent bones after DoLoadBMBMHierarchy finished.\n" +
             failed},
        {"stride below the format", Cache("\x01" + MeshBody("", 31) + low + end),
         "Failed to make VB in Mesh::BinaryLoad.\n" + problem},
        {"texture above", Cache("\x01" + MeshBody("art\\..\\x.png") + low + end),
         "Bad: file name refused: \"..\\x.png\"\n" + problem},
    };
    for (const auto& row : rows) {
        folder.Write(cacheName, row.bytes);
        EXPECT_TRUE(Load(model, text)) << row.name;
        EXPECT_EQ(Errors(), row.errors) << row.name;
        EXPECT_EQ(folder.Read(cacheName), sound) << row.name;
        model.Release();
        G::EmptyModelRegistry();
        EXPECT_EQ(G::LiveBones(), 0U) << row.name;
    }
}

TEST_F(Models, SurviveDamagedCaches) {
    const auto load = [&](std::string_view bytes) {
        folder.Write(cacheName, std::string(bytes));
        G::ModelHeader header;
        const bool loaded = G::LoadMeshBMBM("gen\\art\\m.bmbm", false, header);
        if (!header.topBone) return loaded;
        if (DXG::BeginFrame(0, false, true)) header.topBone->Draw(true);
        DXG::EndFrame0();
        G::FreeBone(header.topBone);
        return loaded;
    };
    support::CutAndFlip({"model cache", sound, load, [](std::size_t) { return false; }, 3});
    EXPECT_EQ(G::LiveBones(), 0U);
}

TEST_F(Models, AreNotDrawnWithIndicesBeyondTheirVertices) {
    folder.Write(cacheName, Cache("\x01" + MeshBody("", 32, 3) + "\x02" + BoneBody("top", "tri", {}) + "\0"s));
    ASSERT_TRUE(Load(model, text));
    DXG::BeginFrame(0, false, true);
    model.Draw(false);
    DXG::EndFrame0();
    EXPECT_TRUE(foundation.scripted.draws.empty());
    EXPECT_EQ(Errors().substr(0, Errors().find('\n')),
              "Bad: a chunk of mesh tri has an index beyond its vertices and is not drawn: gen\\art\\m.bmbm");
}

TEST_F(Models, AreNotCachedWhenTheyDoNotFit) {
    const std::string bone = "Bone { Name { b } Mesh { m } }\n";
    const std::string vertex = " 0 0 0 0 0 1 0 0";
    const std::string chunk = "Chunk { Vertices { PNT2 1" + vertex + " } Indices { 3 0 0 0 } } ";
    folder.Write(cacheName, "old");
    EXPECT_TRUE(Load(model, "RandomID { 1 } Mesh { Name { m } " + Repeated(chunk, 256) + "} " + bone));
    EXPECT_EQ(Errors(),
              "Note: model too large for its cache: 256 chunks of m, but at most 255 can be cached.\n"
              "An error occured trying to save gen\\art\\m.bmbm\n");
    EXPECT_EQ(folder.Read(cacheName), "old");
    model.Release();
    G::EmptyModelRegistry();
    // The welder keeps the low 16 bits of an index count, so that what is left of it would fit.
    folder.Write("art/m.mbm", "RandomID { 1 } Mesh { Name { m } Chunk { Vertices { PNT2 1" + vertex +
                                  " } Indices { 65538" + Repeated(" 0", 65538) + " } } } " + bone);
    for (const bool optimize : {false, true}) {
        support::ClearErrorLog();
        EXPECT_TRUE(model.Load("art\\m.mbm", false, true, optimize));
        EXPECT_EQ(Errors(),
                  "Note: model too large for its cache: 65538 indices of m, but at most 65535 can be cached.\n"
                  "An error occured trying to save gen\\art\\m.bmbm\n");
        EXPECT_EQ(folder.Read(cacheName), "old");
        model.Release();
        G::EmptyModelRegistry();
    }
}

TEST_F(Models, LoadWhenTheirCacheCannotBeWritten) {
    std::filesystem::create_directories(std::string(cacheName) + "/x");
    ASSERT_TRUE(Load(model, text));
    EXPECT_TRUE(Errors().ends_with("Could not open \"gen\\art\\m.bmbm\" to write to.\n")) << Errors();
    EXPECT_FALSE(folder.Has(cacheName + ".tmp"s));
}

TEST_F(Models, KeepTheOldCacheOnAFullDisk) {
    folder.Write(cacheName, "old");
    folder.Write("art/m.mbm", text);
    // A limit on the size of files stands for the full disk; the log's messages fit.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{sound.size() - 1, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_TRUE(model.Load("art\\m.mbm", false, false, true));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(Errors(), "fwrite didn't complete in SaveMeshBMBM???\n");
    EXPECT_EQ(folder.Read(cacheName), "old");
    EXPECT_FALSE(folder.Has(cacheName + ".tmp"s));
}

}  // namespace
