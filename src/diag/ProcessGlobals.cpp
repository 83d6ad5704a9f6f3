// The process-wide objects of this room in their order of birth. The priority puts them before every static object of
// the other rooms, so that those may write logs, allocate and measure from their constructors to their destructors;
// among themselves they are born from top to bottom and die from bottom to top.

#include "diag/CMemMan.h"
#include "diag/CProfiler.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "platform/FileSystem.h"

#define KELVANE_BORN_FIRST [[gnu::init_priority(101)]]

KELVANE_BORN_FIRST LogFile errorLog("_error.txt", true);
KELVANE_BORN_FIRST LogFile statLog("_stat.txt", true);

namespace {

KELVANE_BORN_FIRST SymbolEngine symbolEngine;

}  // namespace

KELVANE_BORN_FIRST LogFile netLog("_netlog.txt", true);
KELVANE_BORN_FIRST LogFile shaderLog("_shaders.txt", true);
KELVANE_BORN_FIRST LogFile meshStatsLog("_meshStats.txt", true);

namespace {

struct PathNotices {
    PathNotices() {
        platform::SetPathNoticeSink([](const std::string& notice) { errorLog.Write(notice); });
    }
    ~PathNotices() { platform::SetPathNoticeSink(nullptr); }
};

KELVANE_BORN_FIRST PathNotices pathNotices;
// Its end is the final report, which must see what everything else has freed.
KELVANE_BORN_FIRST MemoryManager memoryManager;
KELVANE_BORN_FIRST CProfiler profiler;

}  // namespace

MemoryManager& MemoryManager::Default() {
    return memoryManager;
}
CProfiler& CProfiler::Default() {
    return profiler;
}
