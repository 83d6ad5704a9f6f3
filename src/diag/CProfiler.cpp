#include "diag/CProfiler.h"

#include <algorithm>
#include <utility>

#include "diag/LogFile.h"
#include "platform/FileSystem.h"

namespace {

std::string Time(double number) {
    return FormatDouble(number, 16);
}

bool WriteText(platform::File& file, const std::string& text) {
    return file.Write(text.data(), text.size());
}

}  // namespace

CProfiler::CProfiler(std::string name, Counter toUse) : fileName(std::move(name)), counter(toUse) {
    platform::File file = platform::File::ByPlainName(fileName, platform::OpenMode::Write);
    if (!file.IsOpen()) {
        platform::DebuggerEcho("Unable to open file for CProfiler(start).\n");
        return;
    }
    static_cast<void>(WriteText(file, "Profile File Started.\n\n"));
    createdAt = counter();
    enabled = createdAt != 0;
    if (!enabled)
        static_cast<void>(
            WriteText(file, "Error: System doesn't support high resolution time.  Profiling disabled.\n"));
}

CProfiler::~CProfiler() {
    if (enabled) WriteReport();
}

CProfiler::Section* CProfiler::Find(const std::string& name) {
    const auto found = std::find_if(sections.begin(), sections.end(),
                                    [&name](const Section& section) { return section.name == name; });
    return found == sections.end() ? nullptr : &*found;
}

void CProfiler::ProfileStart(const std::string& name, const std::string& module) {
    if (!enabled) return;
    const ScopedLock hold(lock);
    Section* section = Find(name);
    if (!section) {
        sections.push_back({name, module});
        section = &sections.back();
    }
    section->startTicks = counter();
}

void CProfiler::ProfileStop(const std::string& name, const std::string& module) {
    if (!enabled) return;
    // Read before the lock, so that waiting for it is not measured.
    const std::int64_t now = counter();
    const ScopedLock hold(lock);
    Section* section = Find(name);
    if (!section || section->startTicks == 0) {
        for (const std::string& piece :
             {std::string("Warning: ProfileStop called without a matching ProfileStart\n"), std::string("  Name: "),
              name, std::string("\n  File: "), module, std::string("\n\n")})
            Append(piece);
        return;
    }
    const std::int64_t elapsed = now - std::exchange(section->startTicks, 0);
    section->longestTicks = std::max(section->longestTicks, elapsed);
    section->shortestTicks = section->samples == 0 ? elapsed : std::min(section->shortestTicks, elapsed);
    section->totalTicks += elapsed;
    ++section->samples;
}

void CProfiler::Append(const std::string& piece) {
    platform::File file = platform::File::ByPlainName(fileName, platform::OpenMode::Append);
    if (!file.IsOpen())
        platform::DebuggerEcho("Unable to open file for CProfiler(error).\n");
    else
        static_cast<void>(WriteText(file, piece));
}

void CProfiler::WriteReport() {
    const ScopedLock hold(lock);
    const std::int64_t now = counter();
    const auto frequency = static_cast<double>(platform::CounterFrequency());
    platform::File file = platform::File::ByPlainName(fileName, platform::OpenMode::Append);
    if (!file.IsOpen()) {
        platform::DebuggerEcho("Unable to open file for CProfiler(end).\n");
        return;
    }
    const double runSeconds = static_cast<double>(now - createdAt) / frequency;
    std::string text = "Total program execution time: " + Time(runSeconds) + " seconds.\n\n" + " -- Profiles --\n\n";
    std::stable_sort(sections.begin(), sections.end(),
                     [](const Section& a, const Section& b) { return a.totalTicks > b.totalTicks; });
    for (const Section& section : sections) {
        const auto total = static_cast<double>(section.totalTicks);
        // A section that was started but never stopped has no samples to share its time among.
        const double average = section.samples > 0 ? total / section.samples : 0.0;
        const double seconds = total / frequency;
        const double percentage = runSeconds > 0 ? seconds / runSeconds * 100 : 0.0;
        text += section.name + " - " + section.module + "\n";
        text += " Average time: " + Time(average * 1000 / frequency) + " ms\n";
        text += " Max time: " + Time(static_cast<double>(section.longestTicks) * 1000 / frequency) + " ms\n";
        text += " Min time: " + Time(static_cast<double>(section.shortestTicks) * 1000 / frequency) + " ms\n";
        text += " Total time: " + Time(seconds) + " seconds\n";
        text += " Samples taken: " + std::to_string(section.samples);
        // Clamped, because a section that ran on several threads at once may exceed any share.
        text += "\n Percentage of total time: " +
                std::to_string(static_cast<std::int64_t>(std::clamp(percentage, 0.0, 1e15))) + "%\n\n";
    }
    static_cast<void>(WriteText(file, text));
    sections.clear();
}

ProfileScope::ProfileScope(std::string sectionName) : name(std::move(sectionName)) {
    CProfiler::Default().ProfileStart(name, "CProfiler");
}

ProfileScope::~ProfileScope() {
    CProfiler::Default().ProfileStop(name, "CProfiler");
}
