#include "demo/art/PngFile.h"

#include <png.h>

namespace demo {

bool WritePngFile(const std::string& path, unsigned width, unsigned height, const std::vector<std::uint32_t>& argb) {
    std::vector<std::uint8_t> rgba;
    rgba.reserve(argb.size() * 4);
    for (const std::uint32_t texel : argb)
        for (const int shift : {16, 8, 0, 24})
            rgba.push_back(static_cast<std::uint8_t>(texel >> shift));
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = PNG_FORMAT_RGBA;
    return png_image_write_to_file(&image, path.c_str(), 0, rgba.data(), 0, nullptr) != 0;
}

}  // namespace demo
