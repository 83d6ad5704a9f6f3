#pragma once
// The pictures of the walls.

#include <map>

#include "demo/art/Canvas.h"

namespace demo {

// Seen from the front, upright, one unit wide and two high, by wall number; clear where nothing stands.
std::map<int, Canvas> PaintWalls();

}  // namespace demo
