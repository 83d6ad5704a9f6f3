#pragma once
// Times its own life as one sample of the default profiler, under a module's name.

#include <string>

#include "diag/CProfiler.h"

class ProfileRegion {
  public:
    ProfileRegion(std::string regionName, std::string moduleName)
        : name(std::move(regionName)), module(std::move(moduleName)) {
        CProfiler::Default().ProfileStart(name, module);
    }
    ~ProfileRegion() { CProfiler::Default().ProfileStop(name, module); }
    ProfileRegion(const ProfileRegion&) = delete;
    ProfileRegion& operator=(const ProfileRegion&) = delete;

  private:
    const std::string name;
    const std::string module;
};
