#pragma once
// Starting a thread of the system.

#include <thread>

namespace platform {

// Runs entry(argument) on a new thread that `out` then names. False when the system gives no more threads.
[[nodiscard]] bool StartThread(std::thread& out, void (*entry)(void* argument), void* argument);

using ThreadStarter = bool (*)(std::thread& out, void (*entry)(void* argument), void* argument);
// Replaces the system's way of starting threads (tests); null puts it back.
void SetThreadStarter(ThreadStarter starter);

}  // namespace platform
