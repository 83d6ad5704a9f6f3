// The bodies of the binary cache's records.

#include <algorithm>
#include <bit>
#include <cstring>

#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "formats/ByteCursor.h"
#include "graphics/model/GBBone.h"
#include "graphics/model/GBMesh_BMBM.h"
#include "graphics/model/MeshCacheFormat.h"
#include "graphics/model/MeshRecord.h"

namespace G {

namespace {

constexpr std::size_t most8 = 0xFF;
constexpr std::size_t most16 = 0xFFFF;
constexpr std::uint32_t lastElementUse = 3;
constexpr unsigned mipmapsFlag = 0xFF;
constexpr std::size_t indexBytes = 2;
constexpr std::size_t positionBytes = 12;
// Vertices, indices and positions go between file and memory as they are.
static_assert(std::endian::native == std::endian::little && sizeof(Vec3) == positionBytes);

// True when a count fits its field.
bool Fits(std::size_t count, std::size_t most, const char* what, const std::string& owner) {
    if (count <= most) return true;
    errorLog.Write("Note: model too large for its cache: " + std::to_string(count) + " " + what + " of " + owner +
                   ", but at most " + std::to_string(most) + " can be cached.\n");
    return false;
}

bool AppendString(std::string& bytes, const std::string& text) {
    if (!Fits(text.size(), most8, "characters in the name", text)) return false;
    AppendNumber(bytes, static_cast<std::uint32_t>(text.size()), 1);
    bytes += text;
    return true;
}

bool AppendTexture(std::string& bytes, const DXG::Texture& texture) {
    const bool mipmaps = texture.IsLoaded() && texture.Record()->mipmapped;
    AppendNumber(bytes, mipmaps ? mipmapsFlag : 0, 1);
    return AppendString(bytes, texture.FileName());
}

bool AppendVertices(std::string& bytes, const DXG::VertexBuffer& buffer, const std::string& owner) {
    if (buffer.Record() && buffer.Record()->writeOnly) {
        errorLog.Write("Bad: VB is write only... not readable... but attempt to save it.\n");
        return false;
    }
    const DXG::BufferLock lock = buffer.Lock(false);
    if (!lock) {
        errorLog.Write("Could not lock VB in BinarySave.\n");
        return false;
    }
    const DXG::VertexBufferRecord& record = *buffer.Record();
    const std::size_t formatBytes = record.format.size() * meshCacheElementBytes;
    if (!Fits(formatBytes, most8, "bytes of vertex format", owner) || !Fits(record.count, most16, "vertices", owner) ||
        !Fits(record.stride, most8, "bytes of vertex stride", owner))
        return false;
    AppendNumber(bytes, static_cast<std::uint32_t>(formatBytes), 1);
    for (const DXG::VertexFormatElement& element : record.format) {
        AppendNumber(bytes, element.type, 4);
        AppendNumber(bytes, element.use, 4);
    }
    AppendNumber(bytes, record.count, 2);
    AppendNumber(bytes, record.stride, 1);
    bytes.append(static_cast<const char*>(lock.Data()), std::size_t{record.count} * record.stride);
    return true;
}

bool AppendIndices(std::string& bytes, const DXG::IndexBuffer& buffer, const std::string& owner) {
    if (buffer.Record() && buffer.Record()->writeOnly) {
        errorLog.Write("Bad: IB is write only... not readable... but attempt to save it.\n");
        return false;
    }
    const DXG::BufferLock lock = buffer.Lock();
    if (!lock) {
        errorLog.Write("Could not lock IB in BinarySave.\n");
        return false;
    }
    if (!Fits(buffer.Record()->count, most16, "indices", owner)) return false;
    AppendNumber(bytes, buffer.Record()->count, 2);
    bytes.append(static_cast<const char*>(lock.Data()), buffer.Record()->count * indexBytes);
    return true;
}

bool AppendPositions(std::string& bytes, const MeshRecord& mesh) {
    if (!Fits(mesh.positions.size(), most16, "positions", mesh.name) ||
        !Fits(mesh.positionIndices.size(), most16, "position indices", mesh.name))
        return false;
    AppendNumber(bytes, static_cast<std::uint32_t>(mesh.positions.size()), 2);
    bytes.append(reinterpret_cast<const char*>(mesh.positions.data()), mesh.positions.size() * positionBytes);
    AppendNumber(bytes, static_cast<std::uint32_t>(mesh.positionIndices.size()), 2);
    bytes.append(reinterpret_cast<const char*>(mesh.positionIndices.data()), mesh.positionIndices.size() * indexBytes);
    return true;
}

std::string ReadString(ByteCursor& cursor) {
    return std::string(cursor.Bytes(cursor.U8()));
}

// False when the bytes end early or the name is none that a model of this folder can have. An image that cannot be
// loaded leaves an empty texture, as it does in a text.
bool ReadTexture(ByteCursor& cursor, MeshCacheReading& reading, DXG::Texture& texture) {
    const bool mipmaps = cursor.U8() != 0;
    const std::string name = ReadString(cursor);
    if (cursor.Failed()) return false;
    if (name.empty()) return true;
    const std::size_t folderBytes = reading.folder.size();
    const bool below = EqualsIgnoringCase(std::string_view(name).substr(0, folderBytes), reading.folder);
    if (!below || reading.texturesLeft == 0) return false;
    --reading.texturesLeft;
    if (ContainedPath(name.substr(0, folderBytes), name.substr(folderBytes)).empty()) return false;
    (void)texture.Load(name, DXG::TextureType::AsFile, mipmaps, true);
    return true;
}

bool ReadFormat(ByteCursor& cursor, DXG::VertexFormat& format) {
    const std::size_t formatBytes = cursor.U8();
    if (formatBytes % meshCacheElementBytes != 0) return false;
    bool usedBefore[lastElementUse + 1] = {};
    for (std::size_t i = 0; i < formatBytes / meshCacheElementBytes; ++i) {
        const std::uint32_t type = cursor.U32();
        const std::uint32_t use = cursor.U32();
        if (cursor.Failed() || use > lastElementUse || usedBefore[use]) return false;
        usedBefore[use] = true;
        format.push_back({type, use});
    }
    return !cursor.Failed();
}

bool ReadVertices(ByteCursor& cursor, bool writeOnly, DXG::VertexBuffer& buffer) {
    DXG::VertexFormat format;
    if (!ReadFormat(cursor, format)) return false;
    const unsigned count = cursor.U16();
    const unsigned stride = cursor.U8();
    const std::string_view data = cursor.Bytes(std::size_t{count} * stride);
    if (cursor.Failed()) return false;
    const bool made = stride >= DXG::StrideOf(format) && buffer.Create(count, format, stride, false, writeOnly);
    const DXG::BufferLock lock = made ? buffer.Lock(false) : DXG::BufferLock();
    if (!lock) {
        errorLog.Write("Failed to make VB in Mesh::BinaryLoad.\n");
        return false;
    }
    std::memcpy(lock.Data(), data.data(), data.size());
    return true;
}

bool ReadIndices(ByteCursor& cursor, bool writeOnly, MeshChunk& chunk) {
    const unsigned count = cursor.U16();
    const std::string_view data = cursor.Bytes(count * indexBytes);
    if (cursor.Failed()) return false;
    const bool made = chunk.indexBuffer.Create(count, false, writeOnly);
    const DXG::BufferLock lock = made ? chunk.indexBuffer.Lock() : DXG::BufferLock();
    if (!lock) {
        errorLog.Write("Failed to make IB in Mesh::BinaryLoad.\n");
        return false;
    }
    auto* indices = static_cast<std::uint16_t*>(lock.Data());
    std::memcpy(indices, data.data(), data.size());
    if (count > 0) chunk.indexLimit = HighestIndex({indices, count}) + 1U;
    return true;
}

bool ReadChunk(ByteCursor& cursor, MeshCacheReading& reading, MeshChunk& chunk) {
    const bool writeOnly = !reading.readableMeshes;
    return ReadTexture(cursor, reading, chunk.texture0) && ReadTexture(cursor, reading, chunk.texture1) &&
           ReadVertices(cursor, writeOnly, chunk.vertexBuffer) && ReadIndices(cursor, writeOnly, chunk);
}

void ReadPositions(ByteCursor& cursor, MeshRecord& mesh) {
    const std::string_view places = cursor.Bytes(cursor.U16() * positionBytes);
    const std::string_view indices = cursor.Bytes(cursor.U16() * indexBytes);
    mesh.positions.resize(places.size() / positionBytes);
    mesh.positionIndices.resize(indices.size() / indexBytes);
    std::copy(places.begin(), places.end(), reinterpret_cast<char*>(mesh.positions.data()));
    std::copy(indices.begin(), indices.end(), reinterpret_cast<char*>(mesh.positionIndices.data()));
}

}  // namespace

bool IndicesFitCache(const MeshRecord& mesh) {
    return std::all_of(mesh.chunks.begin(), mesh.chunks.end(), [&mesh](const MeshChunk& chunk) {
        const DXG::IndexBufferRecord* record = chunk.indexBuffer.Record();
        return !record || Fits(record->count, most16, "indices", mesh.name);
    });
}

bool BinarySave(const MeshRecord& mesh, std::string& bytes) {
    if (!AppendString(bytes, mesh.name) || !Fits(mesh.chunks.size(), most8, "chunks", mesh.name)) return false;
    AppendNumber(bytes, static_cast<std::uint32_t>(mesh.chunks.size()), 1);
    for (const MeshChunk& chunk : mesh.chunks)
        if (!AppendTexture(bytes, chunk.texture0) || !AppendTexture(bytes, chunk.texture1) ||
            !AppendVertices(bytes, chunk.vertexBuffer, mesh.name) ||
            !AppendIndices(bytes, chunk.indexBuffer, mesh.name))
            return false;
    return mesh.chunks.empty() || AppendPositions(bytes, mesh);
}

std::size_t BinaryLoad(std::string_view bytes, MeshCacheReading& reading, MeshRecord& mesh) {
    ByteCursor cursor(bytes);
    mesh.name = ReadString(cursor);
    const unsigned chunkCount = cursor.U8();
    for (unsigned i = 0; i < chunkCount; ++i)
        if (!ReadChunk(cursor, reading, mesh.chunks.emplace_back())) return 0;
    if (chunkCount > 0) ReadPositions(cursor, mesh);
    if (cursor.Failed()) return 0;
    mesh.TellOfUndrawnChunks(reading.fileName);
    return cursor.Position();
}

bool SaveBone(const Bone& bone, std::string& bytes) {
    AppendNumber(bytes, bone.tag, 4);
    if (!AppendString(bytes, bone.name) || !AppendString(bytes, bone.mesh.Mesh().name)) return false;
    std::vector<const Bone*> owned;
    std::copy_if(bone.Children().begin(), bone.Children().end(), std::back_inserter(owned),
                 [](const Bone* child) { return child->IsOwned(); });
    if (!Fits(owned.size(), most8, "children", bone.name)) return false;
    AppendNumber(bytes, static_cast<std::uint32_t>(owned.size()), 1);
    for (const Bone* child : owned)
        if (!AppendString(bytes, child->name)) return false;
    for (const float number : {bone.Position().x, bone.Position().y, bone.Position().z})
        AppendFloat(bytes, number);
    for (const float number : bone.Rotation().m)
        AppendFloat(bytes, number);
    return true;
}

std::size_t LoadBone(std::string_view bytes, Bone& bone, std::vector<std::string>& childNames) {
    ByteCursor cursor(bytes);
    bone.tag = cursor.U32();
    bone.name = ReadString(cursor);
    const std::string meshName = ReadString(cursor);
    childNames.resize(cursor.U8());
    for (std::string& name : childNames)
        name = ReadString(cursor);
    Vec3 position;
    Mat3 rotation;
    for (float* number : {&position.x, &position.y, &position.z})
        *number = cursor.F32();
    for (float& number : rotation.m)
        number = cursor.F32();
    if (cursor.Failed()) return 0;
    bone.SetPosition(position, true);
    bone.SetRotation(rotation, true);
    if (!meshName.empty()) bone.mesh.MutableMesh().name = meshName;
    return cursor.Position();
}

}  // namespace G
