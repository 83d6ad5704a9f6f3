#pragma once
// Sprites of the flat game resampled into square floor and upright wall textures.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "formats/SpriteArchive.h"
#include "graphics/device/DXGTexture.h"

using TextureList = std::vector<DXG::Texture>;
using WallSprites = std::vector<const SpriteImage*>;  // nulls allowed; not owned

// Where a texel at (u, v) in 0..1 lies in the sprite's unit square.
void FloorTexelToSprite(float u, float v, float& su, float& sv);
void WallTexelToSprite(float u, float v, float& su, float& sv, int index);

// One texture per entry, empty for an empty or unusable one. False, with a message, when a texture cannot be made or locked.
bool ConvertFloorTiles(const SpriteArchive& floors, TextureList& out, unsigned width = 64, unsigned height = 64);
bool ConvertWallSprites(const WallSprites& walls, TextureList& out, unsigned width = 64, unsigned height = 128);

// The texels themselves, A8R8G8B8, row by row, without a device. False for an unusable sprite.
bool FloorTexels(const SpriteImage& sprite, unsigned width, unsigned height, std::vector<std::uint32_t>& texels);
bool WallTexels(const SpriteImage& sprite, int index, unsigned width, unsigned height, std::vector<std::uint32_t>& texels);

// Gathers a folder's floors, junctions and walls and hands their textures to the renderers. The folder ends in a separator.
void LoadDreamGraphics(const std::string& dreamFolder);
