// The model text: what is built from it, and what is said about it.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>

#include "graphics/ModelFixture.h"
#include "graphics/model/MeshTokenizer.h"
#include "support/CutAndFlip.h"

namespace {

const std::string vertices = "Vertices { PNT2 3 0 0 0 0 1 0 0 0 1 0 0 0 1 0 1 0 0 0 1 0 1 0 0.5 1 } ";
const std::string chunk = "Chunk { TextureB { 0 tri.png } " + vertices + "Indices { 3 0 1 2 } } ";
const std::string triangle = "Mesh { Name { tri } " + chunk + "} ";
const std::string root = "Bone { Name { root } Mesh { tri } } ";
const std::string lazy =
    "Warning: .mbm file (art\\m.mbm), first construct is not RandomID.  Binary version will not be cached.  Quit being "
    "lazy if you want the game to load faster...\n";
const std::string stack = "  -call stack:\n\n";
const std::string failed = "Failed to load mesh: art\\m.mbm\n" + stack;

TEST_F(Models, AreBuiltFromText) {
    ASSERT_TRUE(Load(
        model,
        "RandomID { 0.8132 } Mesh { Name { tri } Chunk { TextureB { 0 tri.png 0 } TextureC { 1 tri.png } " + vertices +
            "Indices { 3 0 1 2 } } Foo { a { b } c } Chunk { Vertices { PNC 1 1 2 3 0 0 1 1.5 0 1 "
            "0.5 } Indices { 3 0 0 0 } } } "
            "Bone { Child { low } Name { top } } Bone { Name { low } Mesh { tri } ConnectPos { 1 "
            "-2e1 .5 } ConnectRot { 0 1 0 -1 0 0 0 0 1 } }\n",
        true))
        << Errors();
    EXPECT_EQ(Errors(), "Warning parsing mesh: unknown Mesh sub-construct: Foo\n");
    EXPECT_EQ(support::LogText("_meshStats.txt"),
              "Model: art\\m.mbm\n >Total:\n    -POSITION, original verts: 4\n    -POSITION, optimized verts: 4\n"
              "    -GRAPHIC, original verts: 4\n    -GRAPHIC, optimized verts: 4\n    -Triangle Count: 2\n"
              "    -Total Bones: 2\n    -Wasted Bones: 1\n\n");
    EXPECT_FLOAT_EQ(model.Record()->randomID, 0.8132F);
    ASSERT_EQ(model.TopBone()->name, "top");
    G::Bone* low = model.FindBone("low");
    ASSERT_TRUE(low && low->Parent() == model.TopBone());
    EXPECT_FLOAT_EQ(low->RestPosition().y, -20);
    EXPECT_EQ(low->Rotation().m[1], -1) << "stored transposed";
    const G::MeshRecord& mesh = low->mesh.Mesh();
    ASSERT_EQ(mesh.chunks.size(), 2U);
    EXPECT_EQ(mesh.chunks[0].texture0.FileName(), "art\\tri.png");
    EXPECT_FALSE(mesh.chunks[0].texture0.Record()->mipmapped);
    EXPECT_TRUE(mesh.chunks[0].texture1.IsLoaded());
    EXPECT_EQ(mesh.positionIndices, (std::vector<std::uint16_t>{0, 1, 2, 3, 3, 3}));
    std::uint32_t colour = 0;
    std::memcpy(&colour, static_cast<char*>(mesh.chunks[1].vertexBuffer.Lock(false).Data()) + 24, 4);
    EXPECT_EQ(colour, 0x7F7E00FFU) << "channels above 1 lose their high bits";
    EXPECT_TRUE(folder.Has("gen/art/m.bmbm"));
}

// What is said, and whether there is a model all the same. Nothing may be left of one that failed (see Models).
TEST_F(Models, TellWhatIsWrong) {
    const auto parsing = [](const std::string& constructs) {
        return "Errors occured parsing the file art\\m.mbm\n  error stack: " + constructs + "\n" + failed;
    };
    const std::string inBones = "Errors in bones of model file: art\\m.mbm\n" + failed;
    const std::string inMeshes = "Errors in meshes of model file: art\\m.mbm\n" + failed;
    const std::string outOfRange =
        "Bad.. loading index list from mesh.. an index is out of range (must be 0 to 65535).\n";
    const struct {
        const char* name;
        std::string text;
        bool loads;
        std::string errors;
    } rows[] = {
        {"empty", "", false, "Failed to load mesh: art\\m.mbm\n  -No bones found...\n" + stack},
        {"lazy", triangle + root, true, lazy},
        {"unknown", "Foo { a { b } c } " + triangle + root, true,
         lazy + "Warning parsing mesh(art\\m.mbm): unrecognized base construct: Foo\n"},
        // The scope that is skipped for the brace would take the mesh with it, and the rest would load.
        {"closed once too often", "} Mesh { Name { lost } } " + triangle + root, false,
         "Error parsing mesh: unexpected }\n" + lazy +
             "Warning parsing mesh(art\\m.mbm): unrecognized base construct: }\n" + parsing("")},
        {"errors unwind", "Mesh { Name { a } Chunk { Indices { 1 x } } Name { } }\n" + root, false,
         lazy +
             "Error parsing mesh: expected integer... but found: x\nError parsing mesh: unexpected }\n"
             "Warning parsing mesh: unknown Mesh sub-construct: Bone\nError parsing mesh: expected }... but found: \n" +
             parsing("Indices Chunk Mesh(name=a)    Name Mesh(name=})    Bone Mesh(name=})    ")},
        {"index out of range", "Mesh { Name { tri } Chunk { " + vertices + "Indices { 3 70000 1 -1 } } } " + root, true,
         lazy + outOfRange + "  -index value: 70000\n  -curMesh name: tri\n" + outOfRange +
             "  -index value: -1\n  -curMesh name: tri\n"
             "Bad: a chunk of mesh tri has an index beyond its vertices and is not drawn: art\\m.mbm\n"},
        {"vertex type", "Mesh { Name { tri } Chunk { Vertices { PNT3 1 0 0 0 } } }\n", false,
         lazy + "Unsupported vertex type in Mesh.Chunk.Vertices: PNT3\n"},
        {"normals",
         "Mesh { Name { tri } Chunk { Vertices { PNT2 2 0 0 0 0.05 -0.03 0 0 0 0 0 0 0.06 0.06 0 0 0 } "
         "Indices { 3 0 1 0 } } } " +
             root,
         true, lazy + "loading mbm mesh problem found: Mesh art\\m.mbm has a normal of magnitude near 0\n"},
        {"scale", triangle + "Bone { Name { b } ConnectRot { 1 0 0 0 1.01 0 0 0 1 } }\n", true,
         lazy + "Warning: Bone \"b\" in model \"art\\m.mbm\" has a scale component in its rotation.\n"},
        {"texture stage",
         "Mesh { Name { tri } Chunk { TextureC { 2 tri.png } " + vertices + "Indices { 3 0 1 2 } } } " + root, true,
         lazy + "Bad texture stage in TextureC for texture art\\tri.png: 2\n"},
        {"nameless mesh", "Mesh { } " + root, false,
         lazy + "Error: A Mesh has no name (and hence no way for a bone to use it) in model: art\\m.mbm\n" + inMeshes},
        {"circle", "Bone { Name { a } Child { b } } Bone { Name { b } Child { a } }\n", false,
         lazy + "Bone(b) asked for child \"a\", but that child is above it.\n" + inBones},
        {"zero byte", std::string("Bone { Na\0me { } }\n", 18), true,
         lazy + "Warning parsing mesh: unknown Bone sub-construct: Name\n"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Load(model, row.text), row.loads) << row.name;
        // Rows of messages that other rooms' texts follow, or thousands more, give only their start.
        const bool whole = row.loads || row.errors.ends_with(stack);
        const std::string errors = Errors();
        EXPECT_EQ(whole ? errors : errors.substr(0, row.errors.size()), row.errors) << row.name;
        model.Release();
        G::EmptyModelRegistry();
        EXPECT_EQ(G::LiveBones(), 0U) << row.name;
    }
}

TEST_F(Models, LeaveTheStageOfATextureThatDoesNotLoadEmpty) {
    for (const std::string name : {"..\\a.png", "none.png"}) {
        ASSERT_TRUE(Load(model, "Mesh { Name { tri } Chunk { TextureB { 0 tri.png } TextureB { 0 " + name + " } " +
                                    vertices + "Indices { 3 0 1 2 } } } " + root));
        EXPECT_TRUE(Errors().ends_with("\nNote: mesh(art\\m.mbm) failed to load texture: art\\" + name + "\n"));
        EXPECT_FALSE(model.TopBone()->mesh.Mesh().chunks[0].texture0.IsLoaded()) << name;
        model.Release();
        G::EmptyModelRegistry();
    }
}

// Whatever becomes of it, the model loads and is drawn, or the log says why not; each construct around a cut says so.
TEST_F(Models, SurviveDamagedTexts) {
    const std::string sound =
        triangle.substr(0, triangle.size() - 2) +
        "Chunk { TextureC { 1 tri.png 0 } Vertices { PNC 1 1 2 3 0 0 1 1 0 1 1 } Indices { 1 0 } } } "
        "Bone { Name { root } Mesh { tri } Child { low } } "
        "Bone { Name { low } ConnectPos { 1 2 3 } ConnectRot { 1 0 0 0 1 0 0 0 1 } }";
    const auto load = [&](std::string_view text) {
        const bool loaded = Load(model, std::string(text));
        EXPECT_EQ(loaded, Errors().find("Failed to load mesh: ") == std::string::npos) << text;
        if (DXG::BeginFrame(0, false, true)) model.Draw(true);
        DXG::EndFrame0();
        model.Release();
        G::EmptyModelRegistry();
        return loaded;
    };
    support::CutAndFlip({"model text", sound, load, [](std::size_t) { return false; }, 10, true});
    for (std::size_t at = 0, end = 0; end < sound.size(); at = end + 1) {
        end = std::min(sound.find(' ', at), sound.size());
        for (const char* const word : {"{ ", "}", "x"})
            (void)load(sound.substr(0, at) + word + sound.substr(end));
    }
    EXPECT_EQ(G::LiveBones(), 0U);
}

TEST(MeshTokenizer, ReadsTheLeadingPartOfNumbers) {
    const support::TestFolder folder;
    const struct {
        const char* word;
        double asFloat;
        int asInteger;
        bool isFloat, isInteger;
    } rows[] = {
        {"-12", -12, -12, true, true},
        {"1.5e-1", 0.15, 1, true, false},
        {".5", 0.5, 0, true, false},
        {"1-2", 1, 1, true, true},
        {"-", 0, 0, true, true},
        {"+3", 3, 3, false, false},
        {"2E1", 20, 2, false, false},
        {"7x", 7, 7, false, false},
        {"1e99", HUGE_VAL, 1, true, false},
        {"99999999999", 99999999999.0, 2147483647, true, true},
        {"1e-999", 0, 1, true, false},
        {"", 0, 0, true, true},
    };
    for (const auto& row : rows) {
        CappedMessages messages(100);
        G::MeshTokenizer forFloat(row.word, messages);
        G::MeshTokenizer forInteger(row.word, messages);
        EXPECT_EQ(forFloat.ReadFloat(), static_cast<float>(row.asFloat)) << row.word;
        EXPECT_EQ(forInteger.ReadInteger(), row.asInteger) << row.word;
        EXPECT_EQ(forFloat.HasError(), !row.isFloat) << row.word;
        EXPECT_EQ(forInteger.HasError(), !row.isInteger) << row.word;
    }
}

// Decimals of every length, with the point at every place: most are taken in one pass, the longest are not.
TEST(MeshTokenizer, RoundsAsTheLibraryDoes) {
    const support::TestFolder folder;
    std::mt19937_64 random(11);
    std::string text;
    for (std::size_t digits = 1; digits <= 20; ++digits)
        for (std::size_t point = 0; point <= digits; ++point) {
            std::string word;
            while (word.size() < digits)
                word += static_cast<char>('0' + random() % 10);
            text += (random() % 2 ? "-" : "") + word.insert(point, ".") + (random() % 2 ? " \n" : " ");
        }
    CappedMessages messages(100);
    G::MeshTokenizer tokens(text, messages);
    std::istringstream words(text);
    for (std::string word; words >> word;)
        EXPECT_EQ(tokens.ReadFloat(), static_cast<float>(std::strtod(word.c_str(), nullptr))) << word;
    EXPECT_TRUE(tokens.NextToken().empty());
    EXPECT_FALSE(tokens.HasError());
}

}  // namespace
