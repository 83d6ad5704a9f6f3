#pragma once
// What this process takes of the machine now.

#include <malloc.h>

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace support {

struct Usage {
    std::ptrdiff_t threads = 0;
    std::ptrdiff_t handles = 0;
    std::size_t heapBytes = 0;  // in use; 0 under a sanitizer, which has a heap of its own

    static Usage Now() {
        namespace fs = std::filesystem;
        const auto count = [](const char* folder) {
            return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
        };
        const auto heap = mallinfo2();
        return {count("/proc/self/task"), count("/proc/self/fd"), heap.uordblks + heap.hblkhd};
    }
};

}  // namespace support
