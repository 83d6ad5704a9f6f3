#include "diag/SystemReport.h"

#include <cstring>
#include <mutex>
#include <string>

#include "diag/LogFile.h"
#include "platform/SystemQuery.h"

namespace {

constexpr int newerSystem = 9;

const char* OsText(int code) {
    switch (code) {
        case 1:
            return "Something really old...\n";
        case 2:
            return "Windows NT3\n";
        case 3:
            return "Windows 95\n";
        case 4:
            return "Windows 98\n";
        case 5:
            return "Windows ME\n";
        case 6:
            return "Windows 2000\n";
        case 7:
            return "Windows XP\n";
        case 8:
            return "Windows 2003\n";
        case newerSystem:
            return "Something really new...?\n";
        default:
            return "Unable to determine...\n";
    }
}

}  // namespace

int OsVersionCodeOf(unsigned major, unsigned minor, unsigned family) {
    constexpr unsigned consumerFamily = 1;
    if (major < 4) return 1;
    if (major == 4) {
        if (minor == 0) return family == consumerFamily ? 3 : 2;
        if (minor >= 10 && minor <= 89) return 4;
        return minor == 90 ? 5 : 0;
    }
    if (major == 5 && minor <= 2) return 6 + static_cast<int>(minor);
    return newerSystem;
}

int OsVersionCode() {
    platform::OsVersion version;
    if (!platform::QueryOsVersion(version)) return 0;
    // Another system's version numbers say nothing on this scale; all of them can do what the newest of it can.
    if (version.family == platform::OsVersion::otherSystem) return newerSystem;
    return OsVersionCodeOf(version.major, version.minor, version.family);
}

bool ReadCpu(CpuRecord& record, CpuIdQuery query) {
    record = CpuRecord();
    std::uint32_t registers[4] = {};
    if (!query(0, registers)) {
        std::memcpy(record.name, "unknown", sizeof "unknown");
        record.logicalProcessors = 1;
        return false;
    }
    const std::uint32_t highestLeaf = registers[0];
    std::memcpy(record.name, &registers[1], 4);
    std::memcpy(record.name + 4, &registers[3], 4);
    std::memcpy(record.name + 8, &registers[2], 4);
    record.name[12] = '\0';
    if (highestLeaf >= 1 && query(1, registers)) {
        const auto feature = [&registers](int bit) { return (registers[3] >> bit & 1U) != 0; };
        record.logicalProcessors = registers[1] >> 16 & 0xFFU;
        record.mmx = feature(23);
        record.sse = record.mmx && feature(25);
        record.sse2 = record.sse && feature(26);
    }
    if (record.logicalProcessors == 0) record.logicalProcessors = 1;
    return true;
}

bool CpuInfo(CpuRecord& record) {
    static std::once_flag asked;
    static CpuRecord known;
    static bool identified = false;
    std::call_once(asked, [] { identified = ReadCpu(known, platform::QueryCpuId); });
    record = known;
    return identified;
}

std::string SystemReportText(int osCode, bool cpuIdentified, const CpuRecord& cpu) {
    std::string text = std::string("OS Version: ") + OsText(osCode) + "CPU info:\n";
    const std::string processors = std::to_string(static_cast<std::int32_t>(cpu.logicalProcessors));
    if (cpuIdentified) {
        text += std::string("  -code name: ") + cpu.name + "\n";
        text += "  -number of logical processors: " + processors + "\n";
        text += "  -extended instructions: ";
        if (cpu.mmx) text += "mmx ";
        if (cpu.sse) text += "sse ";
        if (cpu.sse2) text += "sse2 ";
        text += "\n";
    } else {
        text += "  -(unable to determine)\n";
        text += "  -will assume " + processors + " logical processors...\n";
    }
    return text + "\n";
}

void WriteSystemReport() {
    CpuRecord cpu;
    const bool identified = CpuInfo(cpu);
    statLog.Write(SystemReportText(OsVersionCode(), identified, cpu));
}
