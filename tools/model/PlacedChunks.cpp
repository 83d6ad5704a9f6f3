#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>

#include "LoadedModel.h"

namespace {

constexpr std::uint32_t colourUse = 2;
constexpr std::uint32_t placeUse = 3;

PlacedVertex ReadVertex(const unsigned char* bytes, const DXG::VertexFormat& format) {
    PlacedVertex vertex;
    std::memcpy(&vertex.position, bytes, sizeof(Vec3));
    std::memcpy(&vertex.normal, bytes + sizeof(Vec3), sizeof(Vec3));
    const unsigned char* rest = bytes + 2 * sizeof(Vec3);
    if (format.back().use == colourUse) std::memcpy(&vertex.colour, rest, sizeof vertex.colour);
    if (format.back().use == placeUse) {
        std::memcpy(&vertex.u, rest, sizeof(float));
        std::memcpy(&vertex.v, rest + sizeof(float), sizeof(float));
    }
    return vertex;
}

void Place(PlacedVertex& vertex, const Mat4& world) {
    const Vec4 position = Transform(world, {vertex.position.x, vertex.position.y, vertex.position.z, 1.0F});
    vertex.position = {position.x, position.y, position.z};
    const Vec4 normal = Transform(world, {vertex.normal.x, vertex.normal.y, vertex.normal.z, 0.0F});
    vertex.normal = {normal.x, normal.y, normal.z};
    const float length = Length(vertex.normal);
    if (length > 0.0F) vertex.normal = vertex.normal / length;
}

void ReadBuffers(const G::MeshChunk& chunk, const Mat4& world, PlacedChunk& out) {
    const DXG::BufferLock vertices = chunk.vertexBuffer.Lock(false);
    const DXG::BufferLock indices = chunk.indexBuffer.Lock();
    if (!vertices || !indices) return;
    const DXG::VertexBufferRecord& record = *chunk.vertexBuffer.Record();
    out.coloured = record.format.back().use == colourUse;
    for (std::size_t i = 0; i < record.count; ++i) {
        out.vertices.push_back(
            ReadVertex(static_cast<const unsigned char*>(vertices.Data()) + i * record.stride, record.format));
        Place(out.vertices.back(), world);
    }
    const auto* numbers = static_cast<const std::uint16_t*>(indices.Data());
    for (unsigned i = 0; i + 2 < chunk.indexBuffer.Count(); i += 3)
        if (std::max({numbers[i], numbers[i + 1], numbers[i + 2]}) < record.count)
            out.indices.insert(out.indices.end(), numbers + i, numbers + i + 3);
}

}  // namespace

std::vector<PlacedChunk> PlacedChunks(const LoadedModel& model) {
    std::vector<PlacedChunk> placed;
    const std::function<void(G::Bone&)> visit = [&](G::Bone& bone) {
        for (const G::MeshChunk& chunk : bone.mesh.Mesh().chunks) {
            PlacedChunk& out = placed.emplace_back();
            out.bone = bone.name;
            out.mesh = bone.mesh.Mesh().name;
            out.texture = model.UsersNameOf(chunk.texture0);
            if (chunk.vertexBuffer.IsCreated() && chunk.indexBuffer.IsCreated())
                ReadBuffers(chunk, bone.WorldMatrix(), out);
        }
        for (G::Bone* child : bone.Children())
            visit(*child);
    };
    if (G::Bone* top = model.model.TopBone()) visit(*top);
    return placed;
}

Bounds BoundsOf(const std::vector<PlacedChunk>& chunks) {
    Bounds bounds;
    for (const PlacedChunk& chunk : chunks)
        for (const std::uint16_t index : chunk.indices) {
            const Vec3& p = chunk.vertices[index].position;
            if (std::exchange(bounds.empty, false)) bounds.low = bounds.high = p;
            bounds.low = {std::min(bounds.low.x, p.x), std::min(bounds.low.y, p.y), std::min(bounds.low.z, p.z)};
            bounds.high = {std::max(bounds.high.x, p.x), std::max(bounds.high.y, p.y), std::max(bounds.high.z, p.z)};
        }
    return bounds;
}
