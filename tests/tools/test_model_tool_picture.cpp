// The pictures of kelvane-model, drawn by the OpenGL device.

#include <gtest/gtest.h>

#include <cstdlib>

#include "ModelTool.h"
#include "platform/ImageCodec.h"
#include "support/TestFolder.h"

namespace {

platform::ImagePixels Draw(const std::string& options) {
    platform::ImagePixels image;
    const std::string data = std::string(std::getenv("KELVANE_SOURCE_DIR")) + "/data";
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

}  // namespace
