#include <gtest/gtest.h>

#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "support/TestFolder.h"

namespace {

[[gnu::noinline]] std::string StackFromHere() {
    std::string stack = CallStack();
    return stack + "";
}

[[gnu::noinline]] void MisuseFromHere() {
    ReportMisuse("Message.\n");
    asm volatile("");
}

TEST(CallStack, NamesFunctionsFilesAndLines) {
    const support::TestFolder folder;
    const std::string stack = StackFromHere();
    EXPECT_EQ(stack.find("   test_callstack: CallStack - "), 0U) << stack;
    EXPECT_NE(stack.find("::StackFromHere - "), std::string::npos) << stack;
    MisuseFromHere();
    EXPECT_EQ(support::ErrorLogText().find(
                  "Message.\n  -call made from:\n   test_callstack: (anonymous namespace)::MisuseFromHere - "),
              0U);
}

}  // namespace
