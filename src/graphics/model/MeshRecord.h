#pragma once
// Meshes: named lists of chunks of triangles, shared by the bones that carry them.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "graphics/device/DXGTexture.h"
#include "graphics/device/DXGVert.h"
#include "math/VectorMatrix.h"

namespace G {

// What one load of a model counts.
struct ModelStatistics {
    unsigned triangles = 0;
    unsigned totalBones = 0;
    unsigned wastedBones = 0;
    unsigned graphicOriginal = 0;  // vertices
    unsigned graphicOptimized = 0;
    unsigned positionOriginal = 0;
    unsigned positionOptimized = 0;

    // Of the load under way.
    static ModelStatistics& Current();
};

// A list of triangles; a copy shares buffers and textures.
struct MeshChunk {
    DXG::VertexBuffer vertexBuffer;
    DXG::IndexBuffer indexBuffer;
    DXG::Texture texture0;  // colour
    DXG::Texture texture1;  // normal map
    // Highest index + 1, as loaded or welded. A chunk with an index beyond its vertices is not drawn, because nothing
    // says what a device reads there.
    unsigned indexLimit = 0;
};

struct MeshRecord {
    int referenceCount = 1;
    std::string name;
    std::vector<MeshChunk> chunks;
    // All chunks as bare positions, welded, and their triangles.
    std::vector<Vec3> positions;
    std::vector<std::uint16_t> positionIndices;

    // Welds every chunk into new buffers. They can be read by the CPU when `keepReadable` is true and the old ones
    // could. Chunks that cannot be read are reported and left alone. `areWelded` says that the welder would find no
    // equal vertices any more, so that it need not look.
    void Optimize(bool keepReadable, bool areWelded = false);
    // Builds positions and positionIndices; reports and changes nothing when a buffer cannot be read.
    void RebuildPositionsMesh();
    // Sets every chunk's indexLimit from its index buffer.
    void MeasureIndices();
    // Once per load, of the chunks that will not be drawn.
    void TellOfUndrawnChunks(const std::string& fileName) const;
};

// 0 of none.
std::uint16_t HighestIndex(std::span<const std::uint16_t> indices);

// Name of a texture's normal map: "_norm" before the extension.
std::string NormalMapName(const std::string& textureName);

// A counted reference to a mesh, with this reference's own textures for some chunks.
class MeshReference {
  public:
    struct Override {
        std::uint32_t chunk = 0;
        DXG::Texture texture0;
        DXG::Texture texture1;
    };

    // An empty, nameless mesh of its own.
    MeshReference() = default;
    ~MeshReference() { ReleaseMesh(); }
    MeshReference(const MeshReference& other);  // shares the mesh, copies the overrides
    MeshReference& operator=(const MeshReference& other);

    [[nodiscard]] const MeshRecord& Mesh() const;
    // For writing; made by the first call on a fresh reference.
    MeshRecord& MutableMesh();
    // Takes another reference's mesh; this one's overrides go.
    void ShareMesh(MeshReference& other);
    // A mesh of the same name with copies of the buffers' contents, which can be read when `keepReadable` is true; the
    // textures are shared. False with a message, and `copy` fresh, when a buffer is write-only.
    bool Duplicate(bool keepReadable, MeshReference& copy) const;

    // One per chunk; replaces the one before.
    void SetOverride(std::uint32_t chunk, const DXG::Texture& texture0, const DXG::Texture& texture1);
    [[nodiscard]] const std::vector<Override>& Overrides() const { return overrides; }
    // Draws every chunk with the transforms and the shader of now. A missing colour texture is told when `warn` is
    // true.
    void Draw(bool warn) const;

  private:
    void ReleaseMesh();
    void DrawChunk(std::uint32_t number, bool warn) const;

    MeshRecord* mesh = nullptr;  // null: empty and never written to
    std::vector<Override> overrides;
};

}  // namespace G
