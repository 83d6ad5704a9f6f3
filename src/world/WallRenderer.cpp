#include "world/WallRenderer.h"

#include <array>

#include "formats/TolvMap.h"
#include "graphics/device/DXGImmediate.h"
#include "graphics/device/DXGState.h"
#include "world/Camera.h"

namespace {

WallRenderer* current = nullptr;

constexpr int stoneTexture = -1;

// The panel runs from (x0, y0) to (x1, y1).
void EmitPanel(float x0, float y0, float x1, float y1) {
    constexpr float wallHeight = 2.0F;
    const auto emit = [](float u, float v, float x, float y, float z) {
        DXG::IMTexCoord(u, v);
        DXG::IMPosition(x, y, z);
    };
    emit(0, 1, x0, y0, 0);
    emit(1, 1, x1, y1, 0);
    emit(0, 0, x0, y0, wallHeight);
    emit(0, 0, x0, y0, wallHeight);
    emit(1, 1, x1, y1, 0);
    emit(1, 0, x1, y1, wallHeight);
}

void EmitPanel(const WallPanel& panel) {
    const float x = static_cast<float>(panel.gx) - 0.5F;
    const float y = static_cast<float>(panel.gy) - 0.5F;
    if (panel.onLowGxEdge)
        EmitPanel(x, y, x, y + 1.0F);
    else
        EmitPanel(x, y, x + 1.0F, y);
}

}  // namespace

void CollectWallPanels(const TolvMap& map, const ViewCell& view, std::vector<WallPanel>& out) {
    out.clear();
    const CellRange range = VisibleCells(view);
    for (int gy = range.minGy; gy < range.maxGy; ++gy)
        for (int gx = range.minGx; gx < range.maxGx; ++gx) {
            const int lowX = map.GetLowXWall(gx, gy);
            if (lowX != 0) out.push_back({gx, gy, true, 2 * lowX});
            const int lowY = map.GetLowYWall(gx, gy);
            if (lowY != 0) out.push_back({gx, gy, false, 2 * lowY - 1});
        }
}

WallRenderer::WallRenderer() {
    current = this;
    (void)stone.Load("data\\walls\\stone1.bmp", DXG::TextureType::AsFile, true, true);
}

WallRenderer::~WallRenderer() {
    if (current == this) current = nullptr;
}

WallRenderer* WallRenderer::Current() {
    return current;
}

// Stone comes first, the others in the order of their first panel. Walls are opaque or cut out by their alpha, so the
// depth test makes the picture the same in any order.
void WallRenderer::GroupByTexture() {
    constexpr unsigned unranked = 0xFFFFFFFFU;
    std::array<unsigned, slotCount + 1> ranks{};  // by texture + 1
    ranks.fill(unranked);
    ranks[stoneTexture + 1] = 0;
    unsigned rankCount = 1;
    std::array<unsigned, slotCount + 2> starts{};  // by rank + 1 the panels of a rank, then by rank their first place
    for (WallPanel& panel : panels) {
        if (!textures.Loaded(panel.texture)) panel.texture = stoneTexture;
        unsigned& rank = ranks[static_cast<std::size_t>(panel.texture + 1)];
        if (rank == unranked) rank = rankCount++;
        ++starts[rank + 1];
    }
    for (std::size_t i = 1; i < starts.size(); ++i)
        starts[i] += starts[i - 1];
    grouped.resize(panels.size());
    for (const WallPanel& panel : panels)
        grouped[starts[ranks[static_cast<std::size_t>(panel.texture + 1)]]++] = panel;
}

void WallRenderer::Draw(const ViewCell& view) {
    CollectWallPanels(TolvMap::Current(), view, panels);
    GroupByTexture();
    DXG::SetCullMode(2);
    // Without the stone picture, panels in stone are plain white.
    if (stone.IsLoaded())
        stone.Set(0);
    else
        DXG::UnbindTexture(0);
    WorldCamera().Apply();
    DXG::IMBegin(DXG::primitiveTriangles);
    DXG::IMColor(1.0F, 1.0F, 1.0F, 1.0F);
    DXG::IMNormal(0.0F, 0.0F, 1.0F);
    int bound = stoneTexture;
    for (const WallPanel& panel : grouped) {
        if (panel.texture != bound) {
            DXG::IMEnd();
            bound = panel.texture;
            textures.Loaded(bound)->Set(0);
            DXG::IMBegin(DXG::primitiveTriangles);
            DXG::IMColor(1.0F, 1.0F, 1.0F, 1.0F);
            DXG::IMNormal(0.0F, 0.2F, 0.8F);
        }
        EmitPanel(panel);
    }
    DXG::IMEnd();
}
