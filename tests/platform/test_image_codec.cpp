// Image files to pixels, and what odd and hostile files give.

#include <gtest/gtest.h>

#include "platform/ImageCodec.h"
#include "support/TestFolder.h"

using namespace platform;
using namespace std::string_literals;

namespace {

std::string Little(std::uint64_t value, unsigned bytes) {
    std::string text;
    for (unsigned at = 0; at < bytes; ++at)
        text += static_cast<char>(value >> 8 * at);
    return text;
}

// Rows are given as they stand in the file; `height` may be negative: rows from the top.
std::string Bmp(std::int32_t width, std::int32_t height, unsigned bits, const std::string& palette,
                const std::string& rows) {
    const std::uint32_t start = 54 + static_cast<std::uint32_t>(palette.size());
    return "BM" + Little(start + static_cast<std::uint32_t>(rows.size()), 4) + Little(0, 4) + Little(start, 4) +
           Little(40, 4) + Little(static_cast<std::uint32_t>(width), 4) +
           Little(static_cast<std::uint32_t>(height), 4) + Little(1, 2) + Little(bits, 2) + Little(0, 4) +
           Little(static_cast<std::uint32_t>(rows.size()), 4) + Little(0, 8) +
           Little(static_cast<std::uint32_t>(palette.size() / 4), 4) + Little(0, 4) + palette + rows;
}

std::string Tga(unsigned kind, unsigned width, unsigned height, unsigned bits, bool fromTop, const std::string& rest) {
    const bool palette = kind == 1;
    return Little(0, 1) + Little(palette ? 1 : 0, 1) + Little(kind, 1) + Little(0, 2) + Little(palette ? 2 : 0, 2) +
           Little(palette ? 24 : 0, 1) + Little(0, 4) + Little(width, 2) + Little(height, 2) + Little(bits, 1) +
           Little(fromTop ? 0x20 : 0, 1) + rest;
}

// One row of two pixels of 8 bits: run-length bytes below C0 stand for themselves; the palette ends the file.
std::string Pcx() {
    std::string file = "\x0A\x05\x01\x08"s + Little(0, 4) + Little(1, 2) + Little(0, 2);
    file.resize(65);
    file += Little(1, 1) + Little(2, 2) + Little(1, 2);
    file.resize(128);
    std::string palette(768, '\0');
    palette.replace(3, 3, "\x11\x22\x33"s);
    palette.replace(6, 3, "\x44\x55\x66"s);
    return file + "\x01\x02\x0C" + palette;
}

// Two pixels, the second of the colour 1 that is transparent.
std::string Gif() {
    return "GIF89a"s + Little(2, 2) + Little(1, 2) + "\x80\x00\x00"s + "\x11\x22\x33\x44\x55\x66"s +
           "\x21\xF9\x04\x01\x00\x00\x01\x00"s + "\x2C"s + Little(0, 4) + Little(2, 2) + Little(1, 2) + "\x00"s +
           "\x02\x02\x44\x0A\x00\x3B"s;
}

const std::string palette3 = "\x30\x20\x10\0\x60\x50\x40\0\x90\x80\x70\0"s;  // blue, green, red, nothing

struct ImageCodec : testing::Test {
    support::TestFolder folder;
};

}  // namespace

TEST_F(ImageCodec, ReadsEachKindWithItsLayout) {
    const std::uint32_t a = 0xFF102030;
    const std::uint32_t b = 0xFF405060;
    using enum ImageLayout;
    const struct {
        const char* name;
        std::string bytes;
        ImageLayout layout;
        std::pair<std::uint32_t, std::uint32_t> size;
        std::vector<std::uint32_t> argb;
        std::vector<std::uint8_t> indices;
    } rows[] = {
        // clang-format off: one line a row
        {"short.bmp",
         Bmp(2, 2, 8, palette3, "\0\1\0\0\2\0\0\0"s),
         Indexed8,
         {2, 2},
         {0xFF708090, a, a, b},
         {2, 0, 0, 1}},
        {"topdown.bmp", Bmp(1, -2, 24, "", "\x30\x20\x10\0\x60\x50\x40\0"s), Rgb24, {1, 2}, {a, b}, {}},
        {"noalpha.bmp", Bmp(2, 1, 32, "", "\x30\x20\x10\x00\x60\x50\x40\x77"s), Rgb32, {2, 1}, {a, b}, {}},
        {"four.bmp", Bmp(2, 1, 4, palette3, "\x10\0\0\0"s), Other, {2, 1}, {b, a}, {}},
        {"colours.TGA", Tga(2, 1, 2, 24, true, "\x30\x20\x10\x60\x50\x40"), Rgb24, {1, 2}, {a, b}, {}},
        {"alpha.tga", Tga(2, 1, 1, 32, true, "\x30\x20\x10\x80"), Argb32, {1, 1}, {0x80102030}, {}},
        {"indexed.tga", Tga(1, 2, 1, 8, true, "\x30\x20\x10\x60\x50\x40\x01\0"s), Indexed8, {2, 1}, {b, a}, {1, 0}},
        {"palette.pcx", Pcx(), Indexed8, {2, 1}, {0xFF112233, 0xFF445566}, {1, 2}},
        {"clear.gif", Gif(), Indexed8, {2, 1}, {0xFF112233, 0x00445566}, {0, 1}},
        {"named.txt", Bmp(1, 1, 24, "", "\x30\x20\x10\0"s), Rgb24, {1, 1}, {a}, {}},
        // clang-format on
    };
    for (const auto& row : rows) {
        folder.Write(row.name, row.bytes);
        ImagePixels pixels;
        ASSERT_EQ(DecodeImageFile(row.name, pixels), ImageStatus::Ok) << row.name;
        EXPECT_EQ(pixels.layout, row.layout) << row.name;
        EXPECT_EQ(pixels.argb, row.argb) << row.name;
        EXPECT_EQ(pixels.indices, row.indices) << row.name;
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        EXPECT_EQ(ReadImageSize(row.name, width, height), ImageStatus::Ok) << row.name;
        EXPECT_EQ(std::pair(width, height), row.size) << row.name;
    }
}

TEST_F(ImageCodec, RefusesBadFilesBeforeTheirPixels) {
    const std::string png = "\x89PNG\r\n\x1A\n"s + "\0\0\0\x0DIHDR"s;
    const struct {
        const char* name;
        std::string bytes;
        ImageStatus status;
    } rows[] = {
        {"drawn.xpm", "/* XPM */\nstatic char *x[] = {\"1 1 1 1\",\"a c red\",\"a\"};", ImageStatus::InvalidData},
        {"beyond.bmp", Bmp(1, 1, 8, palette3, "\xC8\0\0\0"s), ImageStatus::InvalidData},
        {"deep.bmp", Bmp(1, INT32_MIN + 1, 8, palette3, ""), ImageStatus::TooLarge},
        {"huge.png", png + "\x7F\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x08\x02\0\0\0"s, ImageStatus::TooLarge},
        {"loop.jpg", "\xFF\xD8\xFF\xE0\0\0\xFF\xE0\0\0"s, ImageStatus::InvalidData},
        {"circle.tif", "II*\0\x04\0\0\0\xFF\xFF"s, ImageStatus::InvalidData},
    };
    for (const auto& row : rows) {
        folder.Write(row.name, row.bytes);
        ImagePixels pixels;
        EXPECT_EQ(DecodeImageFile(row.name, pixels), row.status) << row.name;
        EXPECT_TRUE(pixels.argb.empty()) << row.name;
    }
    ImagePixels pixels;
    EXPECT_EQ(DecodeImageFile("missing.bmp", pixels), ImageStatus::CannotOpen);
}
