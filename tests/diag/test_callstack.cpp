#include "diag/CallStack.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "diag/LogFile.h"
#include "support/TestFolder.h"

namespace {

constexpr int inlinedLine = __LINE__ + 2;
[[gnu::always_inline]] inline std::string InlinedPart() {
    return CallStack() + ".";
}
constexpr int callerLine = __LINE__ + 2;
[[gnu::noinline]] std::string StackFromHere() {
    return InlinedPart() + ".";
}

[[gnu::noinline]] std::string StackAtDepth(int depth) {
    std::string stack = depth > 0 ? StackAtDepth(depth - 1) : CallStack();
    asm volatile("" ::: "memory");
    return stack;
}

[[gnu::noinline]] void MisuseFromHere() {
    ReportMisuse("Message.\n");
    asm volatile("");
}

std::string Line(const std::string& text, int number) {
    std::string rest = text;
    for (int i = 0; i < number; ++i)
        SkipFirstLine(rest);
    return rest.substr(0, rest.find('\n'));
}

TEST(CallStack, NamesModuleFunctionFileAndLineInnermostFirst) {
    const std::string stack = StackFromHere();
    EXPECT_EQ(Line(stack, 0).find("   test_logs: CallStack - "), 0U) << stack;
    const std::string inlined = Line(stack, 1);
    EXPECT_EQ(inlined.find("   test_logs: "), 0U) << stack;
    EXPECT_NE(inlined.find("InlinedPart - "), std::string::npos) << stack;
    EXPECT_NE((inlined + "|").find("test_callstack.cpp - Line " + std::to_string(inlinedLine) + "|"), std::string::npos)
        << stack;
    // The function around an inlined call stands at the line of that call.
    const std::string around = Line(stack, 2);
    EXPECT_EQ(around.find("   test_logs: (anonymous namespace)::StackFromHere - "), 0U) << stack;
    EXPECT_NE((around + "|").find("test_callstack.cpp - Line " + std::to_string(callerLine) + "|"), std::string::npos)
        << stack;
    EXPECT_EQ(Line(stack, 3).find("   test_logs: (anonymous namespace)::CallStack_"), 0U) << stack;
}

TEST(CallStack, SixtyFourFramesEndWithTheNote) {
    const std::string stack = StackAtDepth(100);
    EXPECT_EQ(std::count(stack.begin(), stack.end(), '\n'), 65);
    EXPECT_EQ(Line(stack, 64), "  (Error while walking stack... over 64 walks... ending prematurely)");
    EXPECT_EQ(Line(stack, 63).find("   test_logs: (anonymous namespace)::StackAtDepth - "), 0U);
    EXPECT_EQ(StackAtDepth(3).find("over 64"), std::string::npos);
}

TEST(CallStack, ReportsBeginAtTheirMakerAndEndWithAnEmptyLine) {
    const support::TestFolder folder;
    MisuseFromHere();
    const std::string misuse = support::ErrorLogText();
    EXPECT_EQ(Line(misuse, 0) + "|" + Line(misuse, 1), "Message.|  -call made from:");
    EXPECT_EQ(Line(misuse, 2).find("   test_logs: (anonymous namespace)::MisuseFromHere - "), 0U) << misuse;
    EXPECT_EQ(misuse.substr(misuse.size() - 2), "\n\n");
    support::ClearErrorLog();
    ReportWithStack("Message.\n");
    const std::string report = support::ErrorLogText();
    EXPECT_EQ(Line(report, 1), "  -call stack:");
    EXPECT_EQ(Line(report, 2).find("   test_logs: CallStack - "), 0U) << report;
    EXPECT_EQ(Line(report, 3).find("   test_logs: (anonymous namespace)::CallStack_Reports"), 0U) << report;
}

TEST(CallStack, WithoutSymbolsReportsKeepTheirShape) {
    const support::TestFolder folder;
    {
        const SymbolEngine failed([] { return false; });
        EXPECT_EQ(CallStack(), "");
        ReportMisuse("Message.\n", "  -attempt made from:\n");
    }
    EXPECT_EQ(support::ErrorLogText(),
              "Failed to initialize symbol information  Stack/symbol trace will be unavailable.\n"
              "Message.\n  -attempt made from:\n\n");
    static const SymbolEngine again;
    EXPECT_NE(CallStack(), "");
}

}  // namespace
