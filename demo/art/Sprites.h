#pragma once
// From pictures to the sprites of the game: diamonds for floors, slanted halves for walls, in palette indices.

#include "demo/art/Canvas.h"
#include "demo/formats/PcxWriter.h"
#include "demo/formats/SpriteWriter.h"

namespace demo {

class SpriteMaker {
  public:
    explicit SpriteMaker(const RgbPalette& palette);

    // `side` x `side` with the floor's square turned by 45 degrees into it.
    [[nodiscard]] IndexedImage FloorSprite(const Canvas& picture, unsigned side = 128);
    // For the wall list's position `position`: even ones stand on a cell's low gx edge, odd ones on its low gy edge,
    // and slant the other way.
    [[nodiscard]] IndexedImage WallSprite(const Canvas& picture, int position);
    // The picture as it is.
    [[nodiscard]] IndexedImage Flat(const Canvas& picture);

  private:
    // The nearest palette entry for paint; errors are handed on to the neighbours.
    [[nodiscard]] IndexedImage ToIndices(const Canvas& sprite);
    [[nodiscard]] std::uint8_t Nearest(Shade shade);

    RgbPalette palette;
    std::vector<std::uint8_t> nearestOf;  // by 6 bits of each channel; 0: not looked up yet
};

}  // namespace demo
