#include "ObjModel.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <unordered_map>

namespace {

// A chunk counts its indices with 16 bits; 65535 are whole triangles. A mesh's cache counts all of its indices so, and
// its chunks with 8 bits.
constexpr std::size_t mostIndices = 65535;
constexpr std::size_t mostChunks = 255;

struct CornerHash {
    std::size_t operator()(const ObjCorner& corner) const {
        std::size_t hash = 0;
        for (const int part : {corner.position, corner.normal, corner.place})
            hash = (hash ^ static_cast<unsigned>(part)) * 0x9E3779B97F4A7C15ULL;
        return hash ^ hash >> 32;
    }
};

// The OBJ's axes to the world's, which is its mirror image: OBJ is right-handed. Its front, +z where y is up and -y
// where z is, becomes +y, towards the resting camera.
Vec3 ToWorld(const Vec3& v, bool zUp) {
    return zUp ? Vec3{v.x, -v.y, v.z} : Vec3{v.x, v.z, v.y};
}

bool Normalised(Vec3& v) {
    const float length = Length(v);
    if (!(length > 0.0F) || !std::isfinite(length)) return false;
    v = v * (1.0F / length);
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// In the OBJ's axes; each triangle counts by its area.
std::vector<Vec3> SmoothNormals(const ObjScene& scene) {
    std::vector<Vec3> normals(scene.positions.size());
    for (std::size_t i = 0; i + 2 < scene.corners.size(); i += 3) {
        const auto at = [&](std::size_t corner) {
            return scene.positions[static_cast<std::size_t>(scene.corners[i + corner].position)];
        };
        const Vec3 area = Cross(at(1) - at(0), at(2) - at(0));
        for (std::size_t corner = 0; corner < 3; ++corner)
            normals[static_cast<std::size_t>(scene.corners[i + corner].position)] += area;
    }
    for (Vec3& normal : normals)
        if (!Normalised(normal)) normal = {0.0F, 0.0F, 1.0F};
    return normals;
}

class Placer {
  public:
    Placer(const ObjScene& scene, const ObjPlacing& placing) : zUp(placing.zUp), scale(placing.scale) {
        if (placing.fitHeight <= 0.0F) return;
        constexpr float most = std::numeric_limits<float>::max();
        Vec3 low{most, most, most};
        Vec3 high{-most, -most, -most};
        for (const ObjCorner& corner : scene.corners) {
            const Vec3 p = ToWorld(scene.positions[static_cast<std::size_t>(corner.position)], zUp);
            low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        }
        if (!(high.z > low.z)) throw std::runtime_error("a flat model has no height to fit");
        scale = placing.fitHeight / (high.z - low.z);
        foot = {(low.x + high.x) / 2.0F, (low.y + high.y) / 2.0F, low.z};
    }

    [[nodiscard]] Vec3 operator()(const Vec3& position) const {
        const Vec3 placed = (ToWorld(position, zUp) - foot) * scale;
        if (!std::isfinite(placed.x) || !std::isfinite(placed.y) || !std::isfinite(placed.z))
            throw std::runtime_error("the model is too large for its scale");
        return placed;
    }

  private:
    const bool zUp;
    float scale;
    Vec3 foot;
};

class Maker {
  public:
    Maker(const ObjScene& toMake, const std::vector<ChunkTexture>& toDraw, const ObjPlacing& placing)
        : scene(toMake), textures(toDraw), zUp(placing.zUp), place(toMake, placing), smooth(SmoothNormals(toMake)) {}

    std::vector<demo::ModelChunk> Chunks() {
        std::vector<std::vector<std::size_t>> triangles(textures.size());
        for (std::size_t i = 0; i < scene.triangleMaterials.size(); ++i) {
            const int material = scene.triangleMaterials[i];
            triangles[material < 0 ? textures.size() - 1 : static_cast<std::size_t>(material)].push_back(i);
        }
        for (std::size_t material = 0; material < textures.size(); ++material)
            AddGroup(textures[material], triangles[material]);
        return std::move(chunks);
    }

  private:
    void AddGroup(const ChunkTexture& texture, const std::vector<std::size_t>& triangles) {
        for (std::size_t i = 0; i < triangles.size(); ++i) {
            if (i == 0 || chunks.back().indices.size() + 3 > mostIndices) {
                chunks.emplace_back().textures.push_back(texture.texture);
                known.clear();
            }
            // Turned over: the world keeps clockwise faces.
            for (const std::size_t corner : {0, 2, 1})
                chunks.back().indices.push_back(IndexOf(scene.corners[3 * triangles[i] + corner], texture));
        }
    }

    std::uint16_t IndexOf(const ObjCorner& corner, const ChunkTexture& texture) {
        demo::ModelChunk& chunk = chunks.back();
        const auto next = static_cast<std::uint16_t>(chunk.vertices.size());
        const auto [entry, isNew] = known.try_emplace(corner, next);
        if (isNew) chunk.vertices.push_back(VertexOf(corner, texture));
        return entry->second;
    }

    [[nodiscard]] demo::ModelVertex VertexOf(const ObjCorner& corner, const ChunkTexture& texture) const {
        const auto position = static_cast<std::size_t>(corner.position);
        const Vec3 p = place(scene.positions[position]);
        Vec3 normal = corner.normal < 0 ? smooth[position] : scene.normals[static_cast<std::size_t>(corner.normal)];
        if (!Normalised(normal)) normal = smooth[position];
        normal = ToWorld(normal, zUp);
        std::array<float, 2> uv = texture.place;
        if (!texture.oneColour && corner.place >= 0) {
            uv = scene.places[static_cast<std::size_t>(corner.place)];
            uv[1] = 1.0F - uv[1];
        }
        for (float& part : uv)
            if (!std::isfinite(part)) part = 0.0F;
        return {p.x, p.y, p.z, normal.x, normal.y, normal.z, uv[0], uv[1]};
    }

    const ObjScene& scene;
    const std::vector<ChunkTexture>& textures;
    const bool zUp;
    const Placer place;
    const std::vector<Vec3> smooth;
    std::vector<demo::ModelChunk> chunks;
    std::unordered_map<ObjCorner, std::uint16_t, CornerHash> known;  // of the last chunk
};

}  // namespace

demo::ModelDrawing MakeModel(const ObjScene& scene, const std::vector<ChunkTexture>& textures,
                             const ObjPlacing& placing, const std::string& name) {
    demo::ModelDrawing model;
    std::size_t indices = 0;
    for (demo::ModelChunk& chunk : Maker(scene, textures, placing).Chunks()) {
        indices += chunk.indices.size();
        const bool full =
            model.meshes.empty() || indices > mostIndices || model.meshes.back().chunks.size() == mostChunks;
        if (full) {
            const std::string number = model.meshes.empty() ? "" : "_" + std::to_string(model.meshes.size() + 1);
            model.meshes.push_back({name + number, {}});
            indices = chunk.indices.size();
        }
        model.meshes.back().chunks.push_back(std::move(chunk));
    }
    for (std::size_t i = 0; i < model.meshes.size(); ++i) {
        model.bones.push_back({i == 0 ? "root" : "part" + std::to_string(i + 1), model.meshes[i].name});
        if (i > 0) model.bones[0].children.push_back(model.bones.back().name);
    }
    constexpr std::size_t mostChildren = 255;  // in a cache
    if (model.bones[0].children.size() > mostChildren)
        throw std::runtime_error("the model is too large for the client");
    return model;
}
