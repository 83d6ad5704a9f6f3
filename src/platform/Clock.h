#pragma once
// The system's high-resolution counter, sleeping, the priority of the process and the debugger's output channel.

#include <cstdint>
#include <string_view>

namespace platform {

// Ticks of a monotonic counter, 0 only on a system that has none. CounterFrequency() ticks make one second.
std::int64_t CounterValue();
std::int64_t CounterFrequency();

// Gives up the processor for at least `ms` milliseconds; 0 only yields the rest of the time slice.
void SleepMs(unsigned ms);

enum class PriorityClass { Idle, BelowNormal, Normal, AboveNormal };
// Best effort: a priority that could not be taken back later is not lowered.
void SetPriorityClass(PriorityClass priority);

// Passes text to the debugger's output: standard error while a debugger traces the process, else nowhere.
void DebuggerEcho(std::string_view text);
// Replaces that channel (tests); null puts the system's own back. Safe from any thread.
void SetDebuggerEcho(void (*sink)(std::string_view text));

}  // namespace platform
