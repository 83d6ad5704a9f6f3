#include "session/WireNumbers.h"

#include <cstdint>

int DecodeBase95(std::string_view digits) {
    std::uint32_t sum = 0;
    for (const char digit : digits)
        sum = sum * 95 + static_cast<std::uint32_t>(static_cast<int>(static_cast<signed char>(digit)) - 32);
    return static_cast<int>(sum);
}

std::string EncodeBase95(int value, bool twoDigits) {
    std::string digits;
    if (twoDigits) digits += static_cast<char>(value / 95 + 32);
    digits += static_cast<char>(value % 95 + 32);
    return digits;
}

std::string StripControlChars(std::string_view text) {
    std::string kept;
    for (const char c : text)
        if (c >= 32 && c <= 126) kept += c;
    return kept;
}
