#include "world/SpriteTexels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "formats/Palette.h"

namespace {

using Quad = float __attribute__((vector_size(16)));
using IntQuad = std::int32_t __attribute__((vector_size(16)));

constexpr float roundingGuard = 1.0F / 1024.0F;
constexpr std::uint8_t wallEdgeIndex = 206;

Quad Load(const float (&channels)[4]) {
    Quad quad;
    std::memcpy(&quad, channels, sizeof quad);
    return quad;
}

// The left or upper one of the two pixels that a sprite coordinate lies between, and its weight.
struct Neighbours {
    int first;
    float weight;
};
Neighbours NeighboursAt(float unitCoordinate, unsigned size) {
    const float place = unitCoordinate * static_cast<float>(size) - 0.5F;
    const int last = static_cast<int>(size) - 2;
    Neighbours found{static_cast<int>(std::floor(place)), 1.0F - std::fmod(place, 1.0F)};
    if (found.first > last) found = {last, 1.0F};
    if (found.first < 0) found = {0, 0.0F};
    return found;
}

}  // namespace

void FloorTexelToSprite(float u, float v, float& su, float& sv) {
    constexpr float cosine = 0.70710678F;  // of 45 degrees, as the sine
    constexpr float scale = 1.0F / (1.41421356F * 1.025F);
    const float px = u - 0.5F;
    const float py = v - 0.5F;
    su = (cosine * px - cosine * py) * scale + 0.5F;
    sv = (cosine * px + cosine * py) * scale + 0.5F;
}

void WallTexelToSprite(float u, float v, float& su, float& sv, int index) {
    su = 0.5F * u;
    sv = index % 2 != 0 ? 0.9F * v + 0.225F * u - 0.10F : 0.9F * v - 0.225F * u + 0.14F;
}

SpriteConverter::SpriteConverter(unsigned pictureWidth, unsigned pictureHeight)
    : width(pictureWidth), height(pictureHeight) {
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const Color& color = currentPalette[i];
        palette[i] = {
            {static_cast<float>(color.red), static_cast<float>(color.green), static_cast<float>(color.blue), 1.0F}};
    }
}

bool SpriteConverter::Floor(const SpriteImage& sprite, std::vector<std::uint32_t>& texels) {
    if (sprite.Width() < 2 || sprite.Height() < 2) return false;
    CopyPixels(sprite);
    Resample(MappingFor(Shape::Floor, sprite.Width(), sprite.Height()), sprite.keyIndex, texels);
    for (std::uint32_t& texel : texels)
        texel |= 0xFF000000U;
    return true;
}

bool SpriteConverter::Wall(const SpriteImage& sprite, int index, std::vector<std::uint32_t>& texels) {
    if (sprite.Width() < 2 || sprite.Height() < 2) return false;
    CopyPixels(sprite);
    CleanWallEdges(sprite.Width(), sprite.Height(), sprite.keyIndex);
    const Mapping& mapping =
        MappingFor(index % 2 != 0 ? Shape::OddWall : Shape::EvenWall, sprite.Width(), sprite.Height());
    Resample(mapping, sprite.keyIndex, texels);
    const std::uint8_t* fourthSample = pixels.data() + sprite.Width() + 1;
    for (std::size_t i = 0; i < texels.size(); ++i)
        texels[i] |= fourthSample[mapping.taps[i].offset] == sprite.keyIndex ? 0U : 0xFF000000U;
    return true;
}

const SpriteConverter::Mapping& SpriteConverter::MappingFor(Shape shape, unsigned spriteWidth, unsigned spriteHeight) {
    for (const Mapping& known : mappings)
        if (known.shape == shape && known.spriteWidth == spriteWidth && known.spriteHeight == spriteHeight)
            return known;
    Mapping& mapping = mappings[nextMapping];
    nextMapping = (nextMapping + 1) % mappings.size();
    mapping.shape = shape;
    mapping.spriteWidth = spriteWidth;
    mapping.spriteHeight = spriteHeight;
    mapping.taps.clear();
    mapping.taps.reserve(std::size_t{width} * height);
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x) {
            const float u = static_cast<float>(x) / static_cast<float>(width);
            const float v = static_cast<float>(y) / static_cast<float>(height);
            float su = 0.0F;
            float sv = 0.0F;
            if (shape == Shape::Floor)
                FloorTexelToSprite(u, v, su, sv);
            else
                WallTexelToSprite(u, v, su, sv, shape == Shape::OddWall ? 1 : 0);
            const Neighbours across = NeighboursAt(su, spriteWidth);
            const Neighbours down = NeighboursAt(sv, spriteHeight);
            mapping.taps.push_back(
                {static_cast<std::uint32_t>(down.first) * spriteWidth + static_cast<std::uint32_t>(across.first),
                 {down.weight * across.weight, down.weight * (1.0F - across.weight),
                  (1.0F - down.weight) * across.weight, (1.0F - down.weight) * (1.0F - across.weight)}});
        }
    return mapping;
}

void SpriteConverter::CopyPixels(const SpriteImage& sprite) {
    const std::size_t rowBytes = sprite.Width();
    pixels.assign(rowBytes * sprite.Height(), sprite.keyIndex);
    std::uint8_t* row = pixels.data();
    for (const std::vector<std::uint8_t>& source : sprite.rows) {
        std::copy_n(source.begin(), std::min(rowBytes, source.size()), row);
        row += rowBytes;
    }
}

// Pixels of the edge colour with at least two key neighbours become key pixels themselves, in reading order, so that
// one changed earlier counts for those after it.
void SpriteConverter::CleanWallEdges(unsigned spriteWidth, unsigned spriteHeight, std::uint8_t key) {
    for (unsigned y = 0; y < spriteHeight; ++y)
        for (unsigned x = 0; x < spriteWidth; ++x) {
            std::uint8_t* pixel = &pixels[std::size_t{y} * spriteWidth + x];
            if (*pixel != wallEdgeIndex) continue;
            int keys = 0;
            if (x > 0 && pixel[-1] == key) ++keys;
            if (y > 0 && *(pixel - spriteWidth) == key) ++keys;
            if (x + 1 < spriteWidth && pixel[1] == key) ++keys;
            if (y + 1 < spriteHeight && pixel[spriteWidth] == key) ++keys;
            if (keys >= 2) *pixel = key;
        }
}

// Colours without alpha. The key's palette entry is all 0 meanwhile, the weight's place included: key samples then drop
// out of both sums without a question asked.
void SpriteConverter::Resample(const Mapping& mapping, std::uint8_t key, std::vector<std::uint32_t>& texels) {
    const PaletteEntry keyEntry = palette[key];
    palette[key] = PaletteEntry();
    texels.resize(mapping.taps.size());
    const std::uint8_t* upper = pixels.data();
    const std::uint8_t* lower = upper + mapping.spriteWidth;
    const PaletteEntry* colors = palette.data();
    std::uint32_t* out = texels.data();
    for (const Tap& tap : mapping.taps) {
        const Quad sum = Load(colors[upper[tap.offset]].channels) * tap.weights[0] +
                         Load(colors[upper[tap.offset + 1]].channels) * tap.weights[1] +
                         Load(colors[lower[tap.offset]].channels) * tap.weights[2] +
                         Load(colors[lower[tap.offset + 1]].channels) * tap.weights[3];
        const float weight = sum[3];
        const Quad mean = sum / (weight > 0.0F ? weight : 1.0F) + roundingGuard;
        const IntQuad whole = __builtin_convertvector(mean, IntQuad);
        *out++ = static_cast<std::uint32_t>(whole[0] << 16 | whole[1] << 8 | whole[2]);
    }
    palette[key] = keyEntry;
}

bool FloorTexels(const SpriteImage& sprite, unsigned width, unsigned height, std::vector<std::uint32_t>& texels) {
    return SpriteConverter(width, height).Floor(sprite, texels);
}

bool WallTexels(const SpriteImage& sprite, int index, unsigned width, unsigned height,
                std::vector<std::uint32_t>& texels) {
    return SpriteConverter(width, height).Wall(sprite, index, texels);
}
