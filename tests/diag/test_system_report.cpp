#include <gtest/gtest.h>

#include <cstring>

#include "diag/SystemReport.h"

namespace {

std::uint32_t highestLeaf = 0, features = 0, leafOneB = 0;
bool ScriptedCpu(std::uint32_t leaf, std::uint32_t registers[4]) {
    std::memset(registers, 0, 16);
    if (leaf == 0) {
        registers[0] = highestLeaf;
        std::memcpy(&registers[1], "AbcdIjklEfgh", 12);  // ebx, ecx, edx
    } else {
        registers[1] = leafOneB;
        registers[3] = features;
    }
    return true;
}

TEST(CpuInfo, ReadsTheIdentification) {
    const struct {
        std::uint32_t highest, ebx, edx;
        const char* flags;
        std::uint32_t processors;
    } rows[] = {{1, 0x00040000, 1U << 23 | 1U << 25 | 1U << 26, "mmx sse sse2 ", 4},
                {1, 0xFF00FFFF, 1U << 23 | 1U << 26, "mmx ", 1},
                {1, 0x00FF0000, 1U << 25 | 1U << 26, "", 255},
                {0, 0x00040000, 1U << 23, "", 1}};
    for (const auto& row : rows) {
        highestLeaf = row.highest;
        leafOneB = row.ebx;
        features = row.edx;
        CpuRecord cpu;
        ASSERT_TRUE(ReadCpu(cpu, ScriptedCpu));
        EXPECT_EQ(SystemReportText(9, true, cpu),
                  "OS Version: Something really new...?\nCPU info:\n  -code name: AbcdEfghIjkl\n"
                  "  -number of logical processors: " +
                      std::to_string(row.processors) + "\n  -extended instructions: " + row.flags + "\n\n");
    }
    CpuRecord none;
    EXPECT_FALSE(ReadCpu(none, [](std::uint32_t, std::uint32_t*) { return false; }));
    EXPECT_STREQ(none.name, "unknown");
    EXPECT_EQ(SystemReportText(0, false, none),
              "OS Version: Unable to determine...\nCPU info:\n  -(unable to determine)\n"
              "  -will assume 1 logical processors...\n\n");
}

}  // namespace
