#pragma once
// What the machine says of itself.

#include <cstddef>
#include <cstdint>
#include <string>

namespace platform {

// The version that the system reports in the numbering of the Windows family: major, minor, and family 1 for its
// consumer line, 2 for the other. A system outside that family reports its own kernel's major and minor version with
// `otherSystem`.
struct OsVersion {
    static constexpr unsigned otherSystem = 3;
    unsigned major = 0;
    unsigned minor = 0;
    unsigned family = 0;
};
[[nodiscard]] bool QueryOsVersion(OsVersion& out);

// Raw answers of the processor identification instruction, registers in the order eax, ebx, ecx, edx.
// False when the processor has no such instruction.
[[nodiscard]] bool QueryCpuId(std::uint32_t leaf, std::uint32_t registers[4]);

// True when every byte of the range can be read. Null never can.
bool IsReadable(const void* address, std::size_t count);

// The system's text for the calling thread's last error, ending in a full stop and a line break (CR LF).
std::string LastSystemErrorText();

// Bits per pixel of the desktop; 0 when there is none to ask.
unsigned DesktopBitsPerPixel();
void SetDesktopBitsPerPixelQuery(unsigned (*query)());

}  // namespace platform
