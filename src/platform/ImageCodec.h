#pragma once
// Image files to pixels. Works without a window, from any thread.

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

enum class ImageLayout { Indexed8, Rgb24, Rgb32, Argb32, Other };

struct ImagePixels {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    ImageLayout layout = ImageLayout::Other;  // as the file holds it
    std::vector<std::uint32_t> argb;          // width x height, row by row from the top, A8R8G8B8
    std::vector<std::uint8_t> indices;        // width x height, only for Indexed8; may be empty when not to be had
};

enum class ImageStatus { Ok, CannotOpen, InvalidData, TooLarge };

// Reads BMP, PNG, JPEG, GIF, TGA, PCX, TIFF by their content (TGA by its extension), at most 8192 pixels a side.
ImageStatus DecodeImageFile(const std::string& path, ImagePixels& out);
// The size alone, cheaper where the format allows it.
ImageStatus ReadImageSize(const std::string& path, std::uint32_t& width, std::uint32_t& height);
// Writes a PNG; false when it cannot.
[[nodiscard]] bool WritePng(const std::string& path, const std::uint32_t* argb, std::uint32_t width,
                            std::uint32_t height);

}  // namespace platform
