#pragma once
// Writes dream archives.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

enum class ArchiveMethod : std::uint32_t { Lzw = 0, Plain = 1, Bzip2 = 2 };

struct ArchiveEntry {
    std::string name;  // at most 47 bytes, folders divided by backslashes
    ArchiveMethod method = ArchiveMethod::Plain;
    std::string contents;
};

// A whole archive, the contents compressed by each entry's method.
std::string WriteArchive(const std::vector<ArchiveEntry>& entries);

// The parts of an archive, for files that are put together by hand.
std::string ArchiveHeader();
// 62 bytes of entry header.
std::string ArchiveEntryHeader(std::string_view name, std::uint32_t storedSize, std::uint32_t method);
// What an entry stores for these contents.
std::string StoredData(ArchiveMethod method, std::string_view contents);
std::string Complemented(std::string_view bytes);

}  // namespace demo
