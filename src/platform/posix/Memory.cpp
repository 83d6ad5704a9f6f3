#include "platform/Memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace platform {

void PreferLargePages(void* memory, std::size_t bytes) {
    // Advice is for whole pages.
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = (reinterpret_cast<std::uintptr_t>(memory) + page - 1) / page * page;
    const auto end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) / page * page;
    if (begin < end) (void)madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

}  // namespace platform
