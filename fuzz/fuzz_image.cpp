#include <fstream>
#include <iterator>

#include "demo/formats/ByteWriter.h"
#include "demo/formats/PcxWriter.h"
#include "fuzz/FuzzEntry.h"
#include "platform/ImageCodec.h"

namespace {

// 2 x 2 pixels of 24 bits.
std::string Bmp() {
    demo::ByteWriter file;
    file.Bytes("BM").U32(70).U32(0).U32(54).U32(40).U32(2).U32(2).U16(1).U16(24);
    return file.U32(0).U32(16).Zeros(16).Zeros(16).Str();
}

std::string Tga() {
    return demo::ByteWriter().U8(0).U8(0).U8(2).Zeros(9).U16(2).U16(2).U8(32).U8(8).Zeros(16).Str();
}

std::string Png() {
    fuzz::BeginRun();
    const std::uint32_t pixels[4] = {0xFF112233, 0x80445566, 0, 0xFFFFFFFF};
    (void)platform::WritePng("seed.png", pixels, 2, 2);
    std::ifstream file("seed.png", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

// The first byte says whether the file is called a TGA, which has no mark of its own inside.
std::vector<std::string> fuzz::Seeds() {
    return {"." + Bmp(), "." + demo::WritePcx(3, 2, {1, 2, 3, 4, 5, 6}, {}), "." + Png(), "T" + Tga(),
            std::string(".GIF89a\1\0\1\0\x80\0\0\xFF\xFF\xFF\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 36)};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    if (size == 0) return 0;
    const std::string name = data[0] == 'T' ? "fuzz.tga" : "fuzz.img";
    fuzz::WriteFile(name, fuzz::Text(data + 1, size - 1));
    platform::ImagePixels pixels;
    (void)platform::DecodeImageFile(name, pixels);
    return 0;
}
