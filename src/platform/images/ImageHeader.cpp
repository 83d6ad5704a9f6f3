#include "platform/images/ImageHeader.h"

#include <cctype>

namespace platform {

namespace {

// Bytes by position; 0 beyond the end, which no size or layout below mistakes for a good value.
class Bytes {
  public:
    explicit Bytes(std::string_view all) : bytes(all) {}

    [[nodiscard]] std::uint32_t At(std::size_t at) const {
        return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
    }
    [[nodiscard]] std::uint32_t Little16(std::size_t at) const { return At(at) | At(at + 1) << 8; }
    [[nodiscard]] std::uint32_t Little32(std::size_t at) const { return Little16(at) | Little16(at + 2) << 16; }
    [[nodiscard]] std::uint32_t Big16(std::size_t at) const { return At(at) << 8 | At(at + 1); }
    [[nodiscard]] std::uint32_t Big32(std::size_t at) const { return Big16(at) << 16 | Big16(at + 2); }
    [[nodiscard]] std::size_t Size() const { return bytes.size(); }
    [[nodiscard]] bool StartWith(std::string_view mark) const { return bytes.substr(0, mark.size()) == mark; }

  private:
    std::string_view bytes;
};

// Windows bitmap: after the 14 bytes of the file header an information header of 12 bytes (16-bit sizes) or more.
ImageHeader ReadBmp(const Bytes& bytes) {
    ImageHeader header{"BMP"};
    const bool small = bytes.Little32(14) == 12;
    header.width = small ? bytes.Little16(18) : bytes.Little32(18);
    header.height = small ? bytes.Little16(20) : bytes.Little32(22);
    // A negative height marks rows from the top.
    if (!small && header.height > 0x80000000U) header.height = 0U - header.height;
    const std::uint32_t bits = small ? bytes.Little16(24) : bytes.Little16(28);
    // The alpha mask of the headers from version 3 on.
    const bool hasAlpha = bytes.Little32(14) >= 56 && bytes.Little32(66) != 0;
    if (bits == 8) header.layout = ImageLayout::Indexed8;
    if (bits == 24) header.layout = ImageLayout::Rgb24;
    if (bits == 32) header.layout = hasAlpha ? ImageLayout::Argb32 : ImageLayout::Rgb32;
    return header;
}

// PNG: the first chunk, IHDR, holds width, height, bit depth and colour type (RFC 2083).
ImageHeader ReadPng(const Bytes& bytes) {
    ImageHeader header{"PNG", bytes.Big32(16), bytes.Big32(20)};
    const std::uint32_t depth = bytes.At(24);
    const std::uint32_t type = bytes.At(25);
    if (depth != 8) return header;
    if (type == 0 || type == 3) header.layout = ImageLayout::Indexed8;
    if (type == 2) header.layout = ImageLayout::Rgb24;
    if (type == 4 || type == 6) header.layout = ImageLayout::Argb32;
    return header;
}

// JPEG: segments "FF kind length ..."; the frame headers C0 to CF, but for C4, C8 and CC, hold height and width.
ImageHeader ReadJpeg(const Bytes& bytes) {
    ImageHeader header{"JPG", 0, 0, ImageLayout::Rgb24};
    std::size_t at = 2;
    while (at + 9 < bytes.Size() && bytes.At(at) == 0xFF) {
        const std::uint32_t kind = bytes.At(at + 1);
        if (kind == 0xFF) {  // Filling.
            ++at;
            continue;
        }
        if (kind >= 0xC0 && kind <= 0xCF && kind != 0xC4 && kind != 0xC8 && kind != 0xCC) {
            header.height = bytes.Big16(at + 5);
            header.width = bytes.Big16(at + 7);
            return header;
        }
        at += 2 + bytes.Big16(at + 2);
    }
    return header;
}

// GIF: the size of the screen; the first picture may be smaller or, in odd files, larger, and is what the decoder
// makes.
ImageHeader ReadGif(const Bytes& bytes) {
    ImageHeader header{"GIF", bytes.Little16(6), bytes.Little16(8), ImageLayout::Indexed8};
    const std::uint32_t flags = bytes.At(10);
    std::size_t at = 13 + ((flags & 0x80) != 0 ? std::size_t(3) << ((flags & 7) + 1) : 0);
    while (at < bytes.Size() && bytes.At(at) == 0x21) {  // Extensions: a kind and blocks with their lengths.
        at += 2;
        while (at < bytes.Size() && bytes.At(at) != 0)
            at += bytes.At(at) + 1;
        ++at;
    }
    if (bytes.At(at) != 0x2C) return {"GIF", 0, 0, ImageLayout::Indexed8};
    header.width = bytes.Little16(at + 5);
    header.height = bytes.Little16(at + 7);
    return header;
}

// PCX: the corners of the picture, both inside it, then planes of some bits per pixel.
ImageHeader ReadPcx(const Bytes& bytes) {
    ImageHeader header{"PCX"};
    if (bytes.Little16(8) < bytes.Little16(4) || bytes.Little16(10) < bytes.Little16(6) || bytes.Size() < 128)
        return header;
    // The decoder takes the bytes of a line for a signed number and asks for as many.
    if (bytes.Little16(66) > 0x7FFF) return header;
    header.width = bytes.Little16(8) - bytes.Little16(4) + 1;
    header.height = bytes.Little16(10) - bytes.Little16(6) + 1;
    const std::uint32_t planes = bytes.At(65);
    if (bytes.At(3) == 8 && planes == 1) header.layout = ImageLayout::Indexed8;
    if (bytes.At(3) == 8 && planes == 3) header.layout = ImageLayout::Rgb24;
    return header;
}

// TIFF 6.0: a directory of 12-byte entries (tag, type, count, value) in the byte order that the first two bytes name.
ImageHeader ReadTiff(const Bytes& bytes) {
    ImageHeader header{"TIF"};
    const bool big = bytes.At(0) == 'M';
    const auto read16 = [&](std::size_t at) { return big ? bytes.Big16(at) : bytes.Little16(at); };
    const auto read32 = [&](std::size_t at) { return big ? bytes.Big32(at) : bytes.Little32(at); };
    const std::size_t directory = read32(4);
    const std::uint32_t entries = read16(directory);
    std::uint32_t samples = 1;
    std::uint32_t photometric = 0;
    for (std::uint32_t entry = 0; entry < entries; ++entry) {
        const std::size_t at = directory + 2 + std::size_t(entry) * 12;
        if (at + 12 > bytes.Size()) break;
        constexpr std::uint32_t shortValue = 3;
        const std::uint32_t value = read16(at + 2) == shortValue ? read16(at + 8) : read32(at + 8);
        switch (read16(at)) {
            case 256:
                header.width = value;
                break;
            case 257:
                header.height = value;
                break;
            case 262:
                photometric = value;
                break;
            case 277:
                samples = value;
                break;
            default:
                break;
        }
    }
    constexpr std::uint32_t rgb = 2;
    if (photometric == rgb && samples == 3) header.layout = ImageLayout::Rgb24;
    if (photometric == rgb && samples == 4) header.layout = ImageLayout::Argb32;
    return header;
}

// TGA: 18 bytes; the kinds 1 to 3 and 9 to 11 are pictures with palette, colours or greys.
ImageHeader ReadTga(const Bytes& bytes) {
    const std::uint32_t kind = bytes.At(2) & ~8U;
    if (bytes.Size() < 18 || kind < 1 || kind > 3 || bytes.At(1) > 1) return {};
    ImageHeader header{"TGA", bytes.Little16(12), bytes.Little16(14)};
    const std::uint32_t bits = bytes.At(16);
    if (bits == 8) header.layout = ImageLayout::Indexed8;
    if (bits == 24) header.layout = ImageLayout::Rgb24;
    if (bits == 32) header.layout = ImageLayout::Argb32;
    // The decoder leaves rows black that an uncompressed file lacks.
    const std::size_t palette = std::size_t(bytes.Little16(5)) * ((bytes.At(7) + 7) / 8);
    const std::size_t pixels = std::size_t(header.width) * header.height * ((bits + 7) / 8);
    if ((bytes.At(2) & 8) == 0 && bytes.Size() < 18 + bytes.At(0) + palette + pixels) header.width = 0;
    return header;
}

bool EndsInTga(std::string_view path) {
    if (path.size() < 4) return false;
    const std::string_view ending = path.substr(path.size() - 4);
    const auto is = [&](std::size_t at, char letter) {
        return std::tolower(static_cast<unsigned char>(ending[at])) == letter;
    };
    return is(0, '.') && is(1, 't') && is(2, 'g') && is(3, 'a');
}

}  // namespace

ImageHeader ReadImageHeader(std::string_view content, std::string_view path) {
    using namespace std::string_view_literals;
    const Bytes bytes(content);
    if (bytes.StartWith("BM"sv)) return ReadBmp(bytes);
    if (bytes.StartWith("\x89PNG\r\n\x1A\n"sv)) return ReadPng(bytes);
    if (bytes.StartWith("\xFF\xD8\xFF"sv)) return ReadJpeg(bytes);
    if (bytes.StartWith("GIF87a"sv) || bytes.StartWith("GIF89a"sv)) return ReadGif(bytes);
    if (bytes.StartWith("II*\0"sv) || bytes.StartWith("MM\0*"sv)) return ReadTiff(bytes);
    if (bytes.At(0) == 10 && bytes.At(1) <= 5 && bytes.At(2) == 1) return ReadPcx(bytes);
    return EndsInTga(path) ? ReadTga(bytes) : ImageHeader{};
}

bool HasPngEnd(std::string_view content) {
    constexpr std::uint32_t endChunk = 0x49454E44;  // IEND
    constexpr std::size_t emptyChunk = 12;          // length, kind, check sum
    const Bytes bytes(content);
    std::size_t at = 8;
    while (at + emptyChunk <= bytes.Size() && bytes.Big32(at + 4) != endChunk)
        at += emptyChunk + std::size_t{bytes.Big32(at)};
    return at + emptyChunk <= bytes.Size();
}

}  // namespace platform
