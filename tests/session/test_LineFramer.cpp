#include "session/LineFramer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <vector>

#include "platform/Caps.h"
#include "session/WireNumbers.h"
#include "support/TestFolder.h"

namespace {

// The lines of a stream that arrives in pieces of a size.
std::vector<std::string> Feed(std::string_view stream, std::size_t piece) {
    LineFramer framer;
    std::vector<std::string> lines;
    for (; !stream.empty(); stream.remove_prefix(std::min(piece, stream.size())))
        framer.Feed(stream.substr(0, piece), [&](std::string_view line) { lines.emplace_back(line); });
    return lines;
}

TEST(LineFramer, OnlyWholeLinesComeOutWithoutTheirLineFeeds) {
    for (const std::size_t piece : {1, 2, 3, 5, 100})
        EXPECT_EQ(Feed("(abc\n\n\nx\r\ny\nrest", piece), (std::vector<std::string>{"(abc", "", "", "x\r", "y"}));
}

// A framer that moves the rest of the buffer for every line would need hours.
TEST(LineFramer, ABurstIsLinearInOnePieceAndInPackets) {
    std::string burst;
    for (int i = 0; i < 200000; ++i)
        burst += "(" + std::string(100, 'x') + "\n";
    for (const std::size_t piece : {burst.size(), std::size_t{1460}})
        EXPECT_EQ(Feed(burst, piece).size(), 200000U);
}

TEST(LineFramer, ALineBeyondTheCapIsDroppedWithOneMessage) {
    const support::TestFolder folder;
    const std::string longest(caps::serverLineBytes, 'l');
    for (const std::size_t piece : {longest.size() * 4, std::size_t{1000}}) {
        support::ClearErrorLog();
        const std::string stream = longest + "\n" + longest + "+\nafter\n" + longest + longest + longest + "\nlast\n";
        EXPECT_EQ(Feed(stream, piece), (std::vector<std::string>{longest, "after", "last"}));
        const std::string message = "Error: Line of more than 65536 bytes received from a server, so it is dropped.\n";
        EXPECT_EQ(folder.Read("_error.txt"), message + message);
    }
    support::ClearErrorLog();
    std::string flood;
    for (int i = 0; i < 103; ++i)
        flood += longest + "+\n";
    EXPECT_TRUE(Feed(flood, 4096).empty());
    EXPECT_LT(folder.Read("_error.txt").size(), 10000U);
}

TEST(WireNumbers, Base95) {
    EXPECT_EQ(EncodeBase95(200, true), "\"*");
    EXPECT_EQ(DecodeBase95("\"*"), 200);
    EXPECT_EQ(EncodeBase95(96, false), "!");
    EXPECT_EQ(DecodeBase95(""), 0);
    EXPECT_EQ(DecodeBase95("~~"), 95 * 95 - 1);
    EXPECT_EQ(DecodeBase95("!\xFF"), 95 - 33);
    EXPECT_EQ(EncodeBase95(-96, true), "\x1F\x1F");
    EXPECT_EQ(EncodeBase95(INT_MIN, true).size(), 2U);
    EXPECT_EQ(StripControlChars(std::string("a\1b\0c\x7F~ \xE4", 9)), "abc~ ");
}

}  // namespace
