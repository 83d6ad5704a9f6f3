#pragma once
// People for a busy day: inhabitants by the hundred, who walk and talk all the time.

#include <vector>

#include "demo/world/Place.h"

namespace demo {

// Adds `count` inhabitants around the start of every place.
void AddCrowd(std::vector<Place>& places, int count);

}  // namespace demo
