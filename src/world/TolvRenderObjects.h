#pragma once
// The item renderer: the models that stand on the map's cells.

namespace TOLV {

class RenderObjects {
  public:
    RenderObjects();
    ~RenderObjects();
    RenderObjects(const RenderObjects&) = delete;
    RenderObjects& operator=(const RenderObjects&) = delete;

    // Cells with minGx <= gx < maxGx and minGy <= gy < maxGy are drawn.
    void SetRange(int newMinGx, int newMaxGx, int newMinGy, int newMaxGy);
    void Draw();

  private:
    int minGx = 0;
    int maxGx = 0;
    int minGy = 0;
    int maxGy = 0;
};

}  // namespace TOLV
