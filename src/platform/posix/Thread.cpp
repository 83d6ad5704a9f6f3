#include "platform/Thread.h"

#include <atomic>
#include <system_error>

#include "platform/posix/CrashStack.h"

namespace platform {

namespace {

std::atomic<ThreadStarter> replacement{nullptr};

}  // namespace

bool StartThread(std::thread& out, void (*entry)(void* argument), void* argument) {
    if (ThreadStarter starter = replacement.load()) return starter(out, entry, argument);
    try {
        out = std::thread([entry, argument] {
            const CrashStack crashStack;
            entry(argument);
        });
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

void SetThreadStarter(ThreadStarter starter) {
    replacement.store(starter);
}

}  // namespace platform
