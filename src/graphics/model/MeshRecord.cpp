#include "graphics/model/MeshRecord.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "graphics/model/MeshWeld.h"
#include "graphics/model/ProfileRegion.h"

namespace G {

namespace {

constexpr std::size_t positionBytes = 12;
constexpr std::size_t indexBytes = 2;

bool IsWriteOnly(const MeshChunk& chunk) {
    return (chunk.vertexBuffer.Record() && chunk.vertexBuffer.Record()->writeOnly) ||
           (chunk.indexBuffer.Record() && chunk.indexBuffer.Record()->writeOnly);
}

std::size_t StrideOf(const MeshChunk& chunk) {
    return chunk.vertexBuffer.Record() ? chunk.vertexBuffer.Record()->stride : 0;
}

// The chunk's data, welded.
struct WeldedChunk {
    WeldedVertices vertices;
    std::vector<std::uint16_t> indices;
};

bool Weld(const MeshChunk& chunk, bool isWelded, WeldedChunk& out) {
    const DXG::BufferLock vertices = chunk.vertexBuffer.Lock(false);
    const DXG::BufferLock indices = chunk.indexBuffer.Lock();
    if (!vertices || !indices) {
        errorLog.Write("Lock on VB/IB failed... skipping chunk opt.\n");
        return false;
    }
    const auto* bytes = static_cast<const unsigned char*>(vertices.Data());
    const auto* numbers = static_cast<const std::uint16_t*>(indices.Data());
    out.indices.assign(numbers, numbers + chunk.indexBuffer.Count());
    const std::size_t count = chunk.vertexBuffer.Count();
    const std::size_t stride = StrideOf(chunk);
    if (!isWelded) {
        out.vertices = WeldVertices(bytes, count, stride, out.indices);
        return true;
    }
    out.vertices = {std::make_unique_for_overwrite<unsigned char[]>(count * stride), count};
    std::memcpy(out.vertices.bytes.get(), bytes, count * stride);
    return true;
}

// False when either buffer could not be made and filled.
bool MakeBuffers(const MeshChunk& old, const WeldedChunk& welded, bool writeOnly, MeshChunk& made) {
    const DXG::VertexBufferRecord& vertices = *old.vertexBuffer.Record();
    made.vertexBuffer.Create(static_cast<unsigned>(welded.vertices.count), vertices.format, vertices.stride,
                             vertices.dynamic, writeOnly);
    const DXG::BufferLock vertexLock = made.vertexBuffer.Lock(false);
    if (vertexLock)
        std::memcpy(vertexLock.Data(), welded.vertices.bytes.get(), welded.vertices.count * vertices.stride);
    else
        errorLog.Write("bad... couldn't lock newly created vb during mesh optimization.\n");
    made.indexBuffer.Create(static_cast<unsigned>(welded.indices.size()), old.indexBuffer.Record()->dynamic, writeOnly);
    const DXG::BufferLock indexLock = made.indexBuffer.Lock();
    if (indexLock)
        std::memcpy(indexLock.Data(), welded.indices.data(), welded.indices.size() * indexBytes);
    else
        errorLog.Write("bad... couldn't lock newly created ib during mesh optimization.\n");
    return vertexLock && indexLock;
}

void OptimizeChunk(MeshChunk& chunk, bool keepReadable, bool isWelded) {
    if (IsWriteOnly(chunk)) return ReportWithStack("Cannot optimize mesh chunk.  Vertex/Index buffer not readable.\n");
    ModelStatistics& statistics = ModelStatistics::Current();
    statistics.graphicOriginal += chunk.vertexBuffer.Count();
    WeldedChunk welded;
    if (!Weld(chunk, isWelded, welded)) return;
    MeshChunk made;
    // Without memory for new buffers the old ones still draw the same triangles.
    if (MakeBuffers(chunk, welded, !keepReadable, made)) {
        chunk.vertexBuffer = made.vertexBuffer;
        chunk.indexBuffer = made.indexBuffer;
        chunk.indexLimit = welded.indices.empty() ? 0 : HighestIndex(welded.indices) + 1U;
    }
    statistics.graphicOptimized += chunk.vertexBuffer.Count();
    statistics.triangles += chunk.indexBuffer.Count() / 3;
}

void AppendIndices(const MeshChunk& chunk, std::size_t firstVertex, std::vector<std::uint16_t>& all) {
    const DXG::BufferLock lock = chunk.indexBuffer.Lock();
    if (!lock) return errorLog.Write("RebuildPositionsMesh: lock IB failed??\n");
    const auto* indices = static_cast<const std::uint16_t*>(lock.Data());
    for (unsigned i = 0; i < chunk.indexBuffer.Count(); ++i)
        all.push_back(static_cast<std::uint16_t>(indices[i] + firstVertex));
}

void AppendPositions(const MeshChunk& chunk, std::vector<Vec3>& all) {
    static_assert(sizeof(Vec3) == positionBytes);
    const DXG::BufferLock lock = chunk.vertexBuffer.Lock(false);
    const std::size_t stride = StrideOf(chunk);
    if (!lock || stride < positionBytes) return errorLog.Write("RebuildPositionsMesh: lock VB failed??\n");
    const auto* bytes = static_cast<const unsigned char*>(lock.Data());
    const std::size_t first = all.size();
    all.resize(first + chunk.vertexBuffer.Count());
    for (auto position = all.begin() + static_cast<std::ptrdiff_t>(first); position != all.end(); ++position) {
        std::memcpy(&*position, bytes, positionBytes);
        bytes += stride;
    }
}

unsigned HighestIndexOf(const DXG::IndexBuffer& buffer) {
    const DXG::BufferLock lock = buffer.Lock();
    return lock ? HighestIndex({static_cast<const std::uint16_t*>(lock.Data()), buffer.Count()}) : 0;
}

// Copies the buffers of a chunk that can be read; its textures stay shared.
void CopyBuffers(MeshChunk& chunk, bool keepReadable) {
    const MeshChunk old = chunk;
    chunk.vertexBuffer.Release();
    chunk.indexBuffer.Release();
    if (const DXG::VertexBufferRecord* record = old.vertexBuffer.Record()) {
        chunk.vertexBuffer.Create(record->count, record->format, record->stride, record->dynamic, !keepReadable);
        const DXG::BufferLock from = old.vertexBuffer.Lock(false);
        const DXG::BufferLock to = chunk.vertexBuffer.Lock(false);
        if (from && to)
            std::memcpy(to.Data(), from.Data(), std::size_t{record->count} * record->stride);
        else
            errorLog.Write("Could not lock vb in Mesh::Duplicate.\n");
    }
    if (const DXG::IndexBufferRecord* record = old.indexBuffer.Record()) {
        chunk.indexBuffer.Create(record->count, record->dynamic, !keepReadable);
        const DXG::BufferLock from = old.indexBuffer.Lock();
        const DXG::BufferLock to = chunk.indexBuffer.Lock();
        if (from && to)
            std::memcpy(to.Data(), from.Data(), record->count * indexBytes);
        else
            errorLog.Write("Could not lock ib in Mesh::Duplicate.\n");
    }
}

}  // namespace

ModelStatistics& ModelStatistics::Current() {
    static ModelStatistics statistics;
    return statistics;
}

std::uint16_t HighestIndex(std::span<const std::uint16_t> indices) {
    // Eight side by side, for which compilers have instructions.
    std::array<std::uint16_t, 8> highest{};
    for (; indices.size() >= highest.size(); indices = indices.subspan(highest.size()))
        for (std::size_t lane = 0; lane < highest.size(); ++lane)
            highest[lane] = std::max(highest[lane], indices.data()[lane]);
    for (const std::uint16_t index : indices)
        highest[0] = std::max(highest[0], index);
    return *std::max_element(highest.begin(), highest.end());
}

void MeshRecord::Optimize(bool keepReadable, bool areWelded) {
    for (MeshChunk& chunk : chunks)
        OptimizeChunk(chunk, keepReadable, areWelded);
}

void MeshRecord::RebuildPositionsMesh() {
    std::vector<Vec3> allPositions;
    std::vector<std::uint16_t> allIndices;
    {
        const ProfileRegion region("Build Position Mesh", "GBMesh");
        for (const MeshChunk& chunk : chunks) {
            if (IsWriteOnly(chunk))
                return WriteReport(errorLog, "RebuildPositionsMesh failing... some ib/vb are write-only.\n",
                                   "  -Call stack:\n", false);
            AppendIndices(chunk, allPositions.size(), allIndices);
            AppendPositions(chunk, allPositions);
        }
    }
    ModelStatistics& statistics = ModelStatistics::Current();
    statistics.positionOriginal += static_cast<unsigned>(allPositions.size());
    const ProfileRegion region("Optimize Position Mesh", "GBMesh");
    const WeldedVertices welded = WeldVertices(reinterpret_cast<const unsigned char*>(allPositions.data()),
                                               allPositions.size(), positionBytes, allIndices);
    positions.resize(welded.count);
    if (welded.count > 0) std::memcpy(positions.data(), welded.bytes.get(), welded.count * positionBytes);
    positionIndices = std::move(allIndices);
    statistics.positionOptimized += static_cast<unsigned>(positions.size());
}

void MeshRecord::MeasureIndices() {
    for (MeshChunk& chunk : chunks)
        if (chunk.indexBuffer.Count() > 0) chunk.indexLimit = HighestIndexOf(chunk.indexBuffer) + 1U;
}

void MeshRecord::TellOfUndrawnChunks(const std::string& fileName) const {
    for (const MeshChunk& chunk : chunks)
        if (chunk.vertexBuffer.IsCreated() && chunk.indexLimit > chunk.vertexBuffer.Count())
            errorLog.Write("Bad: a chunk of mesh " + name +
                           " has an index beyond its vertices and is not drawn: " + fileName + "\n");
}

std::string NormalMapName(const std::string& textureName) {
    return WithoutExtension(textureName) + "_norm." + ExtensionOf(textureName);
}

MeshReference::MeshReference(const MeshReference& other) : mesh(other.mesh), overrides(other.overrides) {
    if (mesh) ++mesh->referenceCount;
}

MeshReference& MeshReference::operator=(const MeshReference& other) {
    if (this == &other) return *this;
    if (other.mesh) ++other.mesh->referenceCount;
    ReleaseMesh();
    mesh = other.mesh;
    overrides = other.overrides;
    return *this;
}

const MeshRecord& MeshReference::Mesh() const {
    static const MeshRecord empty;
    return mesh ? *mesh : empty;
}

MeshRecord& MeshReference::MutableMesh() {
    if (!mesh) mesh = new2<MeshRecord>({"G::Mesh", "G::Mesh", "GBMesh", __LINE__});
    return *mesh;
}

void MeshReference::ShareMesh(MeshReference& other) {
    MeshRecord& shared = other.MutableMesh();
    ++shared.referenceCount;
    ReleaseMesh();
    mesh = &shared;
    overrides.clear();
}

void MeshReference::ReleaseMesh() {
    if (mesh && --mesh->referenceCount == 0) delete2(mesh, "GBMesh", __LINE__);
    mesh = nullptr;
}

bool MeshReference::Duplicate(bool keepReadable, MeshReference& copy) const {
    copy = MeshReference();
    const MeshRecord& from = Mesh();
    if (std::any_of(from.chunks.begin(), from.chunks.end(), IsWriteOnly)) {
        errorLog.Write("Attempt to duplicate a mesh, but it is write-only so can't.\n");
        return false;
    }
    MeshRecord& to = copy.MutableMesh();
    to = from;
    to.referenceCount = 1;
    for (MeshChunk& chunk : to.chunks)
        CopyBuffers(chunk, keepReadable);
    return true;
}

void MeshReference::SetOverride(std::uint32_t chunk, const DXG::Texture& texture0, const DXG::Texture& texture1) {
    for (Override& known : overrides)
        if (known.chunk == chunk) {
            known.texture0 = texture0;
            known.texture1 = texture1;
            return;
        }
    overrides.push_back({chunk, texture0, texture1});
}

void MeshReference::Draw(bool warn) const {
    for (std::uint32_t i = 0; i < Mesh().chunks.size(); ++i)
        DrawChunk(i, warn);
}

void MeshReference::DrawChunk(std::uint32_t number, bool warn) const {
    const MeshChunk& chunk = Mesh().chunks[number];
    chunk.vertexBuffer.Set();
    chunk.indexBuffer.Set();
    const auto replaced = std::find_if(overrides.begin(), overrides.end(),
                                       [number](const Override& entry) { return entry.chunk == number; });
    const DXG::Texture& texture0 = replaced == overrides.end() ? chunk.texture0 : replaced->texture0;
    const DXG::Texture& texture1 = replaced == overrides.end() ? chunk.texture1 : replaced->texture1;
    if (texture0.IsLoaded())
        texture0.Set(0);
    else if (warn)
        ReportWithStack("Warning: Mesh being drawn without an explicitely set texture.\n");
    if (texture1.IsLoaded()) texture1.Set(1);
    // What could not be bound would draw another chunk's triangles.
    const bool whole = chunk.vertexBuffer.IsCreated() && chunk.indexBuffer.IsCreated();
    if (whole && chunk.indexLimit <= chunk.vertexBuffer.Count()) DXG::DrawIndexed(chunk.indexBuffer.Count() / 3);
}

}  // namespace G
