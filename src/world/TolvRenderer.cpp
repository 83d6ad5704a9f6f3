#include "world/TolvRenderer.h"

#include "diag/CMemMan.h"
#include "graphics/device/DXGImmediate.h"
#include "graphics/device/DXGState.h"
#include "graphics/model/GBMesh.h"
#include "input/KeyboardStateManager.h"
#include "session/TolvDataManager.h"
#include "session/WorldPort.h"
#include "world/Camera.h"
#include "world/CharacterRenderer.h"
#include "world/FloorRenderer.h"
#include "world/MarkerRenderer.h"
#include "world/TolvGfxLoader.h"
#include "world/TolvRenderObjects.h"
#include "world/WallRenderer.h"

namespace {

constexpr std::uint8_t reloadItemsKey = 68;  // F10

struct WorldState {
    FloorRenderer* floors = nullptr;
    CharacterRenderer* characters = nullptr;
    WallRenderer* walls = nullptr;
    TOLV::RenderObjects* items = nullptr;
    MarkerRenderer markers;
    ViewCell view;
    ViewCell hovered;
};
WorldState& World() {
    static WorldState world;
    return world;
}

class WorldOfTheSession : public WorldPort {
  public:
    void MarkFloorsDirtyNear(int gx, int gy) override {
        const WorldState& world = World();
        if (world.floors && IsNearView(world.view, gx, gy)) world.floors->MarkDirty();
    }
    void LoadDreamGraphics(const std::string& folder) override { ::LoadDreamGraphics(folder); }
};

TOLV::RenderObjects* NewItems() {
    return new2<TOLV::RenderObjects>({"TOLV::RenderObjects", "TOLV::RenderObjects", "TolvRenderer", __LINE__});
}

template <typename T>
void Destroy(T*& object) {
    if (object) delete2(object, "TolvRenderer", __LINE__);
    object = nullptr;
}

void DrawItems(WorldState& world) {
    SetWorldViewport();
    WorldCamera().Apply();
    if (!world.items) return;
    const CellRange range = VisibleCells(world.view);
    world.items->SetRange(range.minGx, range.maxGx, range.minGy, range.maxGy);
    world.items->Draw();
}

void EmitSquare(const ViewCell& cell, float z) {
    const float left = static_cast<float>(cell.gx) - 0.5F;
    const float low = static_cast<float>(cell.gy) - 0.5F;
    DXG::IMPosition(left, low, z);
    DXG::IMPosition(left + 1.0F, low, z);
    DXG::IMPosition(left, low + 1.0F, z);
    DXG::IMPosition(left + 1.0F, low, z);
    DXG::IMPosition(left, low + 1.0F, z);
    DXG::IMPosition(left + 1.0F, low + 1.0F, z);
}

void DrawHover(const ViewCell& hovered) {
    DXG::SetCullMode(2);
    DXG::SetWorld(Identity());
    SetWorldViewport();
    WorldCamera().Apply();
    DXG::UnbindTexture(0);
    DXG::UnbindShaders();
    DXG::IMBegin(DXG::primitiveTriangles);
    DXG::IMColor(0.0F, 0.0F, 0.0F, 0.25F);
    EmitSquare(hovered, 0.03F);
    DXG::IMColor(1.0F, 1.0F, 1.0F, 0.2F);
    EmitSquare(hovered, 0.06F);
    DXG::IMEnd();
}

}  // namespace

bool TolvRenderer::Init() {
    WorldState& world = World();
    if (!world.floors) {
        world.floors = new2<FloorRenderer>({"FloorRenderer", "FloorRenderer", "TolvRenderer", __LINE__});
        world.characters =
            new2<CharacterRenderer>({"CharacterRenderer", "CharacterRenderer", "TolvRenderer", __LINE__});
        world.walls = new2<WallRenderer>({"WallRenderer", "WallRenderer", "TolvRenderer", __LINE__});
        world.items = NewItems();
        world.markers.Create();
    }
    UpdateWorldCamera(999.0F);
    return true;
}

void TolvRenderer::Update(float seconds) {
    WorldState& world = World();
    UpdateWorldCamera(seconds);
    TolvDataManager::Default().GetViewPosition(world.view.gx, world.view.gy);
    if (!world.items || !KeyboardStateManager::Default().WasKeyPressed(reloadItemsKey)) return;
    Destroy(world.items);
    G::EmptyModelRegistry();  // the model files are read again
    world.items = NewItems();
}

void TolvRenderer::Render() {
    WorldState& world = World();
    if (!world.floors) return;
    SetWorldViewport();
    DXG::UnbindShaders();
    // Floors and walls stand in world units; 2D drawing and models may have left something else.
    DXG::SetWorld(Identity());
    world.floors->Draw(world.view);
    world.walls->Draw(world.view);
    world.characters->Draw(world.view);
    DrawItems(world);
    DrawHover(world.hovered);
    world.markers.Draw(world.view);
}

void TolvRenderer::SetHoverCell(int gx, int gy) {
    World().hovered = {gx, gy};
}

void TolvRenderer::Shutdown() {
    WorldState& world = World();
    Destroy(world.floors);
    Destroy(world.characters);
    Destroy(world.walls);
    Destroy(world.items);
    world.markers.Destroy();
}

WorldPort& TolvRenderer::Port() {
    static WorldOfTheSession port;
    return port;
}
