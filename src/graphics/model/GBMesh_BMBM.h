#pragma once
// Binary caches of models (.bmbm). docs/models.md draws the layout.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/model/ModelHeader.h"

namespace G {

class Bone;
struct MeshRecord;

// Where a model's cache lies: the model's path without its extension, below "gen".
std::string MeshCachePath(const std::string& fileName);

// Writes the model of `header`. False, with the reason in the error log, when it cannot be written or does not fit the
// layout's counts; then an older cache stays as it was.
bool SaveMeshBMBM(const std::string& path, const ModelHeader& header);
// The RandomID that a cache was made for; a number in -1..0 that no sound file has when there is none.
float ReadStoredIdentifier(const std::string& path);
// Builds the model of a cache; false, with the reason in the error log and nothing left over, when that fails. The
// bytes are trusted no more than any file's.
bool LoadMeshBMBM(const std::string& path, bool readableMeshes, ModelHeader& header);

// What the readers of one cache share.
struct MeshCacheReading {
    std::string fileName;
    std::string folder;  // of the model; every texture must lie below it
    bool readableMeshes = false;
    std::size_t texturesLeft = 0;
};
bool DoLoadBMBMHierarchy(std::string_view records, MeshCacheReading& reading, ModelHeader& header);
// False, with a note in the error log, for a mesh with a chunk of more indices than a cache counts.
bool IndicesFitCache(const MeshRecord& mesh);
// The body of one mesh record, appended to `bytes`.
bool BinarySave(const MeshRecord& mesh, std::string& bytes);
// Fills a fresh record; the number of bytes used, or 0.
std::size_t BinaryLoad(std::string_view bytes, MeshCacheReading& reading, MeshRecord& mesh);
// The body of one bone record.
bool SaveBone(const Bone& bone, std::string& bytes);
// Fills a new bone, with the name of its mesh, and gives the names of its children; bytes used, or 0.
std::size_t LoadBone(std::string_view bytes, Bone& bone, std::vector<std::string>& childNames);

}  // namespace G
