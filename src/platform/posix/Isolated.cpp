#include "platform/Isolated.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>

namespace platform {

namespace {

bool WriteAll(int file, const char* data, std::size_t count) {
    while (count > 0) {
        const ssize_t written = write(file, data, count);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        data += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

[[noreturn]] void WorkAsCopy(const std::function<std::string()>& work, int output) {
    // A crash here is an answer: no report, no core file.
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        std::signal(signal, SIG_DFL);
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    bool fine = false;
    try {
        const std::string answer = work();
        fine = WriteAll(output, answer.data(), answer.size());
    } catch (...) {
        fine = false;
    }
    // Without the ends of the process, which belong to the original.
    _exit(fine ? 0 : 1);
}

// Reads until the end; false when the time runs out first.
bool ReadAll(int input, unsigned seconds, std::string& out) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(seconds);
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd wait{input, POLLIN, 0};
        const int ready = left > 0 ? poll(&wait, 1, static_cast<int>(left)) : 0;
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return false;
        char block[16384];
        const ssize_t count = read(input, block, sizeof block);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count == 0;
        out.append(block, static_cast<std::size_t>(count));
    }
}

}  // namespace

bool RunIsolated(const std::function<std::string()>& work, unsigned seconds, std::string& answer) {
    answer.clear();
    int ends[2] = {};
    if (pipe2(ends, O_CLOEXEC) != 0) return false;
    const pid_t copy = fork();
    if (copy == 0) WorkAsCopy(work, ends[1]);
    close(ends[1]);
    bool fine = copy > 0 && ReadAll(ends[0], seconds, answer);
    close(ends[0]);
    if (copy <= 0) return false;
    if (!fine) kill(copy, SIGKILL);
    int status = 0;
    while (waitpid(copy, &status, 0) < 0 && errno == EINTR) {
    }
    fine = fine && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (!fine) answer.clear();
    return fine;
}

}  // namespace platform
