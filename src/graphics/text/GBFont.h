#pragma once
// Font atlases: 256 character codes of the Windows western code page in a 16 x 16 grid of one texture.

#include <array>
#include <memory>
#include <string>

#include "graphics/device/DXGTexture.h"

namespace G {

struct FontAtlas {
    DXG::Texture texture;  // 16 c x 16 c texels, c from 16 to 64; empty once the graphics foundation was shut down
    std::string faceName;
    int pixelHeight = 0;
    bool centred = false;
    std::array<int, 256> widths{};  // advances in texels
};

// Shared; null, with a message, when it cannot be had. An empty face is the default one. Sizes of one class (16 to 21,
// say) share an atlas. Main thread.
std::shared_ptr<const FontAtlas> GetFont(const std::string& faceName, float size, bool centred);

}  // namespace G
