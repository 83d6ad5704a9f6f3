#include "diag/StackText.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/Symbols.h"
#include "platform/SystemQuery.h"

namespace {

constexpr std::size_t maxFrames = 64;

// Functions that only pass a report on: a reader wants to see who made it.
bool IsReportHelper(const std::string& function) {
    constexpr std::array<std::string_view, 3> helpers = {"WriteReport", "ReportWithStack", "ReportMisuse"};
    return std::find(helpers.begin(), helpers.end(), function) != helpers.end();
}

std::string FrameLine(const platform::SymbolFrame& frame) {
    std::string line = frame.module.empty() ? "  (Error?)" : "   " + frame.module;
    if (frame.module.empty() || frame.file.empty()) return line + ": (external code)" + "\n";
    line += ": ";
    if (frame.function.empty())
        line += "Unknown (" + LastErrorText() + ")";
    else
        line += frame.function + " - " + frame.file + " - Line " + std::to_string(frame.line);
    return line + "\n";
}

}  // namespace

std::string StackText(const std::vector<std::uintptr_t>& returnAddresses) {
    std::string text;
    std::size_t written = 0;
    for (const std::uintptr_t address : returnAddresses) {
        if (address == 0) break;
        for (const platform::SymbolFrame& frame : platform::NameAddress(address)) {
            if (IsReportHelper(frame.function)) continue;
            text += FrameLine(frame);
            if (++written < maxFrames) continue;
            return text + "  (Error while walking stack... over 64 walks... ending prematurely)\n";
        }
    }
    return text;
}

std::string LastErrorText() {
    std::string text = platform::LastSystemErrorText();
    if (text.size() >= 3) text.resize(text.size() - 3);
    return text;
}
