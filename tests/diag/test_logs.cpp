#include <gtest/gtest.h>

#include <cmath>

#include "diag/LogFile.h"
#include "platform/Clock.h"
#include "support/TestFolder.h"

namespace {

using support::TestFolder;

TEST(FormatDouble, GeneralFormKeepsThePointAndDropsTheZeros) {
    const struct {
        double number;
        int digits;
        const char* text;
    } rows[] = {
        {0.5, 20, "0.5"},
        {0.1, 20, "0.10000000000000000555"},
        {0.05, 20, "5.0000000000000002776e-02"},
        {0.0, 20, "0."},
        {1e19, 20, "10000000000000000000."},
        {1e20, 20, "1.e+20"},
        {1e16, 16, "1.e+16"},
        {0.0999999999999999999, 16, "0.1"},  // rounds up into the next decimal exponent
        {INFINITY, 20, "inf"},
        {NAN, 20, "nan"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FormatDouble(row.number, row.digits), row.text);
}

TEST(LogFile, CreationEmptiesAndEveryWriteAppends) {
    const TestFolder folder;
    folder.Write("_x.txt", "old");
    folder.Write("_X.TXT", "a neighbour that differs only in case");
    LogFile log("_x.txt", false);
    EXPECT_EQ(folder.Read("_x.txt"), "");
    log.Write("text ");
    log.Write(std::string("cut\0here", 8));
    log.Write(-5);
    log.Write(123456789012L);
    log.Write(0.5);
    log.Write("\0a\0b\r\n", 6);
    log.Write("");
    log.Write(static_cast<const char*>(nullptr));
    log.Write(nullptr, 3);
    log.WriteReport({"one", "", std::string_view("two\0lost", 8), "\n"});
    EXPECT_EQ(folder.Read("_x.txt"), "text cut-51234567890120.5ab\r\nonetwo\n");
    EXPECT_EQ(folder.Read("_X.TXT"), "a neighbour that differs only in case");
}

std::string echoed;

TEST(LogFile, EchoComesEvenWhenTheFileCannotBeOpened) {
    const TestFolder folder;
    echoed.clear();
    platform::SetDebuggerEcho([](std::string_view text) { echoed += "[" + std::string(text) + "]"; });
    LogFile lost("no such folder/_x.txt", true);
    LogFile silent("_silent.txt", false);
    lost.Write("a");
    lost.Write("");
    lost.WriteReport({"b", "", "c"});
    silent.Write("not echoed");
    platform::SetDebuggerEcho(nullptr);
    EXPECT_EQ(echoed, "[a][b][c]");
    EXPECT_FALSE(folder.Has("no such folder"));
}

}  // namespace
