#pragma once
// Makes a model's drawing of an OBJ scene.

#include <array>
#include <string>
#include <vector>

#include "ObjScene.h"
#include "demo/formats/ModelWriter.h"

// What the chunks of one material draw.
struct ChunkTexture {
    demo::ModelTexture texture;
    bool oneColour = false;
    std::array<float, 2> place{};  // on the texture, of every vertex of a material of one colour
};

struct ObjPlacing {
    bool zUp = false;  // in the OBJ
    float scale = 1.0F;
    float fitHeight = 0.0F;  // when above 0: instead of the scale
};

// `textures` are the materials', and the last one is for faces without. Each mesh has a bone of its own below the first
// one's, and no more triangles than a cache holds. Throws std::runtime_error for what cannot be placed.
demo::ModelDrawing MakeModel(const ObjScene& scene, const std::vector<ChunkTexture>& textures,
                             const ObjPlacing& placing, const std::string& name);
