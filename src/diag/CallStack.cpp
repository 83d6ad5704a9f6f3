#include "diag/CallStack.h"

#include <algorithm>
#include <atomic>

#include "diag/LogFile.h"
#include "platform/Symbols.h"

namespace {

// As many as a stack's text has lines, and the helpers that leave none.
constexpr std::size_t maxAddresses = 64 + 3;

std::atomic<bool> symbolsReady{false};

}  // namespace

SymbolEngine::SymbolEngine() : SymbolEngine([] { return platform::StartSymbols(); }) {}

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
    return symbolsReady.load() ? StackText(platform::CaptureStack(maxAddresses)) : std::string();
}

std::string& SkipFirstLine(std::string& text) {
    // Bytes of 128 and more end the line too, because they count as negative.
    const auto end = std::find_if(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) < 32; });
    if (end != text.end()) text.erase(text.begin(), end + 1);
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
