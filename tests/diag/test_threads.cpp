#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "diag/CMemMan.h"
#include "diag/CProfiler.h"
#include "diag/CThread.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Thread.h"
#include "support/TestFolder.h"

namespace {

int CountOf(const std::string& text, const std::string& piece) {
    int count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
        ++count;
    return count;
}

TEST(CThread, RunsUntilTheDestructorAsks) {
    const support::TestFolder folder;
    const std::size_t before = MemoryManager::Default().LiveBlocks();
    std::atomic<int> passes{0};
    {
        const CThread thread(
            [](CThread& self, void* parameter) {
                while (!self.TerminationRequested())
                    ++*static_cast<std::atomic<int>*>(parameter);
            },
            "Test", &passes);
        EXPECT_TRUE(thread.IsRunning());
        while (passes == 0)
            platform::SleepMs(1);
    }
    const int atEnd = passes;
    platform::SleepMs(5);
    EXPECT_EQ(passes, atEnd);
    EXPECT_EQ(MemoryManager::Default().LiveBlocks(), before);
    EXPECT_EQ(support::ErrorLogText(), "");
}

TEST(CThread, DestroyingAFinishedOneDoesNotSleep) {
    std::int64_t shortest = platform::CounterFrequency();
    for (int attempt = 0; attempt < 5; ++attempt) {
        auto thread = std::make_unique<CThread>([](CThread&, void*) {}, "Test", nullptr);
        while (thread->IsRunning())
            platform::SleepMs(1);
        const std::int64_t start = platform::CounterValue();
        thread.reset();
        shortest = std::min(shortest, platform::CounterValue() - start);
    }
    EXPECT_LT(shortest, platform::CounterFrequency() / 50);
}

TEST(CThread, CreationFailureLeavesANoOpAndNoLeak) {
    const support::TestFolder folder;
    const std::size_t before = MemoryManager::Default().LiveBlocks();
    platform::SetThreadStarter([](std::thread&, void (*)(void*), void*) { return false; });
    {
        const CThread thread([](CThread&, void*) {}, "Test", nullptr);
        EXPECT_FALSE(thread.IsRunning());
    }
    platform::SetThreadStarter(nullptr);
    EXPECT_EQ(support::ErrorLogWithoutStacks(), "CreateThread failed...?!?!\nCall stack:\n\n");
    EXPECT_EQ(MemoryManager::Default().LiveBlocks(), before);
}

TEST(CThread, AStuckOneIsWarnedOfOnceAfterFifteenSeconds) {
    const support::TestFolder folder;
    std::string early = "not read";
    std::thread reader([&early] {
        platform::SleepMs(14000);
        early = support::ErrorLogText();
    });
    {
        const CThread thread([](CThread&, void*) { platform::SleepMs(18000); }, "Stuck", nullptr);
    }
    reader.join();
    EXPECT_EQ(early, "");
    EXPECT_EQ(support::ErrorLogWithoutStacks(),
              "Warning: Thread still going ~15 seconds after termination request.  It may be stuck.\n"
              "  -Thread name: Stuck\nCall stack of dtor waiting loop:\n\n");
}

// What every thread of the program does all the time, done by four at once; a lock may be entered again by its owner.
TEST(Threads, LogsAllocatorProfilerStacksAndPathsAreShared) {
    const support::TestFolder folder;
    folder.Write("Data/File.txt", "x");
    const std::size_t before = MemoryManager::Default().LiveBlocks();
    CriticalSection section;
    int shared = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            for (int pass = 0; pass < 1000; ++pass) {
                const ScopedLock outer(section);
                const ScopedLock inner(section);
                ++shared;
            }
            for (int pass = 0; pass < 25; ++pass) {
                const ProfileScope scope("section " + std::to_string(i % 2));
                auto* number = new2<int>({"int", "int", "Test", 1}, pass);
                ReportMisuse("Message " + std::to_string(i) + ".\n", "  -header:\n");
                EXPECT_EQ(platform::ResolvePath("data\\file.TXT"), "Data/File.txt");
                MemoryManager::Default().CheckAll();
                delete2(number, "Test", 2);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(shared, 4000);
    EXPECT_EQ(MemoryManager::Default().LiveBlocks(), before);
    const std::string log = support::ErrorLogWithoutStacks();
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(CountOf(log, "Message " + std::to_string(i) + ".\n  -header:\n\n"), 25) << "pieces of reports mixed";
    EXPECT_EQ(CountOf(log, "\n"), 300);
}

}  // namespace
