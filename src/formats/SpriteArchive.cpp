#include "formats/SpriteArchive.h"

#include <algorithm>

#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "formats/ByteCursor.h"
#include "formats/CappedMessages.h"
#include "platform/Caps.h"
#include "platform/FileSystem.h"

namespace {

constexpr int slotCount = 1024;

// Rows are stored last row first. Gives the number of rows that could be read whole.
unsigned ReadRows(ByteCursor& cursor, SpriteImage& image, unsigned width, unsigned height) {
    image.rows.assign(height, std::vector<std::uint8_t>(width));
    for (unsigned row = height; row-- > 0;) {
        const std::string_view stored = cursor.Bytes(width);
        if (cursor.Failed()) return height - 1 - row;
        std::copy(stored.begin(), stored.end(), image.rows[row].begin());
    }
    return height;
}

void WriteEndOfFile(std::size_t loaded, unsigned count, const std::string& path) {
    errorLog.Write("Warning: EOF hit, but only ");
    errorLog.Write(static_cast<int>(loaded));
    errorLog.Write(" of the ");
    errorLog.Write(static_cast<int>(count));
    errorLog.Write(" images were loaded from " + path + ".  Will use what we got...\n");
}

}  // namespace

bool LoadTsh(SpriteArchive& archive, const std::string& path) {
    archive.images.clear();
    if (FileSize(path) == 0) return false;
    std::string bytes;
    if (!platform::ReadFileBytes(path, bytes, caps::spriteArchiveBytes)) {
        errorLog.Write("Unable to open " + path + " to load TSH data.\n");
        return false;
    }
    return LoadTshBytes(archive, bytes, path);
}

// TSH, little-endian:
//   0   2  image count C
//   2  2C  unknown
//   .   .  C images: 1 width, 1 height, 2 unknown, then the pixels
// The first pixel of an image is its transparent index. A file may end early: the images before the end are kept.
bool LoadTshBytes(SpriteArchive& archive, std::string_view bytes, const std::string& path) {
    archive.images.clear();
    if (bytes.empty()) return false;
    ByteCursor cursor(bytes);
    const unsigned count = cursor.U16();
    archive.images.resize(count);
    cursor.Skip(std::size_t{2} * count);
    std::size_t rowsLeft = caps::spriteRows;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned width = cursor.U8();
        const unsigned height = cursor.U8();
        cursor.Skip(2);
        auto image = std::make_unique<SpriteImage>();
        if (cursor.Failed() || height > rowsLeft || ReadRows(cursor, *image, width, height) < height) {
            WriteEndOfFile(i, count, path);
            return true;
        }
        rowsLeft -= height;
        if (width > 0 && height > 0) image->keyIndex = image->rows[0][0];
        archive.images[i] = std::move(image);
    }
    if (cursor.Failed()) WriteEndOfFile(0, count, path);
    return true;
}

bool LoadTs2(SpriteArchive& archive, const std::string& path, int indexBase) {
    if (FileSize(path) == 0) return false;
    std::string bytes;
    if (!platform::ReadFileBytes(path, bytes, caps::spriteArchiveBytes)) {
        errorLog.Write("Unable to open " + path + " to load TS2 data.\n");
        return false;
    }
    return LoadTs2Bytes(archive, bytes, path, indexBase);
}

// TS2, little-endian:
//   0  8  "TSH2.002" or "TSH2.001"
//   8  2  image count C
//  10  2  unknown
//  12  1  not 0: the contents are enciphered
//  13  3  unknown
//  16  .  C images: 1 width, 1 height, 2 unknown, 2 image number, then the pixels; index 0 is transparent
bool LoadTs2Bytes(SpriteArchive& archive, std::string_view bytes, const std::string& path, int indexBase) {
    if (bytes.empty()) return false;
    ByteCursor cursor(bytes);
    const std::string_view magic = cursor.Bytes(8);
    if (magic != "TSH2.002" && magic != "TSH2.001") {
        errorLog.Write("TS2 format version for " + path + " isn't recognized...\n");
        return false;
    }
    const unsigned count = cursor.U16();
    cursor.Skip(2);
    const bool enciphered = cursor.U8() != 0;
    cursor.Skip(3);
    if (enciphered) {
        errorLog.Write(path + " is encrypted.  We cannot load that yet.\n");
        return false;
    }
    if (cursor.Failed()) {
        WriteEndOfFile(0, count, path);
        return true;
    }
    CappedMessages damages(caps::repeatedMessages);
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned width = cursor.U8();
        const unsigned height = cursor.U8();
        cursor.Skip(2);
        const unsigned number = cursor.U16();
        if (cursor.Failed()) {
            damages.Flush();
            WriteEndOfFile(i, count, path);
            return true;
        }
        const auto slot = static_cast<std::int16_t>(number + static_cast<unsigned>(indexBase));
        auto image = std::make_unique<SpriteImage>();
        const unsigned rowsRead = ReadRows(cursor, *image, width, height);
        for (unsigned row = rowsRead; row < height; ++row)
            damages.Add("Warning: EOF hit mid-pixel-data while reading " + path + ".  Will discard this image...\n");
        if (rowsRead < height) continue;
        if (slot < 0 || slot >= slotCount) {
            damages.Add("Erp... " + path +
                        "... trying to load into an image index that's not a sane value... ignoring it.\n");
            continue;
        }
        const auto index = static_cast<std::size_t>(slot);
        if (index >= archive.images.size()) archive.images.resize(index + 1);
        archive.images[index] = std::move(image);
    }
    return true;
}

bool LoadSpriteArchive(SpriteArchive& archive, const std::string& path) {
    const std::string extension = ExtensionOf(path);
    if (EqualsIgnoringCase(extension, "ts2")) {
        const std::string name = WithoutExtension(FileNameOf(path));
        const bool baseLoaded = LoadTsh(archive, DirectoryOf(path) + name + ".tsh") ||
                                LoadTsh(archive, "patches\\default\\" + name + ".tsh");
        const bool overlayLoaded = LoadTs2(archive, path, 0);
        return baseLoaded || overlayLoaded;
    }
    if (EqualsIgnoringCase(extension, "tsh")) return LoadTsh(archive, path);
    errorLog.Write("TSH/TS2 loader encountered an unknown extension to load, for file: " + path + "\n");
    return false;
}
