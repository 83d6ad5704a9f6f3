#pragma once
// Text and numbers as the game server writes them. Numbers have a fixed count of base-95 digits, the most significant
// first; each digit is one byte of the value digit + 32.

#include <string>
#include <string_view>

// The sum over the bytes, taken as signed, less 32 each; nothing is checked, and a sum out of range wraps. 0 for no
// bytes.
int DecodeBase95(std::string_view digits);
// One digit, or two: a value below 0 or too large for the digits gives bytes that are no digits.
std::string EncodeBase95(int value, bool twoDigits);
// Without the bytes outside 32 to 126.
std::string StripControlChars(std::string_view text);
