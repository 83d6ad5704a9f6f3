#pragma once
// What an image file says of itself in its first bytes.

#include <cstdint>
#include <string_view>

#include "platform/ImageCodec.h"

namespace platform {

struct ImageHeader {
    const char* decoder = nullptr;  // SDL_image's name of the kind; null when the file is of none of those wanted
    std::uint32_t width = 0;        // 0 when the file breaks off before it says so
    std::uint32_t height = 0;
    ImageLayout layout = ImageLayout::Other;
};

// By content; TGA, which has no mark, by the extension of `path`.
[[nodiscard]] ImageHeader ReadImageHeader(std::string_view bytes, std::string_view path);

// Whether the chunks of a PNG lead to its last one.
[[nodiscard]] bool HasPngEnd(std::string_view bytes);

}  // namespace platform
