#include "session/LineFramer.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "formats/Caps.h"
#include "session/WireNumbers.h"
#include "support/TestFolder.h"

namespace {

std::vector<std::string> Take(LineFramer& framer) {
    std::vector<std::string> lines;
    for (std::string line; framer.TakeLine(line);)
        lines.push_back(line);
    return lines;
}

TEST(LineFramer, OnlyWholeLinesComeOutWithoutTheirLineFeeds) {
    using Lines = std::vector<std::string>;
    LineFramer framer;
    const std::pair<const char*, Lines> rows[] = {
        {"(ab", {}}, {"c\n", {"(abc"}}, {"", {}}, {"\n\nx\r\ny", {"", "", "x\r"}}, {"\n", {"y"}}};
    for (const auto& [bytes, lines] : rows) {
        framer.Append(bytes);
        EXPECT_EQ(Take(framer), lines) << bytes;
    }
}

// A framer that moves the rest of the buffer for every line would need hours.
TEST(LineFramer, ABurstIsLinearInOnePieceAndInPackets) {
    std::string burst;
    for (int i = 0; i < 200000; ++i)
        burst += "(" + std::to_string(i) + std::string(100, 'x') + "\n";
    LineFramer whole;
    whole.Append(burst);
    EXPECT_EQ(Take(whole).size(), 200000U);
    LineFramer packets;
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < burst.size(); at += 1460) {
        packets.Append(std::string_view(burst).substr(at, 1460));
        for (std::string& line : Take(packets))
            lines.push_back(std::move(line));
    }
    ASSERT_EQ(lines.size(), 200000U);
    EXPECT_EQ(lines.back(), "(199999" + std::string(100, 'x'));
}

TEST(LineFramer, ALineBeyondTheCapIsDroppedWithOneMessage) {
    const support::TestFolder folder;
    const std::string longest(caps::serverLineBytes, 'l');
    for (const std::size_t piece : {longest.size() * 4, std::size_t{1000}}) {
        support::ClearErrorLog();
        LineFramer framer;
        std::vector<std::string> lines;
        const std::string stream = longest + "\n" + longest + "+\nafter\n" + longest + longest + longest + "\nlast\n";
        for (std::size_t at = 0; at < stream.size(); at += piece) {
            framer.Append(std::string_view(stream).substr(at, piece));
            for (std::string& line : Take(framer))
                lines.push_back(std::move(line));
        }
        EXPECT_EQ(lines, (std::vector<std::string>{longest, "after", "last"}));
        const std::string message = "Error: Line of more than 65536 bytes received from a server, so it is dropped.\n";
        EXPECT_EQ(folder.Read("_error.txt"), message + message);
    }
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
