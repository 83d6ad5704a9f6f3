#include "platform/posix/CrashStack.h"

#include <signal.h>
#include <sys/mman.h>

namespace platform {

namespace {

// The unwinder, the largest register sets of today's processors and a copy of the process fit several times.
constexpr std::size_t stackBytes = 256 * 1024;

}  // namespace

CrashStack::CrashStack() {
    void* mapped =
        mmap(nullptr, stackBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapped == MAP_FAILED) return;
    memory = mapped;
    stack_t stack{};
    stack.ss_sp = memory;
    stack.ss_size = stackBytes;
    sigaltstack(&stack, nullptr);
}

CrashStack::~CrashStack() {
    if (!memory) return;
    stack_t none{};
    none.ss_flags = SS_DISABLE;
    sigaltstack(&none, nullptr);
    munmap(memory, stackBytes);
}

}  // namespace platform
