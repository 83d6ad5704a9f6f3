#pragma once
// Call stacks: capturing addresses apart from naming them. Both are safe from any thread.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace platform {

// Prepares the debug information of every loaded module, of this process (0) or of another one that addresses are to be
// named for; false when there is none to be had.
[[nodiscard]] bool StartSymbols(long process = 0);
void StopSymbols();

// Return addresses of the calling thread, innermost first, at most `limit`; begins with CaptureStack's caller.
std::vector<std::uintptr_t> CaptureStack(std::size_t limit);

struct SymbolFrame {
    std::string module;    // short name without folder; empty when the address lies in no module
    std::string function;  // readable name; empty when unknown
    std::string file;      // source file as recorded; empty when unknown
    int line = 0;
};

// The frames that stand for one return address, innermost first: more than one when calls were inlined. Never empty.
std::vector<SymbolFrame> NameAddress(std::uintptr_t returnAddress);

}  // namespace platform
