// Names return addresses of a running program: kelvane-stack PROCESS ADDRESS... (hexadecimal). Writes the lines of the
// call stack to standard output.

#include <cstdio>
#include <cstdlib>

#include "diag/StackText.h"
#include "platform/Symbols.h"

int main(int count, char** arguments) {
    if (count < 3) {
        std::fprintf(stderr, "usage: %s PROCESS ADDRESS...\n", arguments[0]);
        return 2;
    }
    if (!platform::StartSymbols(std::atol(arguments[1]))) {
        std::fprintf(stderr, "error: there is no process %s to be read\n", arguments[1]);
        return 1;
    }
    std::vector<std::uintptr_t> addresses;
    for (int i = 2; i < count; ++i)
        addresses.push_back(std::strtoull(arguments[i], nullptr, 16));
    const std::string text = StackText(addresses);
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0 ? 0 : 1;
}
