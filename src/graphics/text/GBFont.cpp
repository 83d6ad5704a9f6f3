#include "graphics/text/GBFont.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/text/GlyphGrid.h"
#include "platform/FontRaster.h"

namespace G {
namespace {

const std::string defaultFace = "Ariel";
constexpr std::size_t longestFaceName = 31;
constexpr int smallestCell = 16;
constexpr int largestCell = 64;
constexpr float smallestSize = 2.0F;
constexpr float smoothFromSize = 32.0F;
constexpr unsigned filterPoint = 1;
constexpr unsigned filterAnisotropic = 3;

// The atlases of one life of the graphics foundation, from the first request to its shutdown.
struct AtlasList {
    std::vector<std::shared_ptr<FontAtlas>> atlases;
    bool requested = false;
};
AtlasList& Atlases() {
    static auto* list = new AtlasList;  // never destroyed: the foundation may go down as late as the process ends
    return *list;
}

void ReleaseAtlases() {
    AtlasList& list = Atlases();
    if (!list.requested) return;
    statLog.Write("Font textures generated: ");
    statLog.Write(static_cast<int>(list.atlases.size()));
    statLog.Write("\n\n");
    // Texts that outlive the foundation still hold their atlas; the texture must go with the device.
    for (const auto& atlas : list.atlases)
        atlas->texture.Release();
    list.atlases.clear();
    list.requested = false;
}

void NoteRequest() {
    if (!DXG::IsInitialized()) return;
    static bool hooked = false;  // for the whole process, as the foundation keeps its hooks
    if (!hooked) DXG::AddShutdownHook(&ReleaseAtlases);
    hooked = true;
    Atlases().requested = true;
}

// 16, 32 or 64: the power of two at or below one and a half times the size.
int CellSize(float size) {
    const int wanted = static_cast<int>(std::min(size, static_cast<float>(largestCell)) * 1.5F + 0.1F);
    int cell = smallestCell;
    while (cell < largestCell && cell * 2 <= wanted)
        cell *= 2;
    return cell;
}

int PixelHeight(float size, int cell) {
    return size >= static_cast<float>(smallestCell) ? cell : std::max(5, static_cast<int>(size));
}

std::shared_ptr<FontAtlas> MakeAtlas() {
    auto* atlas = new2<FontAtlas>({"G::FontAtlas", "G::FontAtlas", "GBFont", __LINE__});
    return {atlas, [](FontAtlas* object) { delete2(object, "GBFont", __LINE__); }};
}

bool CreateTexture(DXG::Texture& texture, int cell, float size) {
    const auto side = static_cast<unsigned>(16 * cell);
    if (!texture.Create(side, side, DXG::TextureType::ColourAlpha, 1, false)) {
        WriteReport(errorLog, "Font texture creation failed.\n  -call stack:\n", "", false);
        return false;
    }
    texture.SetWrap(false, false, true);
    texture.SetFilter(size >= smoothFromSize ? filterAnisotropic : filterPoint);
    return true;
}

bool DrawGrid(const std::string& faceName, int pixelHeight, int cell, bool centred, GlyphGrid& grid) {
    const auto face = platform::OpenFont(faceName, pixelHeight - 1);
    if (!face) {
        WriteReport(errorLog, "Failed to lead windows font \"" + faceName + "\".  -call stack:\n", "", false);
        return false;
    }
    try {
        grid = DrawGlyphGrid(*face, cell, centred);
    } catch (const std::bad_alloc&) {
        errorLog.Write("Grr... DIB failed to create in font setup.\n");
        return false;
    }
    return true;
}

// White texels with the coverage as alpha, 8 or 4 bits per channel.
template <typename Texel, typename TexelOf>
void WriteTexels(const DXG::TextureLock& lock, const GlyphGrid& grid, TexelOf texelOf) {
    const std::size_t side = 16 * static_cast<std::size_t>(grid.cell);
    std::vector<Texel> row(side);
    for (std::size_t y = 0; y < side; ++y) {
        const auto coverage = grid.coverage.begin() + static_cast<std::ptrdiff_t>(y * side);
        std::transform(coverage, coverage + static_cast<std::ptrdiff_t>(side), row.begin(), texelOf);
        std::memcpy(lock.data[0] + y * lock.rowPitch[0], row.data(), side * sizeof(Texel));
    }
}

bool Upload(const DXG::Texture& texture, const GlyphGrid& grid) {
    const DXG::TextureLock lock = texture.Lock(false);
    if (!lock) {
        errorLog.Write("Failed to lock font texture.\n");
        return false;
    }
    if (lock.bitsPerTexel == 32) {
        WriteTexels<std::uint32_t>(lock, grid, [](std::uint8_t coverage) -> std::uint32_t {
            return 0x00FFFFFFU | (static_cast<std::uint32_t>(coverage) << 24U);
        });
        return true;
    }
    if (lock.bitsPerTexel == 16) {
        WriteTexels<std::uint16_t>(lock, grid, [](std::uint8_t coverage) {
            return static_cast<std::uint16_t>(0x0FFFU | ((coverage >> 4U) << 12U));
        });
        return true;
    }
    errorLog.Write("Texture not either 16 or 32 bpp... failing font setup.\n");
    return false;
}

std::shared_ptr<FontAtlas> BuildAtlas(const std::string& faceName, float size, int cell, bool centred) {
    std::shared_ptr<FontAtlas> atlas = MakeAtlas();
    atlas->faceName = faceName;
    atlas->pixelHeight = PixelHeight(size, cell);
    atlas->centred = centred;
    GlyphGrid grid;
    if (!CreateTexture(atlas->texture, cell, size) || !DrawGrid(faceName, atlas->pixelHeight, cell, centred, grid) ||
        !Upload(atlas->texture, grid))
        return nullptr;
    atlas->widths = grid.widths;
    return atlas;
}

}  // namespace

std::shared_ptr<const FontAtlas> GetFont(const std::string& faceName, float size, bool centred) {
    NoteRequest();
    if (!(size >= smallestSize)) {
        WriteReport(errorLog, "Requested font size too small.  Must be at least 2.\n  call stack:\n", "", false);
        return nullptr;
    }
    if (faceName.size() > longestFaceName) {
        WriteReport(errorLog, "Font name too long.  Can be 31 chars max.\n  -call stack:\n", "", false);
        return nullptr;
    }
    const std::string& face = faceName.empty() ? defaultFace : faceName;
    const int cell = CellSize(size);
    const int pixelHeight = PixelHeight(size, cell);
    AtlasList& list = Atlases();
    for (const auto& atlas : list.atlases)
        if (atlas->pixelHeight == pixelHeight && atlas->faceName == face && atlas->centred == centred) return atlas;

    std::shared_ptr<FontAtlas> atlas = BuildAtlas(face, size, cell, centred);
    if (atlas) list.atlases.push_back(atlas);
    return atlas;
}

}  // namespace G
