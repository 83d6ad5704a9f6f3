#pragma once
// The pictures of the floors.

#include <map>

#include "demo/art/Canvas.h"

namespace demo {

// Seen from above, square, u along gx and v along gy, by floor number; edges meet their neighbours' edges.
std::map<int, Canvas> PaintFloors();
// Those of the extra archive, by their number there (floor number - 500).
std::map<int, Canvas> PaintExtraFloors();

}  // namespace demo
