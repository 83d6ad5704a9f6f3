#include "world/TolvRenderObjects.h"

#include "diag/CProfiler.h"
#include "formats/TolvMap.h"
#include "graphics/device/DXGState.h"

namespace TOLV {

namespace {
constexpr unsigned noObject = 0;
// Never drawn, whatever the item table says: the game's own maps rely on it.
constexpr unsigned hiddenObject = 2400;
}  // namespace

RenderObjects::RenderObjects() {
    const ProfileScope region("Init item renderer");
    (void)shader.Load("data\\shaders\\simple", "");
    table.Load();
}

void RenderObjects::SetRange(int newMinGx, int newMaxGx, int newMinGy, int newMaxGy) {
    minGx = newMinGx;
    maxGx = newMaxGx;
    minGy = newMinGy;
    maxGy = newMaxGy;
}

void RenderObjects::Draw() {
    DXG::SetCullMode(0);
    shader.Set();
    for (int gy = minGy; gy < maxGy; ++gy)
        for (int gx = minGx; gx < maxGx; ++gx)
            DrawCell(gx, gy);
}

void RenderObjects::DrawCell(int gx, int gy) {
    const unsigned number = TolvMap::Current().GetObject(gx, gy);
    if (number == noObject || number == hiddenObject) return;
    G::Mesh* model = table.Find(number);
    if (!model) return;
    model->TopBone()->SetPosition({static_cast<float>(gx), static_cast<float>(gy), 0.0F}, false);
    model->Draw(false);
}

}  // namespace TOLV
