#include <gtest/gtest.h>

#include "diag/CProfiler.h"
#include "support/TestFolder.h"

namespace {

std::int64_t ticks = 0;
std::int64_t ScriptedCounter() {
    return ticks;
}
constexpr std::int64_t second = 1'000'000'000;

TEST(CProfiler, ReportsSectionsByTheirTotalTime) {
    ASSERT_EQ(platform::CounterFrequency(), second);
    const support::TestFolder folder;
    ticks = second;
    {
        CProfiler profiler("_p.txt", ScriptedCounter);
        profiler.ProfileStart("small", "ModuleA");
        ticks += second / 2;
        profiler.ProfileStop("small", "ModuleB");
        profiler.ProfileStart("never stopped", "ModuleC");
        for (const int milliseconds : {500, 250, 1000}) {
            profiler.ProfileStart("large", "ModuleD");
            ticks += second;  // lost, because the section starts again
            profiler.ProfileStart("large", "ModuleE");
            ticks += milliseconds * 1'000'000LL;
            profiler.ProfileStop("large", "ModuleD");
        }
        ticks += second * 11 / 4;
    }
    EXPECT_EQ(folder.Read("_p.txt"),
              "Profile File Started.\n\n"
              "Total program execution time: 8. seconds.\n\n -- Profiles --\n\n"
              "large - ModuleD\n Average time: 583.3333333333334 ms\n Max time: 1000. ms\n Min time: 250. ms\n"
              " Total time: 1.75 seconds\n Samples taken: 3\n Percentage of total time: 21%\n\n"
              "small - ModuleA\n Average time: 500. ms\n Max time: 500. ms\n Min time: 500. ms\n"
              " Total time: 0.5 seconds\n Samples taken: 1\n Percentage of total time: 6%\n\n"
              "never stopped - ModuleC\n Average time: 0. ms\n Max time: 0. ms\n Min time: 0. ms\n"
              " Total time: 0. seconds\n Samples taken: 0\n Percentage of total time: 0%\n\n");
}

TEST(CProfiler, StopsWithoutAStartAreWarnedOf) {
    const support::TestFolder folder;
    ticks = second;
    const std::string warning = "Warning: ProfileStop called without a matching ProfileStart\n  Name: a\n  File: M\n\n";
    CProfiler profiler("_p.txt", ScriptedCounter);
    profiler.ProfileStop("a", "M");
    EXPECT_EQ(folder.Read("_p.txt"), "Profile File Started.\n\n" + warning);
    profiler.ProfileStart("a", "M");
    ticks += 10;
    profiler.ProfileStop("a", "M");
    profiler.ProfileStop("a", "M");
    EXPECT_EQ(folder.Read("_p.txt"), "Profile File Started.\n\n" + warning + warning);
}

}  // namespace
