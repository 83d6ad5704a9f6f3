// What the client knows of itself, printed.
#include <algorithm>
#include <csignal>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Caps.h"

namespace {

constexpr const char* usage =
    "usage: kelvane-tool limits [NAME...]\n"
    "Prints the caps on what comes from files, servers and the keyboard, or those of these names: a line each of name,\n"
    "value, unit and reason, divided by tabs. --help prints this. Exit code: 0 done, 1 a problem, 2 wrong usage.\n";

enum ExitCode { done = 0, problem = 1, wrongUsage = 2 };

void Complain(const std::string& text) {
    std::cerr << "kelvane-tool: " << text << "\n";
}

void Print(const caps::Cap& cap) {
    std::cout << cap.name << '\t' << cap.value << '\t' << cap.unit << '\t' << cap.reason << '\n';
}

int PrintLimits(const std::vector<std::string_view>& names) {
    if (names.empty()) std::for_each(std::begin(caps::table), std::end(caps::table), Print);
    int code = done;
    for (const std::string_view name : names) {
        const auto* const found = std::find_if(std::begin(caps::table), std::end(caps::table),
                                               [&](const caps::Cap& cap) { return cap.name == name; });
        if (found != std::end(caps::table)) {
            Print(*found);
            continue;
        }
        Complain("no limit is called " + std::string(name));
        code = problem;
    }
    std::cout.flush();
    if (std::cout) return code;
    Complain("the output cannot be written");
    return problem;
}

}  // namespace

int main(int count, char** arguments) {
    // A reader of the output that has gone away is a failed write.
    std::signal(SIGPIPE, SIG_IGN);
    const std::vector<std::string_view> words(arguments + 1, arguments + count);
    if (std::find(words.begin(), words.end(), "--help") != words.end() || (!words.empty() && words[0] == "-h")) {
        std::cout << usage;
        return done;
    }
    if (!words.empty() && words[0] == "limits") return PrintLimits({words.begin() + 1, words.end()});
    Complain((words.empty() ? "a command is missing" : "unknown command " + std::string(words[0])) +
             " (kelvane-tool --help tells more)");
    return wrongUsage;
}
