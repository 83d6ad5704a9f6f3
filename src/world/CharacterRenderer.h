#pragma once
// Each character as a stack of arrowheads that point where it faces.

#include <cstdint>
#include <vector>

#include "world/VisibleArea.h"

struct Character;

// Nine arrowheads of three corners, the tip first.
struct ArrowVertex {
    float x;
    float y;
    float z;
    std::uint32_t color;  // A8R8G8B8
};
void AppendArrowheads(const Character& character, std::vector<ArrowVertex>& out);

class CharacterRenderer {
  public:
    void Draw(const ViewCell& view);

  private:
    std::vector<ArrowVertex> arrows;  // kept for its room
};
