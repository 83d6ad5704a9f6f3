#pragma once
// What becomes of the images of a sprite archive.

#include <vector>

#include "world/SpriteTexels.h"

namespace fuzz {

// Turns the first images into floors and walls, in small.
inline void ConvertSprites(const SpriteArchive& archive) {
    constexpr std::size_t mostImages = 8;
    SpriteConverter converter(8, 8);
    std::vector<std::uint32_t> texels;
    std::size_t converted = 0;
    for (std::size_t i = 0; i < archive.images.size() && converted < mostImages; ++i) {
        if (!archive.images[i]) continue;
        ++converted;
        (void)converter.Floor(*archive.images[i], texels);
        (void)converter.Wall(*archive.images[i], static_cast<int>(i), texels);
    }
}

}  // namespace fuzz
