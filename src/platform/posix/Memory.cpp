#include "platform/Memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace platform {

void FreeMemory::operator()(char* memory) const {
    std::free(memory);
}

std::unique_ptr<char[], FreeMemory> AllocateToFill(std::size_t bytes) {
    constexpr std::size_t largePage = 2U << 20;  // of this machine and its kin; on others the advice is idle
    const std::size_t onLargePages = bytes / largePage * largePage;
    void* const memory = onLargePages == 0
                             ? std::malloc(std::max<std::size_t>(bytes, 1))
                             : std::aligned_alloc(largePage, (bytes + largePage - 1) / largePage * largePage);
    if (!memory) throw std::bad_alloc();
    if (onLargePages > 0) PreferLargePages(memory, onLargePages);
    return std::unique_ptr<char[], FreeMemory>(static_cast<char*>(memory));
}

void PreferLargePages(void* memory, std::size_t bytes) {
    // Advice is for whole pages.
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = (reinterpret_cast<std::uintptr_t>(memory) + page - 1) / page * page;
    const auto end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) / page * page;
    if (begin < end) (void)madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

}  // namespace platform
