#pragma once
// The report of a crash, and signals that must not be one.

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

// Where a crash is told and by whom its stack is named.
struct CrashReporting {
    const char* logFile;  // appended to; standard error takes what it does not
    // A program in this one's own folder that, started with this process's number and the return addresses in
    // hexadecimal, writes the stack's text to its standard output. A process of its own, because the crashed one's heap
    // and locks may be broken. Where there is none, a copy of the process calls `stackText` instead.
    const char* helper;
    std::string (*stackText)(const std::vector<std::uintptr_t>& returnAddresses);
};

// From now on an invalid memory access, an arithmetic fault, an illegal instruction, an abort and an exception that
// nobody catches leave a report with the call stack of the thread at fault, whichever it is, and then end the process
// by the same signal as ever, with its core file. Threads made by StartThread may also run out of stack. A process that
// cannot finish its report ends after a minute at the latest. Once, from the main thread.
void ReportCrashes(const CrashReporting& reporting);

// Writing to a pipe that nobody reads or beyond the limit of a file's size fails like on a full disk, instead of ending
// the process; the end of the session that the program was started from counts as a request to terminate.
void OutliveSignals();

}  // namespace platform
