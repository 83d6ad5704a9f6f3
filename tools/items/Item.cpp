#include "tools/items/Item.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <string_view>
#include <utility>

namespace items {

namespace {

// A thousandth of a cell is far below a pixel, a hundredth is enough for normals; both keep the files small.
constexpr float fine = 1000.0F;
constexpr float coarse = 100.0F;

float Rounded(float value, float steps = fine) {
    const float rounded = std::round(value * steps) / steps;
    return rounded == 0.0F ? 0.0F : rounded;
}

demo::ModelChunk ChunkOf(const Material& material, const Shape& shape) {
    demo::ModelChunk chunk;
    chunk.textures.push_back({0, material.file, material.mipmaps});
    std::map<std::array<float, 8>, std::uint16_t> known;
    for (const Corner& c : shape.corners) {
        const Vec3& p = c.position;
        const Vec3& n = c.normal;
        const std::array<float, 8> v = {Rounded(p.x),         Rounded(p.y),         Rounded(p.z), Rounded(n.x, coarse),
                                        Rounded(n.y, coarse), Rounded(n.z, coarse), Rounded(c.u), Rounded(c.v)};
        const auto [place, isNew] = known.emplace(v, static_cast<std::uint16_t>(chunk.vertices.size()));
        if (isNew) chunk.vertices.push_back({v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]});
        chunk.indices.push_back(place->second);
    }
    return chunk;
}

}  // namespace

Item::Item(std::string itemName) : name(std::move(itemName)) {
    bones.push_back({name, {}, {}, {1, 0, 0, 0, 1, 0, 0, 0, 1}, {}});
}

Item& Item::Bone(const std::string& boneName, const std::string& parent, const Vec3& position, Axis axis,
                 float degrees) {
    const float c = Rounded(CosDegrees(degrees));
    const float s = Rounded(SinDegrees(degrees));
    // The file holds the transpose of the rotation.
    std::array<float, 9> rotation = {c, s, 0, -s, c, 0, 0, 0, 1};
    if (axis == Axis::X) rotation = {1, 0, 0, 0, c, s, 0, -s, c};
    if (axis == Axis::Y) rotation = {c, 0, -s, 0, 1, 0, s, 0, c};
    for (float& part : rotation)
        part += 0.0F;
    bones.push_back({boneName, parent, {Rounded(position.x), Rounded(position.y), Rounded(position.z)}, rotation, {}});
    return *this;
}

Item& Item::Put(const Material& material, const Shape& shape) {
    std::vector<Surface>& surfaces = bones.back().surfaces;
    const auto same = std::find_if(surfaces.begin(), surfaces.end(), [&](const Surface& surface) {
        return std::string_view(surface.material.file) == material.file;
    });
    if (same == surfaces.end())
        surfaces.push_back({material, shape});
    else
        same->shape.Add(shape);
    return *this;
}

demo::ModelDrawing Item::Drawing() const {
    demo::ModelDrawing drawing;
    for (const BoneRecord& record : bones) {
        demo::ModelBone bone;
        bone.name = record.name;
        bone.position = {record.position.x, record.position.y, record.position.z};
        bone.rotation = record.rotation;
        for (const BoneRecord& other : bones)
            if (other.parent == record.name) bone.children.push_back(other.name);
        if (!record.surfaces.empty()) {
            bone.mesh = record.name;
            drawing.meshes.push_back({record.name, {}});
            for (const Surface& surface : record.surfaces)
                drawing.meshes.back().chunks.push_back(ChunkOf(surface.material, surface.shape));
        }
        drawing.bones.push_back(bone);
    }
    return drawing;
}

std::size_t Item::TriangleCount() const {
    std::size_t corners = 0;
    for (const BoneRecord& bone : bones)
        for (const Surface& surface : bone.surfaces)
            corners += surface.shape.corners.size();
    return corners / 3;
}

}  // namespace items
