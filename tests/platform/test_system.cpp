#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <thread>

#include "platform/Clock.h"
#include "platform/SystemQuery.h"

namespace {

TEST(Clock, APriorityIsOnlyLoweredWhereItComesBack) {
    const int before = getpriority(PRIO_PROCESS, 0);
    platform::SetPriorityClass(platform::PriorityClass::Idle);
    const int idle = getpriority(PRIO_PROCESS, 0);
    int elsewhere = 0;
    std::thread([&elsewhere] { elsewhere = getpriority(PRIO_PROCESS, 0); }).join();
    EXPECT_EQ(elsewhere, idle);
    platform::SetPriorityClass(platform::PriorityClass::Normal);
    EXPECT_EQ(getpriority(PRIO_PROCESS, 0), before);
    EXPECT_TRUE(idle == before || idle > before);
}

TEST(IsReadable, AsksTheSystemPageByPage) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* map = mmap(nullptr, 3 * page, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(map, MAP_FAILED);
    auto* bytes = static_cast<char*>(map);
    mprotect(bytes + 2 * page, page, PROT_NONE);
    EXPECT_TRUE(platform::IsReadable(bytes, 2 * page));
    for (const std::size_t count : {2 * page + 1, 3 * page, SIZE_MAX})
        EXPECT_FALSE(platform::IsReadable(bytes, count));
    EXPECT_FALSE(platform::IsReadable(nullptr, 1));
    munmap(map, 3 * page);
}

}  // namespace
