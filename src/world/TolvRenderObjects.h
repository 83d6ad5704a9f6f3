#pragma once
// The item renderer: the models that stand on the map's cells.

#include "graphics/device/DXGShader.h"
#include "world/ItemTable.h"

namespace TOLV {

class RenderObjects {
  public:
    // Loads the shader and the item table.
    RenderObjects();
    RenderObjects(const RenderObjects&) = delete;
    RenderObjects& operator=(const RenderObjects&) = delete;

    // Cells with minGx <= gx < maxGx and minGy <= gy < maxGy are drawn.
    void SetRange(int newMinGx, int newMaxGx, int newMinGy, int newMaxGy);
    // With the view and projection of now. Leaves its own shader, cull mode and world transform behind.
    void Draw();

  private:
    void DrawCell(int gx, int gy);

    int minGx = 0;
    int maxGx = 0;
    int minGy = 0;
    int maxGy = 0;
    G::Shader shader;
    ItemTable table;
};

}  // namespace TOLV
