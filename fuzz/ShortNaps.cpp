// Linked with --wrap into entries whose runs end threads: those nap for up to 100 ms and are waited for, and a run is
// to take less than that. The mangled names are those of platform::SleepMs(unsigned).

#include <algorithm>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker gives the names.
extern "C" void __real__ZN8platform7SleepMsEj(unsigned milliseconds);
extern "C" void __wrap__ZN8platform7SleepMsEj(unsigned milliseconds) {
    __real__ZN8platform7SleepMsEj(std::min(milliseconds, 1U));
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
