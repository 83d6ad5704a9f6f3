#pragma once
// The way through a place, for those who show it by themselves.

#include <string>
#include <string_view>

#include "demo/world/Place.h"

namespace demo {

// The shortest walk from where players start to the door of the place `to`, one digit of a movement line a step
// ("9731..."), around walls, inhabitants, sundials and other doors. Empty when there is none.
std::string RoadTo(const Place& place, std::string_view to);

}  // namespace demo
