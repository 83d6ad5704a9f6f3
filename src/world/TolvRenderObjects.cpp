#include "world/TolvRenderObjects.h"

namespace TOLV {

RenderObjects::RenderObjects() = default;
RenderObjects::~RenderObjects() = default;

void RenderObjects::SetRange(int newMinGx, int newMaxGx, int newMinGy, int newMaxGy) {
    minGx = newMinGx;
    maxGx = newMaxGx;
    minGy = newMinGy;
    maxGy = newMaxGy;
}

// Models are not placed yet.
void RenderObjects::Draw() {}

}  // namespace TOLV
