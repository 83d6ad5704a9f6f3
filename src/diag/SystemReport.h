#pragma once
// What the statistics log says of the machine before the graphics card is examined.

#include <cstdint>
#include <string>

// Of the running system; another system than the Windows family counts as newer than all of it.
// 0 unknown, 1 older, 2 NT 3/4, 3 95, 4 98, 5 ME, 6 2000, 7 XP, 8 2003, 9 newer.
int OsVersionCode();
// The same rule applied to a given version.
int OsVersionCodeOf(unsigned major, unsigned minor, unsigned family);

struct CpuRecord {
    char name[13] = "Unknown";
    bool mmx = false;
    bool sse = false;
    bool sse2 = false;
    std::uint32_t logicalProcessors = 0;  // at least 1 once filled
};
// True when the processor can identify itself. The first answer is kept.
bool CpuInfo(CpuRecord& record);
// The same from a given identification instruction (see platform::QueryCpuId), not kept.
using CpuIdQuery = bool (*)(std::uint32_t leaf, std::uint32_t registers[4]);
bool ReadCpu(CpuRecord& record, CpuIdQuery query);

// Writes the text below, for this machine, to the statistics log.
void WriteSystemReport();
std::string SystemReportText(int osCode, bool cpuIdentified, const CpuRecord& cpu);
