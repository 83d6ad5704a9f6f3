#pragma once
#include "demo/world/Place.h"

namespace demo {

// A garden at the bottom of the sea, with a small archive.
Place MakeTideGarden(Cell wayBack);
// Reading rooms that float among the stars, with a large archive.
Place MakeStarLibrary(Cell wayBack);

}  // namespace demo
