#pragma once
// The textures of an OBJ scene's materials, put where a model's loader finds them.

#include <filesystem>
#include <string>
#include <vector>

#include "ObjModel.h"

// A name that is one word of a model text and a file name everywhere.
std::string SaneName(const std::string& name);

// One texture per material and one for faces without. Pictures that do not lie below the model's folder under a name
// that a model can have are copied there, scaled when a side is no power of two; the colours of materials without a
// picture are drawn into one more. Notes for the user are added. Throws std::runtime_error when a file cannot be
// written.
std::vector<ChunkTexture> PlaceTextures(const ObjScene& scene, const std::filesystem::path& modelFile,
                                        std::vector<std::string>& notes);
