#include "diag/LogFile.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "platform/Caps.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"

LogFile::LogFile(std::string name, bool echo) : fileName(std::move(name)), echoToDebugger(echo) {
    platform::File::ByPlainName(fileName, platform::OpenMode::Write);
}

void LogFile::Write(const char* text) {
    if (text) WriteReport({std::string_view(text)});
}

void LogFile::Write(const std::string& text) {
    Write(text.c_str());
}
void LogFile::Write(int number) {
    Write(std::to_string(number));
}
void LogFile::Write(long number) {
    Write(std::to_string(number));
}
void LogFile::Write(double number) {
    Write(FormatDouble(number, 20));
}

void LogFile::Write(const void* bytes, std::size_t count) {
    if (!bytes) return;
    std::string text(static_cast<const char*>(bytes), count);
    std::erase(text, '\0');
    Write(text);
}

void LogFile::WriteReport(std::initializer_list<std::string_view> pieces) {
    const std::lock_guard<std::mutex> hold(lock);
    std::string whole;
    for (std::string_view piece : pieces) {
        piece = piece.substr(0, piece.find('\0'));
        if (piece.empty()) continue;
        if (echoToDebugger) platform::DebuggerEcho(piece);
        whole += piece;
    }
    if (whole.empty()) return;
    platform::File file = platform::File::ByPlainName(fileName, platform::OpenMode::Append);
    const std::uint64_t before = file.Size();
    if (before >= caps::logBytes) return;
    if (before + whole.size() >= caps::logBytes) whole += "\n(this log is full)\n";
    // A piece that the disk does not take is lost: there is no better place to say so.
    static_cast<void>(file.Write(whole.data(), whole.size()));
}

namespace {

// Cuts the zeros at the end of the digits that follow the point.
void DropTrailingZeros(std::string& digits) {
    while (digits.back() == '0')
        digits.pop_back();
}

}  // namespace

std::string FormatDouble(double number, int digits) {
    if (std::isnan(number)) return "nan";
    if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
    std::array<char, 1200> buffer;  // holds every double of up to 800 digits in either notation
    digits = std::min(std::max(digits, 2), 800);
    const auto scientific =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::scientific, digits - 1);
    std::string text(buffer.data(), scientific.ptr);
    const std::size_t mark = text.find('e');
    const int exponent = std::atoi(text.c_str() + mark + 1);
    if (exponent < -1 || exponent >= digits) {
        std::string mantissa = text.substr(0, mark);
        DropTrailingZeros(mantissa);
        return mantissa + text.substr(mark);
    }
    const int decimals = digits - 1 - exponent;
    const auto fixed =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, decimals);
    text.assign(buffer.data(), fixed.ptr);
    if (decimals == 0) return text + ".";
    DropTrailingZeros(text);
    return text;
}
