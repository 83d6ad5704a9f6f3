#include "graphics/model/MeshTokenizer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

#include "diag/PathFiles.h"
#include "platform/Caps.h"

namespace G {

namespace {

// What a character may be part of.
enum CharacterClass : unsigned char { whiteSpace = 1, ofIntegers = 2, ofFloats = 4 };
constexpr std::array<unsigned char, 256> characterClasses = [] {
    std::array<unsigned char, 256> classes{};
    for (const unsigned char c : {' ', '\t', '\n', '\v', '\f', '\r'})
        classes[c] = whiteSpace;
    for (unsigned char c = '0'; c <= '9'; ++c)
        classes[c] = ofIntegers | ofFloats;
    classes['-'] = ofIntegers | ofFloats;
    classes['.'] = classes['e'] = ofFloats;
    return classes;
}();

constexpr bool IsIn(char c, unsigned char characterClass) {
    return (characterClasses[static_cast<unsigned char>(c)] & characterClass) != 0;
}

constexpr bool IsSpace(char c) {
    return IsIn(c, whiteSpace);
}

// Takes the digits from `at` on into `number`, which is right for up to 19 of them; gives the place behind them.
const char* TakeDigits(const char* at, const char* end, std::uint64_t& number) {
    for (; at != end && *at >= '0' && *at <= '9'; ++at)
        number = number * 10 + static_cast<std::uint64_t>(*at - '0');
    return at;
}

// The same for the digits behind a point, which are many: eight at a time, as one number of eight bytes.
const char* TakeManyDigits(const char* at, const char* end, std::uint64_t& number) {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::uint64_t each = 0x0101010101010101;
    constexpr std::array<std::uint64_t, 9> powers{1,       10,        100,        1'000,      10'000,
                                                  100'000, 1'000'000, 10'000'000, 100'000'000};
    while (end - at >= 8) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, at, sizeof bytes);
        bytes ^= each * '0';
        const std::uint64_t above9 = ((bytes + each * (0x80 - 10)) | bytes) & each * 0x80;
        const auto count = static_cast<std::size_t>(std::countr_zero(above9)) / 8;
        if (count == 0) return at;
        // Zeros in front of the digits; then neighbours become pairs, pairs fours, fours eight.
        bytes <<= 8 * (8 - count);
        bytes = (bytes * 10 + (bytes >> 8)) & 0x00FF00FF00FF00FF;
        bytes = (bytes * 100 + (bytes >> 16)) & 0x0000FFFF0000FFFF;
        number = number * powers[count] + ((bytes * 10'000 + (bytes >> 32)) & 0xFFFFFFFF);
        at += count;
        if (count < 8) return at;
    }
    return TakeDigits(at, end, number);
}

// Numbers of so many digits fit an int, and a double without rounding.
constexpr std::size_t mostIntegerDigits = 9;
constexpr std::size_t mostFloatDigits = 15;
constexpr std::array<double, mostFloatDigits + 1> powersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

struct PlainNumber {
    std::int64_t digits = 0;
    std::size_t afterPoint = 0;
    bool negative = false;
};

// The end of the word at `start` when that is nothing but a number of at most so many digits, as most are; else null.
template <std::size_t mostDigits, bool mayHavePoint>
const char* EndOfPlainNumber(const char* start, const char* end, PlainNumber& plain) {
    plain.negative = start != end && *start == '-';
    std::uint64_t number = 0;
    const char* const whole = start + (plain.negative ? 1 : 0);
    const char* const point = TakeDigits(whole, end, number);
    const bool hasPoint = mayHavePoint && point != end && *point == '.';
    const char* const fraction = point + (hasPoint ? 1 : 0);
    const char* const stop = hasPoint ? TakeManyDigits(fraction, end, number) : fraction;
    const auto count = static_cast<std::size_t>((point - whole) + (stop - fraction));
    if ((stop != end && !IsSpace(*stop)) || count == 0 || count > mostDigits) return nullptr;
    plain.digits = static_cast<std::int64_t>(number);
    plain.afterPoint = static_cast<std::size_t>(stop - fraction);
    return stop;
}

// The leading part as strtod reads it; from_chars leaves out-of-range values and a plus sign to the caller.
double LeadingDouble(std::string_view word) {
    if (word.starts_with('+') && !word.starts_with("+-")) word.remove_prefix(1);
    double value = 0.0;
    const auto [end, result] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (result != std::errc::result_out_of_range) return value;
    return std::strtod(std::string(word.data(), end).c_str(), nullptr);
}

float NarrowToFloat(double value) {
    constexpr double largest = std::numeric_limits<float>::max();
    if (value > largest) return std::numeric_limits<float>::infinity();
    if (value < -largest) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(value);
}

ModelMessageSink messageSink = nullptr;

}  // namespace

void SetModelMessageSink(ModelMessageSink sink) {
    messageSink = sink;
}

void MeshTokenizer::Tell(std::string message) {
    std::erase(message, '\0');  // which would end a log's piece
    if (messageSink) messageSink(wordStart, message);
    messages.Add(message);
}

void MeshTokenizer::Fail(std::string message) {
    error = true;
    Tell(std::move(message));
}

std::string_view MeshTokenizer::RawToken() {
    if (!pushedBack.empty()) return std::exchange(pushedBack, {});
    while (position < text.size() && IsSpace(text[position]))
        ++position;
    const std::size_t start = position;
    wordStart = start;
    while (position < text.size() && !IsSpace(text[position]))
        ++position;
    ranToEnd = position == text.size();
    ended = ended || start == position;
    const std::string_view word = text.substr(start, position - start);
    if (word.size() <= caps::modelTokenBytes) return word;
    Fail("Error parsing mesh: a word of " + std::to_string(word.size()) + " characters is too long\n");
    return word.substr(0, caps::modelTokenBytes);
}

std::string_view MeshTokenizer::NextToken() {
    const std::string_view word = RawToken();
    if (word.starts_with('}')) Fail("Error parsing mesh: unexpected }\n");
    if (word.starts_with('{')) Fail("Error parsing mesh: unexpected {\n");
    return word;
}

std::string_view MeshTokenizer::ReadNumber(unsigned char allowed, const char* message) {
    const std::string_view word = NextToken();
    if (!std::all_of(word.begin(), word.end(), [allowed](char c) { return IsIn(c, allowed); }))
        Fail(message + std::string(word) + "\n");
    return word;
}

const char* MeshTokenizer::StartOfNextWord() const {
    if (!pushedBack.empty()) return nullptr;
    const char* start = text.data() + position;
    while (start != text.data() + text.size() && IsSpace(*start))
        ++start;
    return start;
}

void MeshTokenizer::TakeWord(const char* start, const char* stop) {
    wordStart = static_cast<std::size_t>(start - text.data());
    position = static_cast<std::size_t>(stop - text.data());
    ranToEnd = position == text.size();
}

int MeshTokenizer::ReadInteger() {
    PlainNumber plain;
    const char* const start = StartOfNextWord();
    const char* const stop =
        start ? EndOfPlainNumber<mostIntegerDigits, false>(start, text.data() + text.size(), plain) : nullptr;
    if (stop) {
        TakeWord(start, stop);
        return static_cast<int>(plain.negative ? -plain.digits : plain.digits);
    }
    return DecimalOf(ReadNumber(ofIntegers, "Error parsing mesh: expected integer... but found: "));
}

bool MeshTokenizer::IsFloat(std::string_view word) {
    return std::all_of(word.begin(), word.end(), [](char c) { return IsIn(c, ofFloats); });
}

float MeshTokenizer::ReadFloat() {
    PlainNumber plain;
    const char* const start = StartOfNextWord();
    const char* const stop =
        start ? EndOfPlainNumber<mostFloatDigits, true>(start, text.data() + text.size(), plain) : nullptr;
    if (stop) {
        TakeWord(start, stop);
        // Both are whole, so that the one division rounds just as strtod does.
        const double size = static_cast<double>(plain.digits) / powersOfTen[plain.afterPoint];
        return static_cast<float>(plain.negative ? -size : size);
    }
    return NarrowToFloat(LeadingDouble(ReadNumber(ofFloats, "Error parsing mesh: expected float... but found: ")));
}

Vec3 MeshTokenizer::ReadVector() {
    const float x = ReadFloat();
    const float y = ReadFloat();
    return {x, y, ReadFloat()};
}

Mat3 MeshTokenizer::ReadMatrix() {
    Mat3 matrix;
    for (float& element : matrix.m)
        element = ReadFloat();
    return matrix;
}

bool MeshTokenizer::Expect(char brace, const char* message) {
    const std::string_view word = RawToken();
    if (word.size() == 1 && word[0] == brace) return true;
    Fail(message + std::string(word) + "\n");
    return false;
}

bool MeshTokenizer::ExpectOpen() {
    return Expect('{', "Error parsing mesh: expected {... but found: ");
}

bool MeshTokenizer::ExpectClose() {
    return Expect('}', "Error parsing mesh: expected }... but found: ");
}

bool MeshTokenizer::AtBrace() {
    pushedBack = RawToken();
    return pushedBack == "{" || pushedBack == "}";
}

void MeshTokenizer::DropToBrace() {
    while (!AtBrace() && !ended)
        RawToken();
}

bool MeshTokenizer::SkipScope() {
    std::size_t depth = 0;
    while (true) {
        const std::string_view word = RawToken();
        if (word.empty()) break;
        if (word == "{") ++depth;
        if (word != "}") continue;
        if (depth == 0) {
            Fail("Error parsing mesh: unexpected } while trying to skip scope.\n");
            return false;
        }
        if (--depth == 0) return true;
    }
    if (depth > 0) return true;
    Fail("Error parsing mesh: never found opening {, trying to skip scope.\n");
    return false;
}

}  // namespace G
