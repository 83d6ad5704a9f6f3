// Loaded into a program by LD_PRELOAD: ends it when its first frame is on the screen, after writing to the file
// descriptor named by FIRST_FRAME_FD the moment (seconds of the monotonic clock), the processor time of the process and
// its ended children so far (seconds) and its largest resident memory (KiB).

#include <SDL.h>
#include <dlfcn.h>
#include <epoxy/gl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

double SecondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double ChildSeconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           1e-6 * static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

// Not of getrusage, whose peak begins with that of the parent.
long PeakKiB() {
    std::FILE* status = std::fopen("/proc/self/status", "r");
    char line[256];
    long peak = 0;
    while (status && std::fgets(line, sizeof line, status))
        if (std::strncmp(line, "VmHWM:", 6) == 0) peak = std::strtol(line + 6, nullptr, 10);
    if (status) std::fclose(status);
    return peak;
}

}  // namespace

extern "C" void SDL_GL_SwapWindow(SDL_Window* window) {
    reinterpret_cast<void (*)(SDL_Window*)>(dlsym(RTLD_NEXT, "SDL_GL_SwapWindow"))(window);
    glFinish();
    const double moment = SecondsOf(CLOCK_MONOTONIC);
    const double processor = SecondsOf(CLOCK_PROCESS_CPUTIME_ID) + ChildSeconds();
    const char* descriptor = std::getenv("FIRST_FRAME_FD");
    if (descriptor) dprintf(std::atoi(descriptor), "%.9f %.9f %ld\n", moment, processor, PeakKiB());
    _exit(0);
}
