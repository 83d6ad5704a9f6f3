// The pictures of kelvane-model, drawn by the OpenGL device.

#include <gtest/gtest.h>

#include <cstdlib>

#include "ModelTool.h"
#include "platform/ImageCodec.h"
#include "support/TestFolder.h"

namespace {

const std::string data = std::string(std::getenv("KELVANE_SOURCE_DIR")) + "/data";

platform::ImagePixels Draw(const std::string& options) {
    platform::ImagePixels image;
    const ToolRun run = RunTool("picture m.mbm p.png --data " + data + " " + options);
    EXPECT_EQ(run.code, 0) << run.output;
    EXPECT_EQ(platform::DecodeImageFile("p.png", image), platform::ImageStatus::Ok);
    return image;
}

// A red square on the floor and a blue one below it, both seen from above only.
TEST(ModelPicture, ShowsOutsidesOnTransparentGround) {
    const support::TestFolder folder;
    folder.Write("m.mtl", "newmtl red\nKd 1 0 0\nnewmtl blue\nKd 0 0 1\n");
    const std::string head = "mtllib m.mtl\nv -1 0 -1\nv -1 0 1\nv 1 0 1\nv 1 0 -1\nusemtl red\n";
    folder.Write("up.obj", head + "f 1 2 3 4\nusemtl blue\nv -1 -1 -1\nv -1 -1 1\nv 1 -1 1\nf 5 6 7\n");
    ASSERT_EQ(RunTool("from-obj up.obj m.mbm").code, 0);
    for (const char* turn : {"", "--turn 130"}) {
        const platform::ImagePixels image = Draw(std::string("--size 60x40 ") + turn);
        ASSERT_EQ(image.argb.size(), 60U * 40U);
        const std::uint32_t middle = image.argb.at(16 * 60 + 30);
        EXPECT_EQ(middle >> 24, 0xFFU);
        EXPECT_GT(middle >> 16 & 0xFFU, 150U) << "red lies above";
        EXPECT_LT(middle & 0xFFU, 10U);
        EXPECT_EQ(image.argb.front() >> 24, 0U);
        EXPECT_EQ(image.argb.back() >> 24, 0U);
    }
    EXPECT_EQ(Draw("--background 204060").argb.front(), 0xFF204060U);

    // From below nothing is there: the same square turned over.
    folder.Write("down.obj", head + "f 4 3 2 1\n");
    ASSERT_EQ(RunTool("from-obj down.obj m.mbm").code, 0);
    for (const std::uint32_t pixel : Draw("--size 60x40").argb)
        ASSERT_EQ(pixel >> 24, 0U);
}

// A board that faces the camera. Its texture has red at the left and blue at the right, dark in the lower half.
TEST(ModelPicture, ShowsTexturesUprightAndUnmirrored) {
    const support::TestFolder folder;
    const std::uint32_t argb[16] = {0xFFFF0000U, 0xFFFF0000U, 0xFF0000FFU, 0xFF0000FFU, 0xFFFF0000U, 0xFFFF0000U,
                                    0xFF0000FFU, 0xFF0000FFU, 0xFF600000U, 0xFF600000U, 0xFF000060U, 0xFF000060U,
                                    0xFF600000U, 0xFF600000U, 0xFF000060U, 0xFF000060U};
    ASSERT_TRUE(platform::WritePng("t.png", argb, 4, 4));
    folder.Write("m.mtl", "newmtl t\nmap_Kd t.png\n");
    const std::string places = "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nusemtl t\nf 1/1 2/2 3/3 4/4\n";
    // In OBJ's axes the board looks along +z and +x, in those of a file with z up along -y and +x.
    folder.Write("y.obj", "mtllib m.mtl\nv -1 0 1\nv 1 0 -1\nv 1 2 -1\nv -1 2 1\n" + places);
    folder.Write("z.obj", "mtllib m.mtl\nv -1 -1 0\nv 1 1 0\nv 1 1 2\nv -1 -1 2\n" + places);
    for (const std::string up : {"y", "z"}) {
        ASSERT_EQ(RunTool("from-obj " + up + ".obj m.mbm --up " + up).code, 0);
        const platform::ImagePixels image = Draw("--size 64x64");
        const auto channel = [&](int x, int y, unsigned shift) {
            return static_cast<int>(image.argb.at(static_cast<std::size_t>(y * 64 + x)) >> shift & 0xFFU);
        };
        EXPECT_GT(channel(16, 22, 16), channel(16, 22, 0) + 60) << "the left is red; up " << up;
        EXPECT_GT(channel(48, 22, 0), channel(48, 22, 16) + 60) << "the right is blue; up " << up;
        EXPECT_GT(channel(16, 22, 16), channel(16, 42, 16) + 40) << "the top is bright; up " << up;
    }
    EXPECT_EQ(RunTool("picture m.mbm p.png --data .").code, 1);
    // Without a file, without the bone's mesh, and nothing but a point.
    folder.Write("sad.mbm", "Bone { Mesh { lost } }\n");
    folder.Write(
        "dot.mbm",
        "Mesh { Name { m } Chunk { Vertices { PNT2 1 0 0 0 0 0 1 0 0 } Indices { 3 0 0 0 } } } Bone { Mesh { m } }\n");
    for (const std::string name : {"absent", "sad", "dot"}) {
        const ToolRun run = RunTool("picture " + name + ".mbm q.png --data " + data);
        EXPECT_EQ(run.code, 1) << name;
        EXPECT_EQ(run.output.find("leaked"), std::string::npos) << run.output;
    }
    EXPECT_FALSE(folder.Has("q.png"));
}

}  // namespace
