#include "world/TolvGfxLoader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>

#include "diag/CProfiler.h"
#include "diag/LogFile.h"
#include "world/FloorRenderer.h"
#include "world/WallRenderer.h"

namespace {

// Four bits per channel, each 8-bit level times 0.0625 and truncated.
std::uint16_t As16Bits(std::uint32_t argb) {
    return static_cast<std::uint16_t>((argb >> 28 & 0xFU) << 12 | (argb >> 20 & 0xFU) << 8 | (argb >> 12 & 0xFU) << 4 |
                                      (argb >> 4 & 0xFU));
}

void WriteTexels(const DXG::TextureLock& lock, const std::vector<std::uint32_t>& texels, unsigned width,
                 unsigned height) {
    for (unsigned y = 0; y < height; ++y) {
        unsigned char* row = lock.data[0] + y * lock.rowPitch[0];
        const std::uint32_t* source = texels.data() + std::size_t{y} * width;
        if (lock.bitsPerTexel == 32) {
            std::memcpy(row, source, std::size_t{width} * 4);
            continue;
        }
        for (unsigned x = 0; x < width; ++x) {
            const std::uint16_t texel = As16Bits(source[x]);
            std::memcpy(row + std::size_t{x} * 2, &texel, 2);
        }
    }
}

// Makes the texture of each entry for which `makeTexels` has any.
bool ConvertAll(std::size_t count, unsigned width, unsigned height, TextureList& out,
                const std::function<bool(std::size_t, std::vector<std::uint32_t>&)>& makeTexels) {
    const ProfileScope region("Generate textures from tolv graphics");
    out.clear();
    out.reserve(count);
    std::vector<std::uint32_t> texels;
    const auto fail = [&out](const char* message) {
        errorLog.Write(message);
        out.clear();
        return false;
    };
    for (std::size_t i = 0; i < count; ++i) {
        DXG::Texture& texture = out.emplace_back();
        if (!makeTexels(i, texels)) continue;
        if (!texture.Create(width, height, DXG::TextureType::ColourAlpha, 1, true))
            return fail("Texture create failed while doing floor tile conversion.\n");
        texture.SetWrap(false, false, true);
        DXG::TextureLock lock = texture.Lock(false);
        if (!lock) return fail("Lock on newly created texture failed while floor tile conversion.\n");
        WriteTexels(lock, texels, width, height);
    }
    return true;
}

// An archive of the dream's or, when it does not load, as many empty slots.
void LoadOrLeaveEmpty(SpriteArchive& archive, const std::string& path, std::size_t emptySlots) {
    if (LoadSpriteArchive(archive, path)) return;
    archive.images.clear();
    archive.images.resize(emptySlots);
}

void LoadFloors(const std::string& dreamFolder, FloorRenderer& renderer) {
    SpriteArchive floors;
    (void)LoadSpriteArchive(floors, dreamFolder + "floors.ts2");
    (void)LoadTs2(floors, dreamFolder + "floore.ts2", 500);
    if (floors.images.empty()) {
        errorLog.Write("No floors could be loaded for " + dreamFolder + "!\n");
        return;
    }
    // Floors beyond the renderer's slots could never be seen.
    if (floors.images.size() > FloorRenderer::slotCount) floors.images.resize(FloorRenderer::slotCount);
    TextureList textures;
    if (ConvertFloorTiles(floors, textures)) renderer.SetTextures(textures);
}

void LoadWalls(const std::string& dreamFolder, WallRenderer& renderer) {
    std::vector<SpriteArchive> archives;
    WallSprites walls = GatherWallSprites(dreamFolder, archives);
    if (walls.size() > WallRenderer::slotCount) walls.resize(WallRenderer::slotCount);
    TextureList textures;
    if (ConvertWallSprites(walls, textures)) renderer.SetTextures(textures);
}

}  // namespace

bool ConvertFloorTiles(const SpriteArchive& floors, TextureList& out, unsigned width, unsigned height) {
    SpriteConverter converter(width, height);
    return ConvertAll(floors.images.size(), width, height, out, [&](std::size_t i, std::vector<std::uint32_t>& texels) {
        return floors.images[i] && converter.Floor(*floors.images[i], texels);
    });
}

bool ConvertWallSprites(const WallSprites& walls, TextureList& out, unsigned width, unsigned height) {
    SpriteConverter converter(width, height);
    return ConvertAll(walls.size(), width, height, out, [&](std::size_t i, std::vector<std::uint32_t>& texels) {
        return walls[i] && converter.Wall(*walls[i], static_cast<int>(i), texels);
    });
}

WallSprites GatherWallSprites(const std::string& dreamFolder, std::vector<SpriteArchive>& archives) {
    archives.clear();
    archives.resize(9);
    WallSprites walls(1, nullptr);
    SpriteArchive& junctions = archives[8];
    LoadOrLeaveEmpty(junctions, "junction.ts2", 0);
    for (const std::size_t number : {9U, 6U, 8U, 4U, 9U, 6U})
        walls.push_back(number < junctions.images.size() ? junctions.images[number].get() : nullptr);
    for (std::size_t n = 0; n < 8; ++n) {
        const std::string suffix = n > 0 ? "_" + std::to_string(n) : std::string();
        LoadOrLeaveEmpty(archives[n], dreamFolder + "wall" + suffix + ".ts2", n == 0 ? 48 : 18);
        for (const auto& image : archives[n].images)
            walls.push_back(image.get());
    }
    return walls;
}

void LoadDreamGraphics(const std::string& dreamFolder) {
    if (FloorRenderer* floors = FloorRenderer::Current()) {
        // The map has been replaced as well.
        floors->MarkDirty();
        LoadFloors(dreamFolder, *floors);
    }
    if (WallRenderer* walls = WallRenderer::Current()) LoadWalls(dreamFolder, *walls);
}
