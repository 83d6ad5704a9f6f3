#pragma once
// The floor tiles around the view, grouped by texture in one vertex buffer.

#include <array>
#include <cstdint>
#include <vector>

#include "graphics/device/DXGVert.h"
#include "world/TextureTable.h"
#include "world/VisibleArea.h"

class TolvMap;

// 36 bytes, as the vertex buffer has it.
struct FloorVertex {
    float x, y, z;
    float normalX, normalY, normalZ;
    std::uint32_t color;
    float u, v;
};

// Two triangles per visible cell that has a floor, those of one floor number side by side.
struct FloorGeometry {
    static constexpr unsigned floorCount = 750;
    std::vector<FloorVertex> vertices;
    std::array<unsigned, floorCount> first{};  // vertex of each floor number
    std::array<unsigned, floorCount> count{};  // its vertices, 6 a cell
};
void BuildFloorGeometry(const TolvMap& map, const ViewCell& view, FloorGeometry& out);

class FloorRenderer {
  public:
    static constexpr unsigned slotCount = FloorGeometry::floorCount;
    static constexpr unsigned vertexCapacity = 31 * 31 * 6;

    FloorRenderer();
    ~FloorRenderer();
    FloorRenderer(const FloorRenderer&) = delete;
    FloorRenderer& operator=(const FloorRenderer&) = delete;

    // The one made last; null without one.
    static FloorRenderer* Current();

    // By floor number. The list's textures are shared.
    void SetTextures(const TextureList& list) { textures.Fill(list); }
    // The next draw fills the vertex buffer anew.
    void MarkDirty() { dirty = true; }
    void Draw(const ViewCell& view);

  private:
    void Rebuild(const ViewCell& view);

    TextureTable textures{slotCount};
    DXG::VertexBuffer vertices;
    FloorGeometry geometry;
    ViewCell builtFor;
    bool dirty = true;
};
