#pragma once
// The colour names and the colour numbers of the body parts.

#include <map>
#include <string>

namespace demo {

// File contents by path below the installation folder.
std::map<std::string, std::string> ColourFiles();

}  // namespace demo
