#pragma once
// The textures of floors and walls, made from the sprites of the flat game.

#include <string>
#include <vector>

#include "formats/SpriteArchive.h"
#include "world/SpriteTexels.h"
#include "world/TextureTable.h"

using WallSprites = std::vector<const SpriteImage*>;  // by wall texture number; nulls allowed; not owned

// One texture per entry, clamped in u and v, empty for an empty or unusable entry. False, with a message and `out`
// empty, when a texture cannot be made or locked.
bool ConvertFloorTiles(const SpriteArchive& floors, TextureList& out, unsigned width = 64, unsigned height = 64);
bool ConvertWallSprites(const WallSprites& walls, TextureList& out, unsigned width = 64, unsigned height = 128);

// The wall list of a dream: none, six junctions, wall.ts2, wall_1.ts2 to wall_7.ts2. Points into `archives`.
WallSprites GatherWallSprites(const std::string& dreamFolder, std::vector<SpriteArchive>& archives);

// Gathers a folder's floors, junctions and walls and hands their textures to the renderers. The folder ends in a
// separator.
void LoadDreamGraphics(const std::string& dreamFolder);
