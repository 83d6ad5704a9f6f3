#pragma once
// Hints about memory.

#include <cstddef>

namespace platform {

// Asks the system for large pages under a buffer that will be filled from front to back, which makes its first use
// cheaper. Nothing is promised, and contents stay as they are.
void PreferLargePages(void* memory, std::size_t bytes);

}  // namespace platform
