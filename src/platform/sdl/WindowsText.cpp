#include "platform/sdl/WindowsText.h"

#include <cstdint>

namespace platform {

namespace {

constexpr std::uint32_t noCharacter = 0xFFFFFFFFU;

// Codes 0x80 to 0x9F of the code page; 0 where it has none.
constexpr std::uint16_t upperCodes[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                          0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                          0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                          0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// Reads one character at `position` and moves past it; noCharacter for a broken sequence.
std::uint32_t TakeCharacter(std::string_view utf8, std::size_t& position) {
    const auto lead = static_cast<unsigned char>(utf8[position++]);
    if (lead < 0x80) return lead;
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : -1;
    if (more < 0) return noCharacter;
    std::uint32_t code = lead & (0x3FU >> more);
    for (int i = 0; i < more; ++i) {
        if (position >= utf8.size()) return noCharacter;
        const auto next = static_cast<unsigned char>(utf8[position]);
        if ((next & 0xC0U) != 0x80U) return noCharacter;
        code = code << 6 | (next & 0x3FU);
        ++position;
    }
    return code;
}

}  // namespace

std::string WindowsBytesOf(std::string_view utf8) {
    std::string bytes;
    for (std::size_t position = 0; position < utf8.size();) {
        const std::uint32_t code = TakeCharacter(utf8, position);
        if (code < 0x80 || (code >= 0xA0 && code < 0x100)) {
            bytes += static_cast<char>(code);
            continue;
        }
        for (std::size_t i = 0; i < 32; ++i)
            if (upperCodes[i] == code) bytes += static_cast<char>(0x80 + i);
    }
    return bytes;
}

}  // namespace platform
