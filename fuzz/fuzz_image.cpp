#include <fstream>
#include <iterator>

#include "demo/formats/ByteWriter.h"
#include "demo/formats/PcxWriter.h"
#include "fuzz/FuzzEntry.h"
#include "fuzz/FuzzModels.h"
#include "graphics/device/DXGTexture.h"
#include "graphics/device/ImageLoader.h"
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

// One row of four grey pixels, uncompressed.
std::string Tiff() {
    demo::ByteWriter file;
    file.Bytes("II*").U8(0).U32(8).U16(8);
    const std::uint32_t tags[][3] = {{256, 4, 4}, {257, 4, 1}, {258, 3, 8}, {259, 3, 1},
                                     {262, 3, 1}, {273, 4, 4}, {278, 4, 1}, {279, 4, 4}};
    for (const auto& [tag, type, value] : tags)
        file.U16(tag).U16(type).U32(1).U32(value);
    return file.U32(0).Str();
}

std::string Png() {
    fuzz::BeginRun();
    const std::uint32_t pixels[4] = {0xFF112233, 0x80445566, 0, 0xFFFFFFFF};
    (void)platform::WritePng("seed.png", pixels, 2, 2);
    std::ifstream file("seed.png", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The ways by which the client comes to a picture.
void LoadAs(char way, const std::string& name) {
    if (way == 'p') {
        LoadedImage image;
        (void)image.Load(name);
        return;
    }
    DXG::Texture texture;
    if (way == 'c')
        (void)texture.LoadCC(name);
    else if (way == 'v')
        (void)texture.Load("layers.t3d", DXG::TextureType::AsFile, false, false);
    else
        (void)texture.Load(name, way == 'a' ? DXG::TextureType::Alpha : DXG::TextureType::AsFile, true, way == 's');
    DXG::Texture shared = texture;
    texture.Release();
    shared.Release();
}

}  // namespace

// The first byte says how the client comes to the file: p pixels, c with a colour key, v as the layers of a volume, a
// for its alpha, s smoothed, else as it is; the second whether it is called a TGA, which has no mark of its own inside.
std::vector<std::string> fuzz::Seeds() {
    const std::string gif("GIF89a\1\0\1\0\x80\0\0\xFF\xFF\xFF\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 35);
    return {"s." + Bmp(),
            "p." + demo::WritePcx(3, 2, {1, 2, 3, 4, 5, 6}, {}),
            "v." + Png(),
            "cT" + Tga(),
            "a." + gif,
            "p." + Tiff(),
            "v." + demo::WritePcx(2, 2, {1, 2, 3, 4}, demo::RgbPalette())};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::BeginModels();
    if (size < 2) return 0;
    const std::string name = data[1] == 'T' ? "fuzz.tga" : "fuzz.img";
    fuzz::WriteFile(name, fuzz::Text(data + 2, size - 2));
    fuzz::WriteFile("layers.t3d", name + "\n" + name + "\n");
    // Larger pictures are only slower.
    constexpr std::uint64_t mostPixels = 1U << 20;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    (void)platform::ReadImageSize(name, width, height);
    if (std::uint64_t{width} * height > mostPixels) return 0;
    LoadAs(static_cast<char>(data[0]), name);
    fuzz::CheckNothingIsLeft();
    return 0;
}
