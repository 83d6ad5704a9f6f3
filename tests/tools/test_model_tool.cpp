// The program kelvane-model: exit codes, problems with their lines, OBJ files in and out.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "ModelTool.h"
#include "platform/ImageCodec.h"
#include "support/TestFolder.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class ModelTool : public testing::Test {
  protected:
    void WritePicture(const std::string& name, std::uint32_t width, std::uint32_t height) const {
        const std::vector<std::uint32_t> argb(std::size_t{width} * height, 0xFF8040C0U);
        ASSERT_TRUE(platform::WritePng(name, argb.data(), width, height));
    }
    [[nodiscard]] std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
            names.insert(entry.path().filename().string());
        return names;
    }
    support::TestFolder folder;
};

// A triangle on one bone; the chunk's texture comes first. Each construct is on a line of its own.
std::string ModelText(const std::string& chunk, const std::string& bones = "Bone { Name { root } Mesh { tri } }\n") {
    return "RandomID { 0.5 }\nMesh {\n Name { tri }\n Chunk {\n" + chunk + " }\n}\n" + bones;
}
const std::string goodChunk =
    "  TextureB { 0 t.png }\n"
    "  Vertices { PNT2 3\n   0 0 0 0 0 1 0 0\n   1 0 0 0 0 1 1 0\n   0 1 0 0 0 1 0 1\n  }\n"
    "  Indices { 3 0 1 2 }\n";

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

TEST_F(ModelTool, ExitCodesTellUsageFromProblems) {
    WritePicture("t.png", 4, 4);
    folder.Write("good.mbm", ModelText(goodChunk));
    folder.Write("tri.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    struct Row {
        const char* arguments;
        int code;
        const char* says;
    };
    const Row rows[] = {
        {"--help", 0, "usage: kelvane-model COMMAND"},
        {"check -h", 0, "usage: kelvane-model COMMAND"},
        {"", 2, "a command is missing"},
        {"paint x", 2, "unknown command paint"},
        {"check", 2, "a model file is missing"},
        {"check good.mbm --up", 2, "unknown option --up"},
        {"from-obj tri.obj", 2, "OUT.mbm is missing"},
        {"from-obj tri.obj a.mbm b.mbm", 2, "too many files: b.mbm"},
        {"from-obj tri.obj a.obj", 2, "OUT.mbm has to end in .mbm"},
        {"from-obj tri.obj a.mbm --up x", 2, "--up is y or z"},
        {"from-obj tri.obj a.mbm --scale", 2, "--scale needs a value"},
        {"from-obj tri.obj a.mbm --scale=1 --fit=2", 2, "exclude each other"},
        {"from-obj tri.obj a.mbm --scale nan", 2, "--scale needs a number"},
        {"picture good.mbm a.png --size 0x9", 2, "--size needs WIDTHxHEIGHT"},
        {"picture good.mbm a.png --background 12345", 2, "--background needs RRGGBB"},
        {"check absent.mbm", 1, "absent.mbm: Failed to open file: absent.mbm\n"},
        {"info tri.obj", 1, "Unrecognized file extension."},
        {"to-obj absent.mbm a.obj", 1, "Failed to open file: absent.mbm"},
        {"from-obj tri.obj nowhere/a.mbm", 1, "cannot be written"},
        {"check -- good.mbm", 0, "good.mbm: ok\n"},
    };
    const std::set<std::string> before = Names();
    for (const Row& row : rows) {
        const ToolRun run = RunTool(row.arguments);
        EXPECT_EQ(run.code, row.code) << row.arguments << "\n" << run.output;
        EXPECT_THAT(run.output, HasSubstr(row.says)) << row.arguments;
        const bool isUsage = row.code == 2;
        EXPECT_TRUE(!isUsage || std::count(run.output.begin(), run.output.end(), '\n') == 1) << run.output;
    }
    EXPECT_EQ(RunTool("--help >/dev/full").code, 1) << "output that is lost";
    EXPECT_EQ(Names(), before) << "logs, caches or half a file were left behind";
}

TEST_F(ModelTool, CheckPrintsEachProblemAtItsLine) {
    WritePicture("t.png", 4, 4);
    const std::string good = ModelText(goodChunk);
    struct Row {
        const char* name;
        std::string text;
        const char* says;
    };
    const Row rows[] = {
        {"unknown construct", Replaced(good, "  Indices", "  Color { 1 }\n  Indices"),
         "m.mbm:11: Warning parsing mesh: unknown Mesh.Chunk sub-construct: Color\n"},
        {"word for a number", Replaced(good, "1 0 0 0 0 1 1 0", "1 0 0 x 0 1 1 0"),
         "m.mbm:8: Error parsing mesh: expected float... but found: x\n"},
        {"index out of range", Replaced(good, "3 0 1 2", "3 0 1\n 70000"),
         "m.mbm:12: Bad.. loading index list from mesh.. an index is out of range (must be 0 to 65535).\n"
         "  -index value: 70000\n  -curMesh name: tri\n"},
        {"no normal", Replaced(good, "0 1 0 0 0 1 0 1", "0 1 0 0 0 0 0 1"),
         "m.mbm:9: loading mbm mesh problem found: Mesh m.mbm has a normal of magnitude near 0\n"},
        {"texture is missing", Replaced(good, "t.png", "u.png"),
         "m.mbm:5: Note: mesh(m.mbm) failed to load texture: u.png\n"},
        {"no RandomID", good.substr(good.find("Mesh")), "m.mbm:1: Warning: .mbm file (m.mbm), first construct is not"},
        {"not closed", good.substr(0, good.rfind('}')), "m.mbm:14: Error parsing mesh: expected }... but found: \n"},
        {"child is missing", ModelText(goodChunk, "Bone {\n Name { root }\n Child { arm }\n}\n"),
         "m.mbm:16: Bone(root) asked for child \"arm\" that doesn't exist.\n"},
        {"two parents", ModelText(goodChunk, "Bone { Child { b } }\nBone { Child { b } }\nBone { Name { b } }\n"),
         "m.mbm:15: Bone() asked for child \"b\", but that child already has a parent()\n"},
        {"two tops", ModelText(goodChunk, "Bone { Name { a } }\nBone {\n Name { tri }\n}\n"),
         "m.mbm:16: Error arranging bones: more than one bone with no parent was found.\n"},
        {"mesh is missing", ModelText(goodChunk, "Bone {\n Name { root }\n Mesh { box }\n}\n"),
         "m.mbm:16: Error attaching meshes to bones: Bone(root) asked for Mesh(box) that couldn't be found.\n"},
        {"no bone", ModelText(goodChunk, ""), "m.mbm: Failed to load mesh: m.mbm\n  -No bones found...\n"},
        {"index beyond the vertices", Replaced(good, "3 0 1 2", "3 0 1 3"), "has an index beyond its vertices"},
        {"no texture", Replaced(good, "  TextureB { 0 t.png }\n", ""),
         "m.mbm: Warning: Mesh being drawn without an explicitely set texture.\n"},
        {"no indices", Replaced(good, "  Indices { 3 0 1 2 }\n", ""), "chunk 0 of mesh tri has no vertices or no"},
        {"part of a triangle", Replaced(good, "3 0 1 2", "4 0 1 2 0"), "has 4 indices: not three for each triangle"},
    };
    for (const Row& row : rows) {
        folder.Write("m.mbm", row.text);
        const ToolRun run = RunTool("check m.mbm");
        EXPECT_EQ(run.code, 1) << row.name;
        EXPECT_THAT(run.output, HasSubstr(row.says)) << row.name;
        EXPECT_THAT(run.output, Not(HasSubstr("call stack"))) << row.name;
    }
    folder.Write("sub/m.mbm", Replaced(good, "t.png", "..\\t.png"));
    folder.Write("m.mbm", good);
    const ToolRun run = RunTool("check m.mbm sub/m.mbm m.mbm");
    EXPECT_EQ(run.code, 1);
    EXPECT_THAT(run.output, testing::StartsWith("m.mbm: ok\n"));
    EXPECT_THAT(run.output, HasSubstr("sub/m.mbm:5: Note: mesh(sub/m.mbm) failed to load texture: sub/..\\t.png\n"));
    EXPECT_THAT(run.output, testing::EndsWith("m.mbm: ok\n")) << "what one file does is forgotten for the next";
}

TEST_F(ModelTool, CheckShowsTheFirstHundredProblems) {
    std::string vertices;
    for (int i = 0; i < 150; ++i)
        vertices += "   0 0 " + std::to_string(i) + " 0 0 0 0 0\n";
    folder.Write("m.mbm", ModelText("  TextureB { 0 t.png }\n  Vertices { PNT2 150\n" + vertices +
                                    "  }\n  Indices { 3 0 1 2 }\n"));
    WritePicture("t.png", 4, 4);
    const ToolRun run = RunTool("check m.mbm");
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 101) << run.output;
    EXPECT_THAT(run.output, HasSubstr("\nm.mbm:106: loading mbm mesh problem found"));
    EXPECT_THAT(run.output, testing::EndsWith("\nm.mbm: and 50 more problems\n"));
}

TEST_F(ModelTool, InfoTellsWhatIsInside) {
    WritePicture("t.png", 8, 4);
    // Vertices 0 and 3 are the same, and both bones carry the one mesh.
    std::string chunk = Replaced(goodChunk, "PNT2 3\n", "PNT2 4\n");
    chunk = Replaced(Replaced(chunk, "0 1 0 1\n  }", "0 1 0 1\n   0 0 0 0 0 1 0 0\n  }"), "3 0 1 2", "6 0 1 2 3 1 2");
    folder.Write("sub/m.mbm", ModelText(chunk,
                                        "Bone { Name { root } Mesh { tri } Child { arm } }\n"
                                        "Bone { Name { arm } Mesh { tri } ConnectPos { 0 0 1.5 } }\n"));
    folder.Write("sub/t.png", folder.Read("t.png"));
    EXPECT_EQ(RunTool("info sub/m.mbm").output,
              "sub/m.mbm\n"
              "  1 mesh, 1 chunk, 3 vertices, 2 triangles after welding\n"
              "  from 0 0 0 to 1 1 1.5\n"
              "  RandomID 0.5\n"
              "  1 texture\n    sub/t.png, 8 x 4\n"
              "  2 bones\n"
              "    root, mesh tri: 1 chunk, 3 vertices, 2 triangles\n"
              "      arm at 0 0 1.5, mesh tri: 1 chunk, 3 vertices, 2 triangles\n");
}

TEST_F(ModelTool, ObjBecomesAModelTheRightWayAround) {
    WritePicture("wood pic.png", 4, 2);
    WritePicture("plain.png", 3, 5);
    folder.Write("things.mtl",
                 "newmtl wood\nmap_Kd wood pic.png\nnewmtl odd\nmap_Kd plain.png\nnewmtl red\nKd 1 0 0\n"
                 "newmtl gone\nKd 0 0 1\nmap_Kd gone.png\n");
    // A square facing +z in OBJ's axes, its normals left out, and triangles of the other materials.
    folder.Write("in.obj",
                 "mtllib things.mtl\nv 0 0 0\nv 2 0 0\nv 2 4 0\nv 0 4 0\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
                 "usemtl wood\nf 1/1 2/2 3/3 4/4\nusemtl red\nf -4 -3 -2\nusemtl gone\nf 1 2 3\nusemtl odd\nf 1 2 3\n"
                 "l 1 2 3\np 1\n");
    const ToolRun run = RunTool("from-obj in.obj 'my model.mbm' --scale 0.5");
    ASSERT_EQ(run.code, 0) << run.output;
    EXPECT_THAT(run.output, HasSubstr("my model.mbm: meshes 1, chunks 4, vertices 13, triangles 5\n"));
    EXPECT_THAT(run.output, HasSubstr("the picture wood pic.png is copied to my_model_wood_pic.png\n"));
    EXPECT_THAT(run.output, HasSubstr("3 x 5, is scaled to powers of two in my_model_plain.png\n"));
    EXPECT_THAT(run.output, HasSubstr("the picture gone.png of material gone cannot be read; its colour is taken\n"));
    EXPECT_THAT(run.output, HasSubstr("items.txt cannot name my model.mbm"));
    const std::string text = folder.Read("my model.mbm");
    // Up is z, the front is +y, the texture hangs from its top, and the faces are turned to clockwise.
    EXPECT_THAT(text, HasSubstr("TextureB { 0 my_model_wood_pic.png }\n  Vertices { PNT2 4\n"));
    EXPECT_THAT(text, HasSubstr("\n   1 0 2 0 1 0 1 0 \n")) << text;
    EXPECT_THAT(text, HasSubstr("TextureB { 0 my_model_colours.png 0 }"));
    EXPECT_THAT(text, HasSubstr("Name { my_model }"));
    EXPECT_EQ(RunTool("check 'my model.mbm'").output, "my model.mbm: ok\n");

    platform::ImagePixels colours;
    ASSERT_EQ(platform::DecodeImageFile("my_model_colours.png", colours), platform::ImageStatus::Ok);
    EXPECT_EQ(colours.argb.front(), 0xFFFF0000U);
    EXPECT_EQ(colours.argb.at(7), 0xFF0000FFU) << "the second colour's square";

    const std::string identifier = text.substr(0, text.find('\n'));
    RunTool("from-obj in.obj 'my model.mbm' --scale 0.25");
    EXPECT_THAT(folder.Read("my model.mbm"), Not(testing::StartsWith(identifier))) << "a cache must not outlive it";
    EXPECT_EQ(RunTool("from-obj in.obj fit.mbm --fit 3 --up z").code, 1) << "flat";
    RunTool("from-obj in.obj fit.mbm --fit 3");
    EXPECT_THAT(RunTool("info fit.mbm").output, HasSubstr("\n  from -0.75 0 0 to 0.75 0 3\n"));
}

TEST_F(ModelTool, PicturesStayWhereTheModelReachesThem) {
    folder.Write("out/skins/a.txt", "");
    WritePicture("out/skins/a.png", 4, 4);
    WritePicture("b.png", 4, 4);
    std::filesystem::create_symlink(folder.Path() + "/b.png", folder.Path() + "/out/skins/b.png");
    folder.Write("in.mtl", "newmtl a\nmap_Kd out\\skins\\A.PNG\nnewmtl b\nmap_Kd out/skins/b.png\n");
    const std::string obj = "mtllib in.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl a\nf 1 2 3\nusemtl b\nf 1 2 3\n";
    folder.Write("in.obj", obj);
    EXPECT_EQ(RunTool("from-obj in.obj out/m.mbm").code, 0);
    EXPECT_THAT(folder.Read("out/m.mbm"), HasSubstr("{ 0 skins\\a.png }"));
    EXPECT_THAT(folder.Read("out/m.mbm"), HasSubstr("{ 0 m_b.png }")) << "the client follows no links";
    EXPECT_EQ(RunTool("check out/m.mbm").output, "out/m.mbm: ok\n");

    const std::string before = folder.Read("out/m.mbm");
    EXPECT_EQ(RunTool("from-obj in.obj out/m.mbm --scale 1e38").code, 0);
    EXPECT_NE(folder.Read("out/m.mbm"), before);
    folder.Write("in.obj", obj + "v 1e30 0 0\nusemtl lost\nf 1 2 4\n");
    const ToolRun run = RunTool("from-obj in.obj out/m.mbm --scale 1e38");
    EXPECT_EQ(run.code, 1);
    EXPECT_THAT(run.output, HasSubstr("the model is too large for its scale"));
    EXPECT_THAT(folder.Read("out/m.mbm"), testing::StartsWith("RandomID")) << "the old model stays";
    EXPECT_THAT(RunTool("from-obj in.obj out/m.mbm").output, HasSubstr("'lost'"));
}

TEST_F(ModelTool, NormalsAreTakenOrSmoothed) {
    const std::string roof = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 0 -1\n";
    folder.Write("in.obj", roof + "f 1 2 3\nf 1 4 2\n");
    ASSERT_EQ(RunTool("from-obj in.obj m.mbm").code, 0);
    // The edge from 1 to 2 lies between a face towards +z and one towards -y of the OBJ.
    EXPECT_THAT(folder.Read("m.mbm"), HasSubstr("   0 0 0 0 0.7071")) << folder.Read("m.mbm");
    EXPECT_THAT(folder.Read("m.mbm"), HasSubstr("   1 0 1 0 1 0 ")) << "a corner of one face alone";
    folder.Write("in.obj", roof + "vn 0 3 0\nvn 0 0 0\nf 1//1 2//1 3//2\n");
    ASSERT_EQ(RunTool("from-obj in.obj m.mbm").code, 0);
    EXPECT_THAT(folder.Read("m.mbm"), HasSubstr("   0 0 0 0 0 1 ")) << "of length 1";
    EXPECT_THAT(folder.Read("m.mbm"), HasSubstr("   1 0 1 0 1 0 ")) << "instead of none";
}

TEST_F(ModelTool, LargeObjsAreSplitSoThatTheyCanBeCached) {
    constexpr int side = 106;  // 2 * 105 * 105 triangles, more than the 21845 of one index buffer
    std::string obj;
    for (int i = 0; i < side * side; ++i)
        obj += "v " + std::to_string(i % side) + " 0 " + std::to_string(i / side) + "\n";
    for (int i = 0; i < side * (side - 1); ++i)
        if (i % side != side - 1)
            obj += "f " + std::to_string(i + 1) + " " + std::to_string(i + 2) + " " + std::to_string(i + side + 2) +
                   " " + std::to_string(i + side + 1) + "\n";
    folder.Write("grid.obj", obj);
    const ToolRun run = RunTool("from-obj grid.obj grid.mbm");
    EXPECT_EQ(run.code, 0) << run.output;
    EXPECT_THAT(run.output, HasSubstr("grid.mbm: meshes 2, chunks 2, vertices "));
    EXPECT_THAT(run.output, HasSubstr("triangles 22050\n"));
    EXPECT_EQ(RunTool("check grid.mbm").output, "grid.mbm: ok\n") << "a cache that cannot be written is a problem";
    // Materials of 8000 triangles, of which two fit into the cache of one mesh.
    std::string pieces = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
    for (int i = 0; i < 5 * 8000; ++i)
        pieces += (i % 8000 == 0 ? "usemtl m" + std::to_string(i / 8000) + "\n" : "") + "f 1 2 3\n";
    folder.Write("pieces.obj", "mtllib pieces.mtl\n" + pieces);
    folder.Write("pieces.mtl", "newmtl m0\nnewmtl m1\nnewmtl m2\nnewmtl m3\nnewmtl m4\n");
    EXPECT_THAT(RunTool("from-obj pieces.obj pieces.mbm").output, HasSubstr(": meshes 3, chunks 5, vertices 15, "));
    EXPECT_EQ(RunTool("check pieces.mbm").output, "pieces.mbm: ok\n");

    const std::string info = RunTool("info grid.mbm").output;
    EXPECT_THAT(info, HasSubstr("  2 meshes, 2 chunks, "));
    EXPECT_THAT(info, HasSubstr("21845 triangles\n      part2, mesh grid_2: 1 chunk, "));
}

TEST_F(ModelTool, ModelsComeBackAsObjAtRest) {
    WritePicture("t.png", 4, 4);
    folder.Write("in.obj",
                 "mtllib in.mtl\nusemtl t\nv 0 0 0\nv 1 0 0\nv 1 1 0.5\nv 0 1 0\nvn 0 0 1\nvt 0 0\nvt 0.25 1\n"
                 "f 1/1/1 2/2/1 3/1/1\nf 1/1/1 3/1/1 4/2/1\n");
    folder.Write("in.mtl", "newmtl t\nmap_Kd t.png\n");
    for (const std::string up : {"y", "z"}) {
        ASSERT_EQ(RunTool("from-obj in.obj one.mbm --up " + up).code, 0);
        EXPECT_EQ(RunTool("to-obj one.mbm back/../back.obj --up " + up).code, 0);
        ASSERT_EQ(RunTool("from-obj back.obj one2.mbm --up " + up).code, 0);
        std::string again = folder.Read("one2.mbm");
        for (std::size_t at = 0; (at = again.find("one2")) != std::string::npos;)
            again.erase(at + 3, 1);
        const std::string first = folder.Read("one.mbm");
        EXPECT_EQ(again.substr(again.find('\n')), first.substr(first.find('\n'))) << up;
    }
    // A child bone, a quarter turn about z and two up.
    folder.Write("m.mbm", ModelText(goodChunk,
                                    "Bone { Name { root } Child { arm } ConnectPos { 0 0 1 } }\n"
                                    "Bone { Name { arm } Mesh { tri } ConnectPos { 0 0 1 }\n"
                                    " ConnectRot { 0 1 0 -1 0 0 0 0 1 } }\n"));
    ASSERT_EQ(RunTool("to-obj m.mbm m.obj --up z").code, 0);
    const std::string obj = folder.Read("m.obj");
    EXPECT_THAT(obj, HasSubstr("g arm\nusemtl material1\nv 0 0 2\n"));
    EXPECT_THAT(obj, HasSubstr("\nv 0 -1 2\n")) << "(1, 0, 0) turned to (0, 1, 0) and mirrored";
    EXPECT_THAT(obj, HasSubstr("\nf 1/1/1 3/3/3 2/2/2\n"));
    const std::string painted =
        "  Vertices { PNC 3\n   0 0 0 0 0 1 1 0 0 1\n   1 0 0 0 0 1 0 1 0 1\n   0 1 0 0 0 1 0 0 1 1\n  }\n"
        "  Indices { 3 0 1 2 }\n";
    folder.Write("painted.mbm", ModelText(painted));
    EXPECT_EQ(RunTool("to-obj painted.mbm painted.obj").code, 0);
    EXPECT_THAT(folder.Read("painted.obj"), HasSubstr("\nv 1 0 0 0 1 0\nvn 0 1 0\n"));
    EXPECT_THAT(RunTool("from-obj painted.obj again.mbm").output,
                HasSubstr("the colours of the vertices are left out"));
    EXPECT_EQ(folder.Read("m.mtl"), "newmtl material1\nKd 1 1 1\nmap_Kd t.png\n");
}

TEST_F(ModelTool, BadObjsAreRefusedInOneLine) {
    const std::string three = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
    std::string large = three + "f";
    for (int i = 0; i < 1025; ++i)
        large += " 1";
    struct Row {
        const char* name;
        std::string text;
        const char* says;
    };
    const Row rows[] = {
        {"empty", "", "bad.obj has no faces"},
        {"beyond the vertices", three + "f 1 2 4\n", "bad.obj:4: a face names \"4\", which has not come before it"},
        {"beyond after a carriage return", "v 0 0 0\r\nv 1 0 0\r\nf 1 2 3 2 1\r\n", "bad.obj:3: a face names \"3\""},
        {"zero", three + "f 0 1 2\n", "a face names \"0\""},
        {"before the first", three + "f -1 -2 -4\n", "a face names \"-4\""},
        {"place beyond", three + "vt 0 0\nf 1/1 2/2 3/1\n", "bad.obj:5: a face names \"2/2\""},
        {"normal beyond", three + "f 1//1 2//1 3//1\n", "a face names \"1//1\""},
        {"larger than any number", three + "f 1 2 99999999999999999999\n", "a face names \"99999999999999999999\""},
        {"lowest number", three + "f 1 2 -9223372036854775808\n", "a face names \"-9223372036854775808\""},
        {"many corners", large, "a face has more than 1024 corners"},
        {"zero bytes", three + std::string(1, '\0') + "f 1 2 3\n", "this is no text"},
        {"infinite", "v 1e999 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", "bad.obj"},
        {"no triangle", three + "f 1 1 2\nf 1 2\n", "bad.obj has no faces"},
    };
    for (const Row& row : rows) {
        folder.Write("bad.obj", row.text);
        const ToolRun run = RunTool("from-obj bad.obj bad.mbm");
        EXPECT_EQ(run.code, 1) << row.name << ": " << run.output;
        EXPECT_THAT(run.output, HasSubstr(row.says)) << row.name;
        EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1) << row.name << ": " << run.output;
        EXPECT_FALSE(folder.Has("bad.mbm")) << row.name;
    }
    folder.Write("bad.obj", three + "t x 2000000000/2000000000/0\nmtllib /dev/zero\nf 1 2 3\n");
    const ToolRun run = RunTool("from-obj bad.obj bad.mbm");
    EXPECT_EQ(run.code, 0) << run.output;
    EXPECT_THAT(run.output, HasSubstr("the material file /dev/zero cannot be read"));
}

}  // namespace
