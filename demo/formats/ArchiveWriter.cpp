#include "demo/formats/ArchiveWriter.h"

#include <bzlib.h>

#include "demo/formats/ByteWriter.h"
#include "demo/formats/LzwEncoder.h"

namespace demo {

namespace {

constexpr std::size_t nameBytes = 48;

std::string Bzip2(std::string_view contents) {
    // The library's manual asks for 1 % and 600 bytes more than the input.
    auto size = static_cast<unsigned>(contents.size() + contents.size() / 100 + 600);
    std::string packed(size, '\0');
    std::string source(contents);
    const int result =
        BZ2_bzBuffToBuffCompress(packed.data(), &size, source.data(), static_cast<unsigned>(source.size()), 9, 0, 0);
    packed.resize(result == BZ_OK ? size : 0);
    return packed;
}

}  // namespace

std::string Complemented(std::string_view bytes) {
    std::string result(bytes);
    for (char& byte : result)
        byte = static_cast<char>(~static_cast<unsigned char>(byte));
    return result;
}

std::string StoredData(ArchiveMethod method, std::string_view contents) {
    switch (method) {
        case ArchiveMethod::Lzw:
            return Complemented(LzwEncode(contents));
        case ArchiveMethod::Plain:
            return Complemented(contents);
        case ArchiveMethod::Bzip2:
            return Bzip2(contents);
    }
    return {};
}

std::string ArchiveHeader() {
    return ByteWriter().Bytes("FR01").Zeros(24).Str();
}

std::string ArchiveEntryHeader(std::string_view name, std::uint32_t storedSize, std::uint32_t method) {
    // magic, name, stored size, a field that readers ignore, method
    return ByteWriter().Bytes("FZ").Field(name, nameBytes).U32(storedSize).U32(0).U32(method).Str();
}

std::string WriteArchive(const std::vector<ArchiveEntry>& entries) {
    std::string archive = ArchiveHeader();
    for (const ArchiveEntry& entry : entries) {
        const std::string stored = StoredData(entry.method, entry.contents);
        archive += ArchiveEntryHeader(entry.name, static_cast<std::uint32_t>(stored.size()),
                                      static_cast<std::uint32_t>(entry.method));
        archive += stored;
    }
    return archive;
}

}  // namespace demo
