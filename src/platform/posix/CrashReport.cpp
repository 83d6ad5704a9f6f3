#include "platform/CrashReport.h"

#include <cxxabi.h>
#include <execinfo.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <ucontext.h>
#include <unistd.h>
#include <unwind.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <exception>

#include "platform/posix/CrashStack.h"

// What runs after a fault calls nothing that takes a lock or memory in this process: the fault may have come from
// there.

namespace platform {

namespace {

constexpr int faults[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr unsigned wholeReportSeconds = 60;
constexpr int namingSeconds = 20;
// As many as a stack's text has lines, and a few that leave none.
constexpr std::size_t maxAddresses = 64 + 3;
constexpr std::size_t deepestStack = 64 << 20;
constexpr std::size_t hexDigits = 2 * sizeof(std::uintptr_t) + 1;

// A text of fixed room; what does not fit is cut off.
class ShortText {
  public:
    ShortText& operator<<(const char* more) {
        while (*more && length + 1 < room.size())
            room[length++] = *more++;
        room[length] = '\0';
        return *this;
    }
    ShortText& Number(std::uint64_t number, unsigned base) {
        char digits[24];
        char* first = digits + sizeof digits - 1;
        *first = '\0';
        do {
            *--first = "0123456789abcdef"[number % base];
            number /= base;
        } while (number != 0);
        return *this << first;
    }
    [[nodiscard]] const char* Text() const { return room.data(); }
    [[nodiscard]] std::size_t Length() const { return length; }

  private:
    std::array<char, 1024> room{};
    std::size_t length = 0;
};

// All that the report needs, made ready beforehand.
struct Plan {
    const char* logFile = nullptr;
    char helper[PATH_MAX] = "";
    std::string (*stackText)(const std::vector<std::uintptr_t>&) = nullptr;
    int spare = -1;            // given up for the log's handle, because the process may have run out of them
    int answer[2] = {-1, -1};  // the pipe for the stack's text
} plan;

// The crash under way; `thread` is 0 while there is none, and only that thread writes the rest.
std::atomic<pid_t> crashedThread{0};
struct Crash {
    int signal = 0;
    siginfo_t about{};
    int faultsWithin = 0;  // the report's own
    std::array<std::uintptr_t, maxAddresses> addresses{};
    volatile std::size_t count = 0;
    char textOfAddress[maxAddresses][hexDigits] = {};
    char textOfProcess[24] = "";
    char stack[65536] = "";
} crash;

// The exception that nobody caught, kept for the report of the abort that follows.
ShortText uncaught;

bool WriteAll(int file, const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = write(file, bytes, count);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

void Tell(int& log, const char* text, std::size_t length) {
    if (WriteAll(log, text, length) || log == STDERR_FILENO) return;
    log = STDERR_FILENO;
    WriteAll(log, text, length);
}

// Ends the process by the signal, which keeps what it said first, as if there were no handler.
[[noreturn]] void DieOf(int signal, const siginfo_t& about) {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigaction(signal, &action, nullptr);
    sigset_t unblocked;
    sigemptyset(&unblocked);
    sigaddset(&unblocked, signal);
    siginfo_t again = about;
    syscall(SYS_rt_tgsigqueueinfo, getpid(), syscall(SYS_gettid), signal, &again);
    pthread_sigmask(SIG_UNBLOCK, &unblocked, nullptr);
    _exit(128 + signal);
}

void OnLateReport(int) {
    DieOf(crash.signal, crash.about);
}

const char* NameOf(int signal) {
    switch (signal) {
        case SIGSEGV:
            return "invalid memory access (SIGSEGV)";
        case SIGBUS:
            return "memory that cannot be had (SIGBUS)";
        case SIGFPE:
            return "arithmetic fault (SIGFPE)";
        case SIGILL:
            return "illegal instruction (SIGILL)";
        default:
            return "abort (SIGABRT)";
    }
}

ShortText MessageOf(int signal, const siginfo_t& about) {
    ShortText message;
    message << "Error: The program has crashed: " << NameOf(signal);
    if (about.si_code <= 0) {
        if (about.si_pid != getpid()) (message << ", sent by process ").Number(static_cast<unsigned>(about.si_pid), 10);
    } else {
        (message << " at 0x").Number(reinterpret_cast<std::uintptr_t>(about.si_addr), 16);
    }
    message << ".  Program ended.\n";
    if (uncaught.Length() > 0) message << "  -exception nobody caught: " << uncaught.Text() << "\n";
    return message << "  -call stack:\n";
}

bool Keep(std::uintptr_t address) {
    if (crash.count >= maxAddresses) return false;
    crash.addresses[crash.count] = address;
    crash.count = crash.count + 1;
    return true;
}

// Keeps the addresses from the one at fault on; before it come the handler's own.
_Unwind_Reason_Code TakeFrame(_Unwind_Context* context, void*) {
    int atFault = 0;
    const std::uintptr_t address = _Unwind_GetIPInfo(context, &atFault);
    if (atFault) crash.count = 0;
    // Addresses are taken for return addresses, which lie behind the instruction meant.
    return Keep(address + (atFault ? 1 : 0)) ? _URC_NO_REASON : _URC_END_OF_STACK;
}

// For a call to where there is no code, which leaves nothing to unwind from: the caller's address lies on top of the
// stack, and this project's own functions keep frame pointers.
void FollowFramePointers(const ucontext_t& context) {
#ifdef __x86_64__
    const auto& registers = context.uc_mcontext.gregs;
    const auto top = static_cast<std::uintptr_t>(registers[REG_RSP]);
    auto frame = static_cast<std::uintptr_t>(registers[REG_RBP]);
    bool more = Keep(*reinterpret_cast<const std::uintptr_t*>(top));
    while (more && frame > top && frame - top < deepestStack && frame % sizeof frame == 0) {
        const auto* pair = reinterpret_cast<const std::uintptr_t*>(frame);
        more = Keep(pair[1]) && pair[0] > frame;
        frame = pair[0];
    }
#else
    static_cast<void>(context);
#endif
}

// On a copy of the process; never comes back.
[[noreturn]] void NameAddresses() {
    for (const int signal : faults)
        ::signal(signal, SIG_DFL);
    ::signal(SIGALRM, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    alarm(namingSeconds);
    const char* arguments[maxAddresses + 3] = {plan.helper, crash.textOfProcess};
    for (std::size_t i = 0; i < crash.count; ++i)
        arguments[i + 2] = crash.textOfAddress[i];
    if (dup2(plan.answer[1], STDOUT_FILENO) < 0) _exit(1);
    close_range(STDERR_FILENO + 1, ~0U, 0);
    execv(plan.helper, const_cast<char* const*>(arguments));
    const std::string text =
        plan.stackText(std::vector<std::uintptr_t>(crash.addresses.begin(), crash.addresses.begin() + crash.count));
    _exit(WriteAll(STDOUT_FILENO, text.data(), text.size()) ? 0 : 1);
}

std::int64_t Milliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * std::int64_t{1000} + now.tv_nsec / 1'000'000;
}

// The other side's whole answer; its length, or 0 when it does not end in time.
std::size_t ReadAnswer(int input) {
    std::size_t length = 0;
    const std::int64_t end = Milliseconds() + namingSeconds * 1000;
    while (length < sizeof crash.stack) {
        pollfd wait{input, POLLIN, 0};
        const std::int64_t left = end - Milliseconds();
        const int ready = left > 0 ? poll(&wait, 1, static_cast<int>(left)) : 0;
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return 0;
        const ssize_t count = read(input, crash.stack + length, sizeof crash.stack - length);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return length;
        length += static_cast<std::size_t>(count);
    }
    return length;
}

// The length of the stack's text in crash.stack; 0 when it could not be made.
std::size_t MakeStackText() {
    std::strcpy(crash.textOfProcess, (ShortText().Number(static_cast<unsigned>(getpid()), 10)).Text());
    for (std::size_t i = 0; i < crash.count; ++i)
        std::strcpy(crash.textOfAddress[i], ShortText().Number(crash.addresses[i], 16).Text());
    const pid_t copy = _Fork();
    if (copy == 0) NameAddresses();
    close(plan.answer[1]);
    if (copy < 0) return 0;
    const std::size_t length = ReadAnswer(plan.answer[0]);
    if (length == 0) kill(copy, SIGKILL);
    int status = 0;
    while (waitpid(copy, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? length : 0;
}

void WriteStack(int& log) {
    const std::size_t length = MakeStackText();
    if (length > 0)
        Tell(log, crash.stack, length);
    else
        backtrace_symbols_fd(reinterpret_cast<void* const*>(crash.addresses.data()), static_cast<int>(crash.count),
                             log);
    Tell(log, "\n", 1);
}

int OpenLog() {
    close(plan.spare);
    rlimit handles{};
    if (getrlimit(RLIMIT_NOFILE, &handles) == 0) {
        handles.rlim_cur = handles.rlim_max;
        setrlimit(RLIMIT_NOFILE, &handles);
    }
    const int log = open(plan.logFile, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
    return log < 0 ? STDERR_FILENO : log;
}

void OnFault(int signal, siginfo_t* about, void* context) {
    static int log = STDERR_FILENO;
    const pid_t self = static_cast<pid_t>(syscall(SYS_gettid));
    pid_t none = 0;
    if (!crashedThread.compare_exchange_strong(none, self)) {
        // Another thread's report is on, and ends the process.
        while (none != self)
            pause();
        // Unwinding a broken stack has failed: what was found of it goes into the report. The second time is the end.
        if (++crash.faultsWithin == 1) WriteStack(log);
        DieOf(crash.signal, crash.about);
    }
    crash.signal = signal;
    crash.about = *about;
    ::signal(SIGALRM, OnLateReport);
    alarm(wholeReportSeconds);
    log = OpenLog();
    const ShortText message = MessageOf(signal, *about);
    Tell(log, message.Text(), message.Length());
    _Unwind_Backtrace(TakeFrame, nullptr);
    if (crash.count == 1) FollowFramePointers(*static_cast<const ucontext_t*>(context));
    WriteStack(log);
    DieOf(signal, *about);
}

[[noreturn]] void OnTerminate() {
    if (const std::type_info* type = abi::__cxa_current_exception_type()) {
        try {
            std::rethrow_exception(std::current_exception());
        } catch (const std::exception& exception) {
            uncaught << exception.what();
        } catch (...) {
            uncaught << type->name();
        }
    }
    std::abort();
}

void FindHelper(const char* name) {
    const ssize_t length = readlink("/proc/self/exe", plan.helper, sizeof plan.helper - 1);
    plan.helper[length > 0 ? length : 0] = '\0';
    char* folderEnd = std::strrchr(plan.helper, '/');
    const std::size_t used = folderEnd ? static_cast<std::size_t>(folderEnd - plan.helper) + 1 : 0;
    if (used == 0 || used + std::strlen(name) >= sizeof plan.helper) {
        plan.helper[0] = '\0';
        return;
    }
    std::strcpy(plan.helper + used, name);
}

void OnHangUp(int) {
    raise(SIGTERM);
}

}  // namespace

void ReportCrashes(const CrashReporting& reporting) {
    // Lives as long as the main thread, which is as long as the process.
    static CrashStack& mainStack = *new CrashStack;
    static_cast<void>(mainStack);
    plan.logFile = reporting.logFile;
    plan.stackText = reporting.stackText;
    FindHelper(reporting.helper);
    plan.spare = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (pipe2(plan.answer, O_CLOEXEC) != 0) plan.answer[0] = plan.answer[1] = -1;
    std::set_terminate(OnTerminate);
    struct sigaction action {};
    action.sa_sigaction = OnFault;
    // Not deferred, so that a fault within the report is heard of.
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
    for (const int signal : faults)
        sigaction(signal, &action, nullptr);
}

void OutliveSignals() {
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGXFSZ, SIG_IGN);
    struct sigaction before {};
    if (sigaction(SIGHUP, nullptr, &before) == 0 && before.sa_handler == SIG_DFL) ::signal(SIGHUP, OnHangUp);
}

}  // namespace platform
