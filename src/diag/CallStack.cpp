#include "diag/CallStack.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <string_view>
#include <vector>

#include "diag/LogFile.h"
#include "platform/Symbols.h"
#include "platform/SystemQuery.h"

namespace {

constexpr std::size_t maxFrames = 64;

std::atomic<bool> symbolsReady{false};

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

SymbolEngine::SymbolEngine() : SymbolEngine(platform::StartSymbols) {}

SymbolEngine::SymbolEngine(Starter start) {
    const bool started = start();
    symbolsReady.store(started);
    if (!started) errorLog.Write("Failed to initialize symbol information  Stack/symbol trace will be unavailable.\n");
}

SymbolEngine::~SymbolEngine() {
    if (symbolsReady.exchange(false)) platform::StopSymbols();
}

bool SymbolEngine::IsReady() {
    return symbolsReady.load();
}

[[gnu::noinline]] std::string CallStack() {
    if (!symbolsReady.load()) return {};
    std::string text;
    std::size_t written = 0;
    // The helpers' addresses are captured as well but leave no line.
    for (const std::uintptr_t address : platform::CaptureStack(maxFrames + 3)) {
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

std::string& SkipFirstLine(std::string& text) {
    // Bytes of 128 and more end the line too, because they count as negative.
    const auto end = std::find_if(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) < 32; });
    if (end != text.end()) text.erase(text.begin(), end + 1);
    return text;
}

std::string LastErrorText() {
    std::string text = platform::LastSystemErrorText();
    if (text.size() >= 3) text.resize(text.size() - 3);
    return text;
}

void WriteReport(LogFile& log, const std::string& message, const char* header, bool fromCaller) {
    std::string stack = CallStack();
    if (fromCaller) SkipFirstLine(stack);
    log.WriteReport({message, header, stack, "\n"});
}

void ReportWithStack(const std::string& message) {
    WriteReport(errorLog, message, "  -call stack:\n", false);
}

void ReportMisuse(const std::string& message, const char* header) {
    WriteReport(errorLog, message, header, true);
}
