#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "support/TestFolder.h"

namespace {

const std::filesystem::path programs = std::filesystem::read_symlink("/proc/self/exe").parent_path();

// The line of CrashOnPurpose.cpp that is marked so.
int LineOf(const std::string& mark) {
    std::ifstream source(std::string(std::getenv("KELVANE_SOURCE_DIR")) + "/tests/diag/CrashOnPurpose.cpp");
    int number = 1;
    for (std::string line; std::getline(source, line); ++number)
        if (line.ends_with("// crash: " + mark)) return number;
    return 0;
}

// The signal that ended the program; 0 when it ended otherwise.
int RunCrash(const std::filesystem::path& program, const std::string& manner) {
    const int status = std::system(("exec " + program.string() + " " + manner + " 2>stderr.txt").c_str());
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

struct Row {
    const char* manner;
    const char* mark;
    int signal;
    const char* told;
    const char* function;
};

void ExpectReport(const Row& row, const std::filesystem::path& program) {
    SCOPED_TRACE(row.manner);
    const support::TestFolder folder;
    EXPECT_EQ(RunCrash(program, row.manner), row.signal);
    const std::string log = folder.Read("_error.txt");
    EXPECT_TRUE(log.starts_with(std::string("Before.\nError: The program has crashed: ") + row.told)) << log;
    EXPECT_NE(log.find("\n  -call stack:\n"), std::string::npos) << log;
    EXPECT_TRUE(log.ends_with("\n\n")) << log;
    std::string place = ": (anonymous namespace)::";
    place += row.function;
    const std::size_t found = log.find(place);
    EXPECT_NE(found, std::string::npos) << log;
    if (*row.mark == '\0' || found == std::string::npos) return;
    const std::string line = log.substr(found, log.find('\n', found) - found);
    EXPECT_TRUE(line.ends_with("CrashOnPurpose.cpp - Line " + std::to_string(LineOf(row.mark)))) << line;
}

TEST(Crash, LeavesFunctionAndLineInTheErrorLog) {
    const Row rows[] = {
        {"null", "null", SIGSEGV, "invalid memory access (SIGSEGV) at 0x0.  Program ended.\n", "WriteNowhere - "},
        {"many", "null", SIGSEGV, "invalid memory access (SIGSEGV) at 0x0.", "WriteNowhere - "},
        {"overflow", "overflow", SIGSEGV, "invalid memory access (SIGSEGV) at 0x7", "Endless - "},
        {"worker-overflow", "overflow", SIGSEGV, "invalid memory access (SIGSEGV) at 0x7", "Endless - "},
        {"heap", "heap", SIGABRT, "abort (SIGABRT).", "UseBrokenHeap - "},
        {"exception", "exception", SIGABRT,
         "abort (SIGABRT).  Program ended.\n  -exception nobody caught: nobody wants this\n",
         "ThrowOutOfEverything - "},
    };
    for (const Row& row : rows)
        ExpectReport(row, programs / "crash_on_purpose");
}

TEST(Crash, IsReportedWithoutTheHelperTheLogOrAStack) {
    const support::TestFolder folder;
    std::filesystem::copy(programs / "crash_on_purpose", folder.Path() + "/alone");
    const Row row = {"null", "null", SIGSEGV, "invalid memory access (SIGSEGV) at 0x0.", "WriteNowhere - "};
    ExpectReport(row, folder.Path() + "/alone");
    std::filesystem::create_directory("_error.txt");
    EXPECT_EQ(RunCrash(programs / "crash_on_purpose", "null"), SIGSEGV);
    EXPECT_NE(folder.Read("stderr.txt").find("WriteNowhere - "), std::string::npos) << "standard error has no report";
    std::filesystem::remove("_error.txt");
    EXPECT_EQ(RunCrash(programs / "crash_on_purpose", "no-stack"), SIGILL);
    const std::string log = folder.Read("_error.txt");
    EXPECT_TRUE(log.starts_with("Before.\nError: The program has crashed: illegal instruction (SIGILL) at 0x")) << log;
}

}  // namespace
