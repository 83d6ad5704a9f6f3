#pragma once
// The upright wall panels around the view.

#include <vector>

#include "world/TextureTable.h"
#include "world/VisibleArea.h"

class TolvMap;

// A panel on the low-gx edge of a cell (along gy) or on its low-gy edge (along gx), 2 units high.
struct WallPanel {
    int gx;
    int gy;
    bool onLowGxEdge;
    int texture;  // 2 w on the low-gx edge, 2 w - 1 on the low-gy edge; negative for wall numbers above 127
};
// The panels of the visible cells, gy ascending, then gx, low-gx edge first.
void CollectWallPanels(const TolvMap& map, const ViewCell& view, std::vector<WallPanel>& out);

class WallRenderer {
  public:
    static constexpr unsigned slotCount = 400;

    WallRenderer();
    ~WallRenderer();
    WallRenderer(const WallRenderer&) = delete;
    WallRenderer& operator=(const WallRenderer&) = delete;

    // The one made last; null without one.
    static WallRenderer* Current();

    // By wall texture number. The list's textures are shared.
    void SetTextures(const TextureList& list) { textures.Fill(list); }
    // Each texture is bound once: its panels are drawn together, in the order of their cells. Panels whose texture is
    // missing are drawn in stone.
    void Draw(const ViewCell& view);

  private:
    void GroupByTexture();

    TextureTable textures{slotCount};
    DXG::Texture stone;
    std::vector<WallPanel> panels;   // kept for their room
    std::vector<WallPanel> grouped;  // stone first, then texture by texture
};
