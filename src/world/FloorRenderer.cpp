#include "world/FloorRenderer.h"

#include <cstring>

#include "formats/TolvMap.h"
#include "graphics/device/DXGState.h"
#include "world/Camera.h"

namespace {

FloorRenderer* current = nullptr;

// Position, normal, colour, texture coordinates.
const DXG::VertexFormat floorFormat = {{2, 0}, {2, 1}, {4, 2}, {1, 3}};
constexpr unsigned verticesPerCell = 6;

void WriteCell(FloorVertex* out, int gx, int gy) {
    static constexpr float corners[verticesPerCell][2] = {{0, 0}, {1, 0}, {0, 1}, {1, 0}, {0, 1}, {1, 1}};
    for (const auto& [u, v] : corners) {
        const float x = static_cast<float>(gx) - 0.5F + u;
        const float y = static_cast<float>(gy) - 0.5F + v;
        *out++ = {x, y, 0.0F, 0.0F, 0.0F, -1.0F, 0xFFFFFFFFU, u, v};
    }
}

template <typename Visit>
void ForEachCell(const CellRange& range, Visit visit) {
    for (int gy = range.minGy; gy < range.maxGy; ++gy)
        for (int gx = range.minGx; gx < range.maxGx; ++gx)
            visit(gx, gy);
}

}  // namespace

static_assert(sizeof(FloorVertex) == 36);
static_assert(visibleSide * visibleSide * verticesPerCell <= FloorRenderer::vertexCapacity);

void BuildFloorGeometry(const TolvMap& map, const ViewCell& view, FloorGeometry& out) {
    const CellRange range = VisibleCells(view);
    out.count.fill(0);
    ForEachCell(range, [&](int gx, int gy) {
        const std::uint16_t floor = map.GetFloor(gx, gy);
        if (floor < FloorGeometry::floorCount) out.count[floor] += verticesPerCell;
    });
    unsigned total = 0;
    for (unsigned floor = 0; floor < FloorGeometry::floorCount; ++floor) {
        out.first[floor] = total;
        total += out.count[floor];
    }
    out.vertices.resize(total);
    std::array<unsigned, FloorGeometry::floorCount> next = out.first;
    ForEachCell(range, [&](int gx, int gy) {
        const std::uint16_t floor = map.GetFloor(gx, gy);
        if (floor >= FloorGeometry::floorCount) return;
        WriteCell(&out.vertices[next[floor]], gx, gy);
        next[floor] += verticesPerCell;
    });
}

FloorRenderer::FloorRenderer() {
    current = this;
    (void)vertices.Create(vertexCapacity, floorFormat, sizeof(FloorVertex), false, true);
}

FloorRenderer::~FloorRenderer() {
    if (current == this) current = nullptr;
}

FloorRenderer* FloorRenderer::Current() {
    return current;
}

// A buffer that cannot be locked shows nothing and is tried again with the next frame.
void FloorRenderer::Rebuild(const ViewCell& view) {
    dirty = false;
    builtFor = view;
    BuildFloorGeometry(TolvMap::Current(), view, geometry);
    const DXG::BufferLock lock = vertices.Lock(false);
    if (!lock) {
        dirty = true;
        geometry.count.fill(0);
        return;
    }
    if (!geometry.vertices.empty())
        std::memcpy(lock.Data(), geometry.vertices.data(), geometry.vertices.size() * sizeof(FloorVertex));
}

void FloorRenderer::Draw(const ViewCell& view) {
    if (!vertices.IsCreated()) return;
    DXG::SetCullMode(2);
    if (dirty || view != builtFor) Rebuild(view);
    vertices.Set();
    WorldCamera().Apply();
    for (unsigned floor = 0; floor < slotCount; ++floor) {
        const DXG::Texture* texture = geometry.count[floor] > 0 ? textures.Loaded(floor) : nullptr;
        if (!texture) continue;
        texture->Set(0);
        DXG::DrawTriangles(geometry.first[floor], geometry.count[floor] / 3);
    }
}
