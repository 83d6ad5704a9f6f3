#include "platform/SystemQuery.h"

#include <fcntl.h>
#include <sys/uio.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

namespace platform {

namespace {

std::atomic<unsigned (*)()> desktopQuery{nullptr};

enum class Readable { Yes, No, Unknown };

// The kernel copies a byte of our own memory and answers EFAULT instead of raising a signal.
Readable AskByCopy(const void* address) {
    char byte = 0;
    iovec local{&byte, 1};
    iovec remote{const_cast<void*>(address), 1};
    if (process_vm_readv(getpid(), &local, 1, &remote, 1, 0) == 1) return Readable::Yes;
    return errno == EFAULT ? Readable::No : Readable::Unknown;
}

// For systems whose sandbox forbids that call: a pipe refuses an unreadable byte in the same way.
bool AskByPipe(const void* address) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return true;
    const bool readable = write(ends[1], address, 1) == 1;
    close(ends[0]);
    close(ends[1]);
    return readable;
}

bool IsByteReadable(const void* address) {
    const Readable answer = AskByCopy(address);
    return answer == Readable::Unknown ? AskByPipe(address) : answer == Readable::Yes;
}

}  // namespace

bool QueryOsVersion(OsVersion& out) {
    utsname names{};
    unsigned major = 0;
    unsigned minor = 0;
    if (uname(&names) != 0 || std::sscanf(names.release, "%u.%u", &major, &minor) < 1) return false;
    out = {major, minor, OsVersion::otherSystem};
    return true;
}

#if defined(__x86_64__) || defined(__i386__)
bool QueryCpuId(std::uint32_t leaf, std::uint32_t registers[4]) {
    if (__get_cpuid_max(leaf & 0x80000000U, nullptr) == 0) return false;
    __cpuid_count(leaf, 0, registers[0], registers[1], registers[2], registers[3]);
    return true;
}
#else
bool QueryCpuId(std::uint32_t, std::uint32_t[4]) {
    return false;
}
#endif

bool IsReadable(const void* address, std::size_t count) {
    if (!address) return false;
    const auto first = reinterpret_cast<std::uintptr_t>(address);
    if (count > UINTPTR_MAX - first) return false;
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    // Protection is the same for a whole page, so one byte of each answers for it.
    for (std::uintptr_t at = first; at == first || at < first + count; at = (at / page + 1) * page)
        if (!IsByteReadable(reinterpret_cast<const void*>(at))) return false;  // NOLINT(performance-no-int-to-ptr)
    return true;
}

std::string LastSystemErrorText() {
    const int code = errno;
    char buffer[1000] = "";
    const char* text = strerror_r(code, buffer, sizeof buffer);
    std::string message = std::string(text) + ".\r\n";
    errno = code;
    return message;
}

unsigned DesktopBitsPerPixel() {
    unsigned (*query)() = desktopQuery.load();
    return query ? query() : 0;
}

void SetDesktopBitsPerPixelQuery(unsigned (*query)()) {
    desktopQuery.store(query);
}

}  // namespace platform
