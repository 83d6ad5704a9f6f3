#pragma once
// Writes sprite archives of both generations.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace demo {

// Palette indices row by row from the top; at most 255 x 255.
struct IndexedImage {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<std::uint8_t> indices;
};

// Image i of the vector becomes image number i. The transparent index of an image is that of its top left pixel.
std::string WriteTsh(const std::vector<IndexedImage>& images);
// Image numbers with their images. The transparent index is 0.
std::string WriteTs2(const std::vector<std::pair<unsigned, IndexedImage>>& numberedImages);

// The parts, for files that are put together by hand.
std::string Ts2Header(const std::string& magic, unsigned count, bool enciphered);
std::string Ts2Image(unsigned number, const IndexedImage& image);

}  // namespace demo
