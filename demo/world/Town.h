#pragma once
#include "demo/world/Place.h"

namespace demo {

// The island of Tessaly: a square with a fountain, houses, a river with a bridge, a lake, a farm, a wood with ruins.
Place MakeTown();

}  // namespace demo
