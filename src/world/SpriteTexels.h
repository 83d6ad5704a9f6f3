#pragma once
// Sprites of the flat game resampled into the texels of square floor and upright wall pictures. No device is needed.
//
// A floor's diamond is turned by 45 degrees and shrunk by 2.5 % to fill the square; a wall's slanted half sprite is
// sheared upright. Each texel is the weighted mean of the four sprite pixels around its place, without those of the
// sprite's key index: sum of weight * channel / sum of weights in 32-bit floats, plus 1/1024 so that rounding never
// costs a whole level, truncated.

#include <array>
#include <cstdint>
#include <vector>

#include "formats/SpriteArchive.h"

// Where a texel at (u, v) in 0..1 lies in the sprite's unit square.
void FloorTexelToSprite(float u, float v, float& su, float& sv);
void WallTexelToSprite(float u, float v, float& su, float& sv, int index);

// Makes the texels of sprites one after another, with the palette that is current at its creation. What depends only on
// a sprite's size is worked out once and kept for the last few sizes.
class SpriteConverter {
  public:
    // Of the pictures, in texels.
    SpriteConverter(unsigned width, unsigned height);

    // width x height A8R8G8B8 texels, row by row from the top. False, `texels` untouched, for a sprite with a side
    // below 2.
    bool Floor(const SpriteImage& sprite, std::vector<std::uint32_t>& texels);
    // `index` is the wall's texture number; odd and even walls slant differently.
    bool Wall(const SpriteImage& sprite, int index, std::vector<std::uint32_t>& texels);

  private:
    enum class Shape { None, Floor, OddWall, EvenWall };
    // The four samples of a texel start at `offset` into the sprite's pixels: (x, y), (x + 1, y), (x, y + 1), (x + 1, y
    // + 1).
    struct Tap {
        std::uint32_t offset;
        float weights[4];
    };
    struct Mapping {
        Shape shape = Shape::None;
        unsigned spriteWidth = 0;
        unsigned spriteHeight = 0;
        std::vector<Tap> taps;  // one per texel
    };
    struct alignas(16) PaletteEntry {
        float channels[4] = {0, 0, 0, 0};  // red, green, blue, and 1 so that the weights add up beside them
    };

    const Mapping& MappingFor(Shape shape, unsigned spriteWidth, unsigned spriteHeight);
    void CopyPixels(const SpriteImage& sprite);
    void CleanWallEdges(unsigned spriteWidth, unsigned spriteHeight, std::uint8_t key);
    void Resample(const Mapping& mapping, std::uint8_t key, std::vector<std::uint32_t>& texels);

    unsigned width;
    unsigned height;
    std::array<PaletteEntry, 256> palette;
    std::array<Mapping, 8> mappings;
    std::size_t nextMapping = 0;
    std::vector<std::uint8_t> pixels;  // of the sprite at hand, row by row
};

// One sprite alone, as the class makes it.
bool FloorTexels(const SpriteImage& sprite, unsigned width, unsigned height, std::vector<std::uint32_t>& texels);
bool WallTexels(const SpriteImage& sprite, int index, unsigned width, unsigned height,
                std::vector<std::uint32_t>& texels);
