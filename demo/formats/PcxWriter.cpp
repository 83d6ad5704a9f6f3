#include "demo/formats/PcxWriter.h"

#include "demo/formats/ByteWriter.h"

namespace demo {

namespace {

// Run-length code of one row: a count with its two high bits set before a byte that repeats or has both high bits set
// itself.
void PutRow(ByteWriter& file, const std::uint8_t* row, unsigned width) {
    for (unsigned x = 0; x < width;) {
        unsigned run = 1;
        while (x + run < width && run < 63 && row[x + run] == row[x])
            ++run;
        if (run > 1 || row[x] >= 0xC0) file.U8(0xC0 | run);
        file.U8(row[x]);
        x += run;
    }
}

}  // namespace

std::string WritePcx(unsigned width, unsigned height, const std::vector<std::uint8_t>& indices,
                     const RgbPalette& palette) {
    const unsigned bytesPerLine = width + width % 2;
    ByteWriter file;
    file.U8(10).U8(5).U8(1).U8(8);                        // manufacturer, version 3.0, run-length coded, 8 bits
    file.U16(0).U16(0).U16(width - 1).U16(height - 1);    // window
    file.U16(width).U16(height).Zeros(48);                // resolution, 16-colour palette
    file.U8(0).U8(1).U16(bytesPerLine).U16(1).Zeros(58);  // reserved, planes, line length, colour palette
    for (unsigned y = 0; y < height; ++y) {
        PutRow(file, indices.data() + static_cast<std::size_t>(y) * width, width);
        if (bytesPerLine > width) file.U8(0);
    }
    file.U8(0x0C);  // the palette follows
    for (const Rgb& color : palette)
        file.U8(color.red).U8(color.green).U8(color.blue);
    return file.Str();
}

}  // namespace demo
