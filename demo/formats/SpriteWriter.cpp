#include "demo/formats/SpriteWriter.h"

#include "demo/formats/ByteWriter.h"

namespace demo {

namespace {

void PutRowsLastFirst(ByteWriter& file, const IndexedImage& image) {
    for (unsigned row = image.height; row-- > 0;)
        for (unsigned x = 0; x < image.width; ++x)
            file.U8(image.indices[row * image.width + x]);
}

}  // namespace

std::string WriteTsh(const std::vector<IndexedImage>& images) {
    ByteWriter file;
    file.U16(static_cast<unsigned>(images.size()));
    file.Zeros(2 * images.size());  // one number for each image, ignored by readers
    for (const IndexedImage& image : images) {
        file.U8(image.width).U8(image.height).U16(0);
        PutRowsLastFirst(file, image);
    }
    return file.Str();
}

std::string Ts2Header(const std::string& magic, unsigned count, bool enciphered) {
    return ByteWriter().Field(magic, 8).U16(count).U16(0).U8(enciphered ? 1 : 0).Zeros(3).Str();
}

std::string Ts2Image(unsigned number, const IndexedImage& image) {
    ByteWriter record;
    record.U8(image.width).U8(image.height).U16(0).U16(number);
    PutRowsLastFirst(record, image);
    return record.Str();
}

std::string WriteTs2(const std::vector<std::pair<unsigned, IndexedImage>>& numberedImages) {
    std::string file = Ts2Header("TSH2.002", static_cast<unsigned>(numberedImages.size()), false);
    for (const auto& [number, image] : numberedImages)
        file += Ts2Image(number, image);
    return file;
}

}  // namespace demo
