#include "platform/Clock.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <system_error>
#include <thread>

namespace platform {

namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

// The "TracerPid:" field of proc(5)'s status file names the process that traces this one, or 0.
bool ReadIsTraced() {
    const int status = open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    if (status < 0) return false;
    char text[4096];
    const ssize_t length = read(status, text, sizeof text - 1);
    close(status);
    if (length <= 0) return false;
    text[length] = '\0';
    const char* field = std::strstr(text, "TracerPid:");
    return field && std::atoi(field + std::strlen("TracerPid:")) != 0;
}

// A log writes many pieces in a row, so the answer is kept for a second.
bool IsTraced() {
    static std::atomic<std::int64_t> askedAt{0};
    static std::atomic<bool> answer{false};
    const std::int64_t now = CounterValue();
    const std::int64_t before = askedAt.load();
    if (before == 0 || now - before > nanosecondsPerSecond) {
        answer.store(ReadIsTraced());
        askedAt.store(now);
    }
    return answer.load();
}

void EchoToStandardError(std::string_view text) {
    if (!IsTraced()) return;
    while (!text.empty()) {
        const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::atomic<void (*)(std::string_view)> echoSink{nullptr};

int NiceOf(id_t thread) {
    errno = 0;
    const int value = getpriority(PRIO_PROCESS, thread);
    return errno == 0 ? value : 0;
}

// Niceness belongs to each thread on Linux, so a short-lived one can try whether a lowered priority comes back.
bool LoweredPriorityComesBack(int startNice) {
    bool comesBack = false;
    try {
        std::thread([&comesBack, startNice] {
            const id_t self = static_cast<id_t>(syscall(SYS_gettid));
            comesBack = setpriority(PRIO_PROCESS, self, std::min(startNice + 1, 19)) == 0 &&
                        setpriority(PRIO_PROCESS, self, startNice) == 0;
        }).join();
    } catch (const std::system_error&) {
        return false;
    }
    return comesBack;
}

void SetNiceOfEveryThread(int nice) {
    DIR* tasks = opendir("/proc/self/task");
    if (!tasks) {
        setpriority(PRIO_PROCESS, 0, nice);
        return;
    }
    while (const dirent* task = readdir(tasks)) {
        const int thread = std::atoi(task->d_name);
        if (thread > 0) setpriority(PRIO_PROCESS, static_cast<id_t>(thread), nice);
    }
    closedir(tasks);
}

int NiceSteps(PriorityClass priority) {
    switch (priority) {
        case PriorityClass::Idle:
            return 19;
        case PriorityClass::BelowNormal:
            return 10;
        case PriorityClass::AboveNormal:
            return -5;
        case PriorityClass::Normal:
            break;
    }
    return 0;
}

}  // namespace

std::int64_t CounterValue() {
    timespec now{};
    if (clock_gettime(CLOCK_MONOTONIC, &now) != 0) return 0;
    return std::max<std::int64_t>(1, now.tv_sec * nanosecondsPerSecond + now.tv_nsec);
}

std::int64_t CounterFrequency() {
    return nanosecondsPerSecond;
}

void SleepMs(unsigned ms) {
    if (ms == 0) {
        std::this_thread::yield();
        return;
    }
    timespec left{static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000) * 1'000'000L};
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) == EINTR) {
    }
}

void SetPriorityClass(PriorityClass priority) {
    static std::mutex lock;
    const std::lock_guard<std::mutex> hold(lock);
    static const int startNice = NiceOf(0);
    static const bool comesBack = LoweredPriorityComesBack(startNice);
    const int nice = std::clamp(startNice + NiceSteps(priority), -20, 19);
    if (nice > NiceOf(0) && nice > startNice && !comesBack) return;
    SetNiceOfEveryThread(nice);
}

void DebuggerEcho(std::string_view text) {
    if (auto* sink = echoSink.load())
        sink(text);
    else
        EchoToStandardError(text);
}

void SetDebuggerEcho(void (*sink)(std::string_view text)) {
    echoSink.store(sink);
}

}  // namespace platform
