#pragma once
// Wavefront OBJ files with their materials.

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "math/VectorMatrix.h"

struct ObjMaterial {
    std::string name;
    std::array<float, 3> colour{0.8F, 0.8F, 0.8F};  // 0 to 1
    std::string picture;                            // as the material file has it; empty: none
    std::filesystem::path folder;                   // that `picture` is relative to
};

// Numbers in the lists of the scene, all within them; -1: none.
struct ObjCorner {
    int position = -1;
    int normal = -1;
    int place = -1;
    bool operator==(const ObjCorner&) const = default;
};

struct ObjScene {
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    std::vector<std::array<float, 2>> places;  // on the texture, v from the bottom up
    std::vector<ObjCorner> corners;            // three for each triangle, counter-clockwise seen from outside
    std::vector<int> triangleMaterials;        // -1: none
    std::vector<ObjMaterial> materials;
    std::vector<std::string> notes;  // for the user
};

// Throws std::runtime_error with a line for the user, naming the file as `given`.
ObjScene ReadObj(const std::filesystem::path& path, const std::string& given);
