#include "formats/DreamArchive.h"

#include <bzlib.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>

#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "formats/ByteCursor.h"
#include "formats/CappedMessages.h"
#include "formats/Lzw.h"
#include "platform/Caps.h"
#include "platform/FileSystem.h"
#include "platform/Memory.h"

namespace {

// Archive, little-endian:
//   0   4  "FR01"
//   4  24  unknown
//  28   .  entries up to the end of the file
// Entry:
//   0   2  "FZ"
//   2  48  file name, zero-terminated, folders divided by backslashes
//  50   4  stored size
//  54   4  unknown
//  58   4  method: 0 LZW, 1 plain, 2 bzip2
//  62   .  stored data; complemented bytes for LZW and plain
constexpr std::size_t headerBytes = 28;
constexpr std::size_t nameBytes = 48;

struct Entry {
    std::string name;
    std::uint32_t method = 0;
    std::string_view stored;
};

bool ReadEntry(ByteCursor& cursor, Entry& entry) {
    const std::string_view magic = cursor.Bytes(2);
    const std::string_view name = cursor.Bytes(nameBytes);
    const std::uint32_t storedSize = cursor.U32();
    cursor.Skip(4);
    entry.method = cursor.U32();
    entry.stored = cursor.Bytes(storedSize);
    const std::size_t nameLength = name.find('\0');
    if (cursor.Failed() || magic != "FZ" || nameLength == std::string_view::npos) return false;
    entry.name = name.substr(0, nameLength);
    return true;
}

void Complement(std::string_view stored, std::string& out) {
    out.resize(stored.size());
    std::transform(stored.begin(), stored.end(), out.begin(),
                   [](char byte) { return static_cast<char>(~static_cast<unsigned char>(byte)); });
}

class Unpacker {
  public:
    explicit Unpacker(const std::string& path) : archivePath(path), folder(DirectoryOf(path)) {}

    bool UnpackAll(std::string_view archive);

  private:
    void UnpackEntry(const Entry& entry);
    std::string_view Contents(const Entry& entry, const std::string& outputPath);
    std::string_view DecodeLzw(const Entry& entry);
    std::string_view DecodeBzip2(const Entry& entry, const std::string& outputPath);
    [[nodiscard]] bool NamesOwnFile(const std::string& name) const;

    const std::string& archivePath;
    const std::string folder;
    CappedMessages pastTwelveBits{caps::repeatedMessages};
    std::uint64_t unpackedBytes = 0;  // what was thrown away counts as well
    // Contents of the entry at hand; kept from entry to entry for their memory.
    std::string complemented;
    std::string decoded;
    std::unique_ptr<char[]> decompressed;  // caps::entryBytes
};

bool Unpacker::UnpackAll(std::string_view archive) {
    if (archive.size() <= headerBytes) return true;
    ByteCursor cursor(archive);
    cursor.Skip(headerBytes);
    std::size_t entryCount = 0;
    while (cursor.Remaining() > 0) {
        Entry entry;
        if (++entryCount > caps::archiveEntries || !ReadEntry(cursor, entry)) {
            errorLog.Write("Error in file entry header, in dream file: " + archivePath + "\n");
            return false;
        }
        UnpackEntry(entry);
        if (unpackedBytes > caps::unpackedBytes) {
            errorLog.Write("Error: too much data unpacked from dream file: " + archivePath + "\n");
            return false;
        }
    }
    return true;
}

void Unpacker::UnpackEntry(const Entry& entry) {
    const std::string outputPath = ContainedPath(folder, entry.name);
    if (outputPath.empty()) return;
    if (NamesOwnFile(entry.name)) {
        errorLog.Write("Error: refused file \"" + entry.name +
                       "\", which would replace the dream file: " + archivePath + "\n");
        return;
    }
    if (FileSize(outputPath) >= entry.stored.size()) return;  // unpacked before
    const std::string_view contents = Contents(entry, outputPath);
    if (contents.empty()) {
        errorLog.Write("No decompressed data generated for file: " + outputPath + ", so skipping\n");
        return;
    }
    unpackedBytes += contents.size();
    MakePathDirectories(outputPath);
    // A part of a file would pass for an unpacked one at the next visit.
    if (WriteWholeFile(outputPath, contents) != WriteOutcome::Written)
        errorLog.Write("Unable to write file: " + outputPath + ", so skipping\n");
}

// The archive itself and the note of its size, by which a later visit knows a complete download.
bool Unpacker::NamesOwnFile(const std::string& name) const {
    const std::string archiveName = FileNameOf(archivePath);
    return EqualsIgnoringCase(name, archiveName) || EqualsIgnoringCase(name, archiveName + ".size");
}

std::string_view Unpacker::Contents(const Entry& entry, const std::string& outputPath) {
    switch (entry.method) {
        case 0:
            return DecodeLzw(entry);
        case 1:
            Complement(entry.stored, complemented);
            return complemented;
        case 2:
            return DecodeBzip2(entry, outputPath);
        default:
            errorLog.Write("Unsupported compression method for file \"" + entry.name + "\" in dream \"" + archivePath +
                           "\": method ");
            errorLog.Write(static_cast<int>(entry.method));
            errorLog.Write("\n");
            return {};
    }
}

std::string_view Unpacker::DecodeLzw(const Entry& entry) {
    Complement(entry.stored, complemented);
    decoded.clear();
    if (!LzwDecode(complemented, decoded, caps::entryBytes, pastTwelveBits)) unpackedBytes += caps::entryBytes;
    pastTwelveBits.Flush();
    if (decoded.empty())
        errorLog.Write("Data decompression (lzw) failed on file \"" + entry.name + "\" in dream file: " + archivePath +
                       "\n");
    else if (entry.stored.size() > decoded.size())
        errorLog.Write("Data decompression (lzw) has a suspicious size on file \"" + entry.name +
                       "\" in dream file: " + archivePath + " ...\n");
    return decoded;
}

// A buffer of the largest size gives what any smaller one that suffices would give, results and error codes alike, so
// it is the only one tried. Its pages cost nothing until the library fills them.
std::string_view Unpacker::DecodeBzip2(const Entry& entry, const std::string& outputPath) {
    if (!decompressed) {
        decompressed = std::make_unique_for_overwrite<char[]>(caps::entryBytes);
        platform::PreferLargePages(decompressed.get(), caps::entryBytes);
    }
    unsigned size = caps::entryBytes;
    // The library takes its source as non-const but only reads it.
    const int result = BZ2_bzBuffToBuffDecompress(decompressed.get(), &size, const_cast<char*>(entry.stored.data()),
                                                  static_cast<unsigned>(entry.stored.size()), 0, 0);
    if (result == BZ_OK) return {decompressed.get(), size};
    unpackedBytes += caps::entryBytes;  // how far it came is not told
    if (result != BZ_OUTBUFF_FULL) {
        errorLog.Write("error while doing bz2 decompression for file " + outputPath + ", result=");
        errorLog.Write(result);
        errorLog.Write("\n");
    }
    return {};
}

}  // namespace

bool UnpackDreamArchive(const std::string& archivePath) {
    std::string archive;
    if (!platform::ReadFileBytes(archivePath, archive, caps::archiveBytes) || archive.empty()) {
        errorLog.Write("Unable to begin decompression of file: " + archivePath + "\n");
        return false;
    }
    if (archive.compare(0, 4, "FR01") != 0) {
        errorLog.Write("Error decompressing dream file (" + archivePath + "): dream header ID is invalid.\n");
        return false;
    }
    return Unpacker(archivePath).UnpackAll(archive);
}
