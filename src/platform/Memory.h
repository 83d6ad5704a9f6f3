#pragma once
// Memory for large contents.

#include <cstddef>
#include <memory>

namespace platform {

struct FreeMemory {
    void operator()(char* memory) const;
};

// Memory without contents, to be filled from front to back; from 2 MiB on it asks for large pages. Throws
// std::bad_alloc.
std::unique_ptr<char[], FreeMemory> AllocateToFill(std::size_t bytes);

// Asks the system for large pages under a buffer that will be filled from front to back, which makes its first use
// cheaper. Nothing is promised, and contents stay as they are.
void PreferLargePages(void* memory, std::size_t bytes);

}  // namespace platform
