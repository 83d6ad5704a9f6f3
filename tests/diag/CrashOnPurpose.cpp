// Crashes in the manner that its argument names; test_crash.cpp looks at what is left behind.

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>

#include "diag/CThread.h"
#include "diag/LogFile.h"
#include "diag/StackText.h"
#include "platform/CrashReport.h"

namespace {

int* volatile nowhere = nullptr;

[[gnu::noinline]] void WriteNowhere() {
    *nowhere = 1;  // crash: null
}

[[gnu::noinline]] int Endless(int depth) {
    volatile char room[4096];
    room[0] = static_cast<char>(depth);  // crash: overflow
    return depth < 0 ? 0 : Endless(depth + 1) + room[0];
}

[[gnu::noinline]] void ThrowOutOfEverything() {
    throw std::runtime_error("nobody wants this");  // crash: exception
}

// The heap finds out with its lock held.
[[gnu::noinline]] void UseBrokenHeap() {
    std::thread([] {}).join();
    auto* block = static_cast<char*>(std::malloc(100000));
    std::memset(block + malloc_usable_size(block), 0xFF, 8);
    nowhere = static_cast<int*>(std::malloc(100000));  // crash: heap
}

// The unwinder has nothing to hold on to.
[[gnu::noinline]] void LoseTheStack() {
    asm volatile("xor %%esp, %%esp\n ud2" ::: "memory");
}

void OverflowOnAThread() {
    CThread thread([](CThread&, void*) { Endless(0); }, "Crashing", nullptr);
}

void CrashOnManyThreads() {
    std::thread threads[8];
    for (std::thread& thread : threads)
        thread = std::thread(WriteNowhere);
    for (std::thread& thread : threads)
        thread.join();
}

const struct {
    const char* manner;
    void (*crash)();
} manners[] = {
    {"null", WriteNowhere},
    {"many", CrashOnManyThreads},
    {"overflow", [] { Endless(0); }},
    {"worker-overflow", OverflowOnAThread},
    {"exception", ThrowOutOfEverything},
    {"heap", UseBrokenHeap},
    {"no-stack", LoseTheStack},
};

}  // namespace

int main(int, char** arguments) {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    platform::OutliveSignals();
    platform::ReportCrashes({"_error.txt", "kelvane-stack", StackText});
    errorLog.Write("Before.\n");
    for (const auto& row : manners)
        if (std::strcmp(row.manner, arguments[1]) == 0) row.crash();
    return 0;
}
