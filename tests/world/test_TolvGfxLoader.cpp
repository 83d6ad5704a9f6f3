#include "world/TolvGfxLoader.h"

#include "WorldFixture.h"
#include "demo/formats/SpriteWriter.h"

namespace {

using platform::ScriptedTexture;

demo::IndexedImage Flat(std::uint8_t index, unsigned width = 4) {
    return {width, 4, std::vector<std::uint8_t>(std::size_t{width} * 4, index)};
}

TEST_F(World, WallNumbersKeepTheirPlaces) {
    folder.Write("dream/wall_1.ts2", demo::WriteTs2({{0, Flat(5)}, {2, Flat(7)}}));
    std::vector<SpriteArchive> archives;
    WallSprites walls = GatherWallSprites("dream\\", archives);
    ASSERT_EQ(walls.size(), 7U + 48 + 3 + 6 * 18);
    EXPECT_TRUE(walls[55] && walls[55]->rows[0][0] == 5 && !walls[56] && walls[57]->rows[0][0] == 7);
    EXPECT_EQ(std::count(walls.begin(), walls.end(), nullptr), static_cast<long>(walls.size()) - 2);

    // A junction archive with fewer slots than the junctions ask for.
    folder.Write("junction.ts2", demo::WriteTs2({{4, Flat(4)}, {6, Flat(6)}}));
    walls = GatherWallSprites("dream\\", archives);
    const int junctions[6] = {-1, 6, -1, 4, -1, 6};
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(walls[1 + i] ? walls[1 + i]->rows[0][0] : -1, junctions[i]) << i;
}

TEST_F(World, TexelsAreWrittenInTheTexturesOwnFormat) {
    currentPalette[5] = {0, 255, 0, 0};
    SpriteArchive floors;
    ASSERT_TRUE(LoadTs2Bytes(floors, demo::WriteTs2({{1, Flat(5)}, {2, Flat(5, 1)}}), "test", 0));
    TextureList list;
    using enum platform::PixelFormat;
    for (const auto& [format, texel] : {std::pair{A8R8G8B8, 0xFFFF0000U}, {A4R4G4B4, 0xFF00U}}) {
        graphics.script.textureFormatGiven = format;
        ASSERT_TRUE(ConvertFloorTiles(floors, list, 64, 64));
        ASSERT_EQ(list.size(), 3U);
        EXPECT_TRUE(!list[0].IsLoaded() && list[1].IsLoaded() && !list[2].IsLoaded());
        auto& texture = dynamic_cast<ScriptedTexture&>(*list[1].Record()->api.object);
        for (unsigned i = 0; i < 64 * 64; i += 63)
            EXPECT_EQ(texture.TexelAt(0, i % 64, i / 64), texel);
        EXPECT_FALSE(list[1].Record()->api.wrapU || list[1].Record()->api.wrapV);
    }
    graphics.script.texturesLock = false;
    EXPECT_FALSE(ConvertWallSprites({floors.images[1].get()}, list));
    graphics.script.createTexture = {platform::DeviceResult::OutOfVideoMemory};
    EXPECT_FALSE(ConvertFloorTiles(floors, list) || !list.empty());
    for (const char* part : {"Lock on newly created texture failed while", "Texture create failed while doing"})
        EXPECT_NE(support::ErrorLogText().find(part + std::string(" floor tile conversion.\n")), std::string::npos);
    graphics.script = platform::DeviceScript();
}

}  // namespace
