#pragma once
// Reads model texts (.mbm).

#include <string>

namespace G {

class Bone;

// What a load gives.
struct ModelHeader {
    Bone* topBone = nullptr;  // the root of the tree, the caller's; null when the file has no bones
    float randomID = 0.0F;    // of the file's RandomID construct
};

// Builds the bones and meshes of a model, from its cache when that has the text's RandomID, else from the text, which
// then is cached. False after any error, which the error log tells; then nothing that was made is left.
bool LoadMeshMBM(const std::string& fileName, bool readableMeshes, ModelHeader& header, bool optimize);

// Where a model's cache lies: the model's path without its extension, below "gen".
std::string MeshCachePath(const std::string& fileName);

}  // namespace G
