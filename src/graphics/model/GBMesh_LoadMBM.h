#pragma once
// Reads model texts (.mbm).

#include <string>

#include "graphics/model/ModelHeader.h"

namespace G {

// Builds the bones and meshes of a model, from its cache when that has the text's RandomID, else from the text, which
// then is cached. False after any error, which the error log tells; then nothing that was made is left.
bool LoadMeshMBM(const std::string& fileName, bool readableMeshes, ModelHeader& header, bool optimize);

}  // namespace G
