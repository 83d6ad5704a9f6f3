#pragma once
// Textured and coloured rectangles in screen pixels. Shaders are unbound; depth testing is off for the call. An empty
// texture is reported and nothing is drawn. Main thread.

#include <cstdint>

namespace DXG {
class Texture;
}

namespace G {

// Corner colours (A8R8G8B8) in the order top left, top right, bottom right, bottom left.
struct CornerColours {
    std::uint32_t topLeft;
    std::uint32_t topRight;
    std::uint32_t bottomRight;
    std::uint32_t bottomLeft;
};

// At its own size; opacity 0 to 1, clamped.
void DrawTexture(const DXG::Texture& texture, float x, float y, float opacity);
void DrawTextureStretched(const DXG::Texture& texture, float x, float y, float width, float height,
                          const CornerColours& colours);
// About its centre (x, y); radians clockwise on screen.
void DrawTextureRotated(const DXG::Texture& texture, float x, float y, float radians, float scale, float opacity);
void DrawRectangle(float x, float y, float width, float height, const CornerColours& colours);

}  // namespace G
