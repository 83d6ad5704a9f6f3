#pragma once
// Call stacks as text and the common shape of a report that carries one.

#include <string>

#include "diag/StackText.h"

class LogFile;

// The symbol engine of the process: ready from static initialisation to static destruction, or never. Its state is one
// for the whole process; a second object (tests) starts it again and takes its place.
class SymbolEngine {
  public:
    using Starter = bool (*)();
    SymbolEngine();  // writes to errorLog when there are no symbols to be had
    explicit SymbolEngine(Starter start);
    ~SymbolEngine();
    SymbolEngine(const SymbolEngine&) = delete;
    SymbolEngine& operator=(const SymbolEngine&) = delete;
    [[nodiscard]] static bool IsReady();
};

// The calling thread's stack, innermost first, a line each: three spaces, module, ": ", function, " - ", source file, "
// - Line ", number. The first line is this function's own; the report functions below leave none. Empty when the symbol
// engine is not ready; at most 64 frames, then a line that says so.
std::string CallStack();

// Removes the first line in place and returns the same string; a text without a line break stays whole.
std::string& SkipFirstLine(std::string& text);

// Writes a report: message, header ("  -call stack:\n"), stack, "\n". `fromCaller` leaves the first line out.
void WriteReport(LogFile& log, const std::string& message, const char* header, bool fromCaller);
// The two common shapes: the whole stack under "  -call stack:\n"; the stack without its first line under `header`.
void ReportWithStack(const std::string& message);
void ReportMisuse(const std::string& message, const char* header = "  -call made from:\n");
