#include "graphics/model/MeshTokenizer.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <utility>

#include "diag/PathFiles.h"
#include "formats/Caps.h"

namespace G {

namespace {

constexpr bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
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

std::string_view MeshTokenizer::ReadNumber(std::string_view allowed, const char* message) {
    const std::string_view word = NextToken();
    if (word.find_first_not_of(allowed) != std::string_view::npos) Fail(message + std::string(word) + "\n");
    return word;
}

int MeshTokenizer::ReadInteger() {
    return DecimalOf(ReadNumber("0123456789-", "Error parsing mesh: expected integer... but found: "));
}

float MeshTokenizer::ReadFloat() {
    return NarrowToFloat(
        LeadingDouble(ReadNumber("0123456789.-e", "Error parsing mesh: expected float... but found: ")));
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
