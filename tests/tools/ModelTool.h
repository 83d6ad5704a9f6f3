#pragma once
// Runs kelvane-model in the working folder.

#include <sys/wait.h>

#include <cstdio>
#include <string>

struct ToolRun {
    int code = -1;
    std::string output;  // both streams
};

inline ToolRun RunTool(const std::string& arguments) {
    ToolRun run;
    std::FILE* pipe = popen((std::string(KELVANE_MODEL) + " " + arguments + " 2>&1").c_str(), "r");
    if (!pipe) return run;
    char block[4096];
    while (const std::size_t count = std::fread(block, 1, sizeof block, pipe))
        run.output.append(block, count);
    const int status = pclose(pipe);
    if (WIFEXITED(status)) run.code = WEXITSTATUS(status);
    return run;
}
