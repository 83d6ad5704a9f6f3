#pragma once
// Writes model texts (.mbm).
//
//     demo::ModelDrawing model;
//     model.meshes.push_back({"crate", {chunk}});
//     model.bones.push_back({"root", "crate"});
//     WriteModel(model, 0.0F)
//
// One unit is one map cell, z is up, the floor is at z = 0, and items stand on the middle of their cell. The world
// is left-handed on the screen: who looks along +y has +x at the left. On the screen, the three vertices of a triangle
// that is seen from outside follow each other clockwise.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace demo {

// Position, normal (of length 1) and the place on the texture, from (0, 0) at its top left to (1, 1).
struct ModelVertex {
    float x = 0, y = 0, z = 0;
    float normalX = 0, normalY = 0, normalZ = 1;
    float u = 0, v = 0;
};

struct ModelTexture {
    int stage = 0;         // 0 colour, 1 normal map
    std::string fileName;  // relative to the model's folder, without spaces
    bool mipmaps = true;
};

struct ModelChunk {
    std::vector<ModelTexture> textures;
    std::vector<ModelVertex> vertices;   // at most 65535
    std::vector<std::uint16_t> indices;  // three for each triangle, at most 65535

    // Two triangles of four corners, clockwise on the screen seen from outside; the normal is worked out. The
    // corners take the texture's top left, top right, bottom right and bottom left.
    void AddQuad(const std::array<std::array<float, 3>, 4>& corners);
    // Six quads around the space between two opposite corners.
    void AddBox(const std::array<float, 3>& low, const std::array<float, 3>& high);
};

struct ModelMesh {
    std::string name;  // names hold no spaces
    std::vector<ModelChunk> chunks;
};

// Exactly one bone is no other's child.
struct ModelBone {
    std::string name;
    std::string mesh{};  // empty: none
    std::vector<std::string> children{};
    std::array<float, 3> position{0, 0, 0};
    std::array<float, 9> rotation{1, 0, 0, 0, 1, 0, 0, 0, 1};  // as the file has it: the transpose of what is applied
};

struct ModelDrawing {
    std::vector<ModelMesh> meshes;
    std::vector<ModelBone> bones;
};

// The text. Its identifier, by which caches are recognised, is `randomID`, or, when that is 0, worked out from the rest
// of the text, so that it changes when the model does.
std::string WriteModel(const ModelDrawing& model, float randomID = 0.0F);

}  // namespace demo
