#include "demo/server/Wire.h"

#include <algorithm>

namespace demo::wire {

namespace {

constexpr int base = 95;
constexpr char zeroDigit = ' ';
constexpr std::size_t colourCount = 10;
constexpr int colourNumbers = 64;

bool IsPrintable(char c) {
    return c >= ' ' && c <= '~';
}

}  // namespace

std::string Number(int value) {
    const int kept = std::clamp(value, 0, base * base - 1);
    return {static_cast<char>(kept / base + zeroDigit), static_cast<char>(kept % base + zeroDigit)};
}

std::optional<int> ParseNumber(std::string_view digits) {
    if (digits.size() != 2 || !std::all_of(digits.begin(), digits.end(), IsPrintable)) return std::nullopt;
    return (digits[0] - zeroDigit) * base + (digits[1] - zeroDigit);
}

std::string Position(const WorldMap& map, Cell cell) {
    const FileCell file = map.ToFile(cell);
    return Number(file.fx) + Number(file.fy);
}

std::optional<Cell> ParsePosition(const WorldMap& map, std::string_view text) {
    if (text.size() < 4) return std::nullopt;
    const auto fx = ParseNumber(text.substr(0, 2));
    const auto fy = ParseNumber(text.substr(2, 2));
    if (!fx || !fy) return std::nullopt;
    const Cell cell = map.ToGrid({*fx, *fy});
    if (!map.Contains(cell)) return std::nullopt;
    return cell;
}

std::string Frame(int facing, int stride) {
    // Frames 1 to 16 are four of each facing, in this order.
    constexpr int groupOfFacing[directionCount] = {3, 2, 0, 1};
    return Number(1 + 4 * groupOfFacing[static_cast<std::size_t>(facing & 3)] + (stride & 3));
}

std::string Colours(std::string_view text) {
    std::string colours(text.substr(0, colourCount));
    colours.resize(colourCount, zeroDigit);
    for (char& digit : colours)
        if (digit < zeroDigit || digit >= zeroDigit + colourNumbers) digit = zeroDigit;
    return colours;
}

std::string Printable(std::string_view text) {
    std::string kept;
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept), IsPrintable);
    return kept;
}

std::string BarsForSpaces(std::string_view text) {
    std::string word(text);
    std::replace(word.begin(), word.end(), ' ', '|');
    return word;
}

}  // namespace demo::wire
