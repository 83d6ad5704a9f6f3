#include "platform/FontRaster.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_SIZES_H

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "platform/fonts/FontMatch.h"

namespace platform {
namespace {

// Unicode for 0x80 to 0x9F of Windows code page 1252 (Unicode Consortium, CP1252.TXT); 0 marks the five undefined
// codes. All other codes equal Latin-1.
constexpr std::array<std::uint16_t, 32> codePage1252High = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

FT_ULong UnicodeOf(unsigned char code) {
    if (code < 32 || code == 127) return 0;
    return code >= 0x80 && code < 0xA0 ? codePage1252High[code - 0x80U] : code;
}

// The FreeType library; every face keeps it alive.
struct Library {
    FT_Library handle = nullptr;
    Library() {
        if (FT_Init_FreeType(&handle) != 0) handle = nullptr;
    }
    ~Library() {
        if (handle) FT_Done_FreeType(handle);
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

// One loaded face file, shared by all its sizes.
struct Face {
    Face(std::shared_ptr<Library> owner, const FontFile& file) : library(std::move(owner)) {
        if (library->handle && FT_New_Face(library->handle, file.path.c_str(), file.index, &handle) != 0)
            handle = nullptr;
    }
    ~Face() {
        if (handle) FT_Done_Face(handle);
    }
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    std::shared_ptr<Library> library;
    FT_Face handle = nullptr;
    // What the face's one slot holds. A glyph is drawn twice in a row when its place depends on its shape.
    const void* slotFont = nullptr;
    FT_UInt slotGlyph = 0;
};

std::shared_ptr<Face> LoadFace(const FontFile& file) {
    // Never destroyed: the message boxes of the last static destructors still write.
    static const auto& library = *new std::shared_ptr<Library>(std::make_shared<Library>());
    static auto& loaded = *new std::map<std::pair<std::string, int>, std::weak_ptr<Face>>;
    std::weak_ptr<Face>& known = loaded[{file.path, file.index}];
    std::shared_ptr<Face> face = known.lock();
    if (!face) {
        face = std::make_shared<Face>(library, file);
        known = face;
    }
    return face->handle ? face : nullptr;
}

void CopyCoverage(const FT_Bitmap& bitmap, int left, int top, int side, std::vector<std::uint8_t>& coverage) {
    const int firstColumn = std::max(0, -left);
    const int lastColumn = std::min(static_cast<int>(bitmap.width), side - left);
    for (int row = 0; row < static_cast<int>(bitmap.rows); ++row) {
        const int y = top + row;
        if (y < 0 || y >= side || firstColumn >= lastColumn) continue;
        const unsigned char* from = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
        std::copy(from + firstColumn, from + lastColumn, coverage.begin() + y * side + left + firstColumn);
    }
}

class FreeTypeFont : public FontFace {
  public:
    FreeTypeFont(std::shared_ptr<Face> sharedFace, int cellHeight) : face(std::move(sharedFace)) {
        if (FT_New_Size(face->handle, &size) != 0) {
            size = nullptr;
            return;
        }
        // The real dimension is ascent plus descent, which is what a cell height means.
        FT_Size_RequestRec request{FT_SIZE_REQUEST_TYPE_REAL_DIM, 0, static_cast<FT_Long>(cellHeight) * 64, 0, 0};
        if (FT_Activate_Size(size) != 0 || FT_Request_Size(face->handle, &request) != 0) {
            FT_Done_Size(size);
            size = nullptr;
            return;
        }
        ascent = static_cast<int>((FT_MulFix(face->handle->ascender, size->metrics.y_scale) + 32) >> 6);
    }
    ~FreeTypeFont() override {
        if (face->slotFont == this) face->slotFont = nullptr;
        if (size) FT_Done_Size(size);
    }
    FreeTypeFont(const FreeTypeFont&) = delete;
    FreeTypeFont& operator=(const FreeTypeFont&) = delete;

    [[nodiscard]] bool IsReady() const { return size != nullptr; }

    void DrawGlyph(unsigned char code, int x, int y, int side, std::vector<std::uint8_t>& coverage) override {
        side = std::max(side, 0);
        coverage.assign(static_cast<std::size_t>(side) * static_cast<std::size_t>(side), 0);
        const FT_ULong unicode = UnicodeOf(code);
        if (unicode == 0 || FT_Activate_Size(size) != 0) return;
        const FT_UInt glyph = FT_Get_Char_Index(face->handle, unicode);
        if (glyph == 0 || !Render(glyph)) return;
        const FT_GlyphSlot slot = face->handle->glyph;
        if (slot->bitmap.pixel_mode != FT_PIXEL_MODE_GRAY) return;
        CopyCoverage(slot->bitmap, x + slot->bitmap_left, y + ascent - slot->bitmap_top, side, coverage);
    }

  private:
    // Into the face's slot, unless it is there already.
    bool Render(FT_UInt glyph) {
        if (face->slotFont == this && face->slotGlyph == glyph) return true;
        face->slotFont = nullptr;
        if (FT_Load_Glyph(face->handle, glyph, FT_LOAD_RENDER | FT_LOAD_NO_BITMAP) != 0) return false;
        face->slotFont = this;
        face->slotGlyph = glyph;
        return true;
    }

    std::shared_ptr<Face> face;
    FT_Size size = nullptr;
    int ascent = 0;  // from the cell's top to the base line, in pixels
};

}  // namespace

std::unique_ptr<FontFace> OpenFont(const std::string& faceName, int cellHeight) {
    FontFile file;
    if (cellHeight < 1 || cellHeight > maxCellHeight || !MatchFont(faceName, file)) return nullptr;
    const std::shared_ptr<Face> face = LoadFace(file);
    if (!face) return nullptr;
    auto font = std::make_unique<FreeTypeFont>(face, cellHeight);
    if (!font->IsReady()) return nullptr;
    return font;
}

}  // namespace platform
