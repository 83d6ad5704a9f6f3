#pragma once
// Times named sections and writes "_profile.txt" at the end of the run.

#include <cstdint>
#include <string>
#include <vector>

#include "diag/CThread.h"
#include "platform/Clock.h"

class CProfiler {
  public:
    using Counter = std::int64_t (*)();
    // `counter` counts in units of platform::CounterFrequency(); 0 means that the system has none.
    explicit CProfiler(std::string fileName = "_profile.txt", Counter counter = platform::CounterValue);
    ~CProfiler();  // writes the report
    CProfiler(const CProfiler&) = delete;
    CProfiler& operator=(const CProfiler&) = delete;

    static CProfiler& Default();

    // Starts, or restarts, a section. Any thread.
    void ProfileStart(const std::string& name, const std::string& module);
    // Counts one sample; a stop without a start writes a warning into the profile.
    void ProfileStop(const std::string& name, const std::string& module);

  private:
    struct Section {
        std::string name;
        std::string module;
        std::int64_t totalTicks = 0;
        std::int64_t longestTicks = 0;
        std::int64_t shortestTicks = 0;
        std::int64_t startTicks = 0;  // 0 while not running
        int samples = 0;
    };
    Section* Find(const std::string& name);
    void Append(const std::string& piece);
    void WriteReport();

    const std::string fileName;
    const Counter counter;
    bool enabled = false;
    std::int64_t createdAt = 0;
    CriticalSection lock;  // of the sections
    std::vector<Section> sections;
};

// Times its own life as one sample of the default profiler.
class ProfileScope {
  public:
    explicit ProfileScope(std::string sectionName);
    ~ProfileScope();
    ProfileScope(const ProfileScope&) = delete;
    ProfileScope& operator=(const ProfileScope&) = delete;

  private:
    const std::string name;
};
