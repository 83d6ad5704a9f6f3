// The small pieces under the demo's servers.
#include <gtest/gtest.h>

#include <set>

#include "demo/server/Accounts.h"
#include "demo/server/LineBuffer.h"
#include "demo/server/Wire.h"
#include "support/TestFolder.h"

namespace demo {
namespace {

TEST(Wire, NumbersAndPositionsGoThereAndBack) {
    EXPECT_EQ(wire::Number(200), "\"*");
    EXPECT_EQ(wire::Number(-5), "  ");
    EXPECT_EQ(wire::Number(1 << 20), "~~");
    for (int value = 0; value < 95 * 95; ++value)
        ASSERT_EQ(wire::ParseNumber(wire::Number(value)), value);
    for (const char* bad : {"", " ", "   ", "\x1f ", " \x7f", "\xff "})
        EXPECT_EQ(wire::ParseNumber(bad), std::nullopt) << bad;

    const WorldMap map(60, 100);
    std::set<std::pair<int, int>> cells;
    for (int fx = 0; fx < 60; ++fx)
        for (int fy = 0; fy < 100; ++fy) {
            const Cell cell = map.ToGrid({fx, fy});
            cells.insert({cell.gx, cell.gy});
            ASSERT_EQ(wire::ParsePosition(map, wire::Position(map, cell)), cell);
        }
    EXPECT_EQ(cells.size(), 6000U);
    // Beyond the map on each side, where a careless division would round toward it.
    for (const FileCell outside : {FileCell{-1, 0}, {0, -1}, {-1, -1}, {60, 0}, {0, 100}})
        EXPECT_FALSE(map.Contains(map.ToGrid(outside))) << outside.fx << ", " << outside.fy;
    for (int gx = -5; gx < 5; ++gx)
        for (int gy = -5; gy < 5; ++gy)
            ASSERT_EQ(map.ToGrid(map.ToFile({gx, gy})), (Cell{gx, gy}));
    EXPECT_EQ(wire::ParsePosition(map, "~~~~"), std::nullopt);
    EXPECT_EQ(wire::ParsePosition(map, "   "), std::nullopt);
}

TEST(Wire, FramesFaceWhereTheClientReadsThemToFace) {
    // The client's facing of the frames 1 to 16, four each.
    constexpr int facingOfGroup[] = {2, 3, 1, 0};
    for (int facing = 0; facing < directionCount; ++facing)
        for (int stride = 0; stride < 4; ++stride) {
            const int frame = *wire::ParseNumber(wire::Frame(facing, stride));
            EXPECT_EQ(facingOfGroup[(frame - 1) / 4], facing);
            EXPECT_EQ((frame - 1) % 4, stride);
        }
}

TEST(Wire, ColoursAreAlwaysTenNumbers) {
    EXPECT_EQ(wire::Colours("0123456789abc"), "0123456789");
    EXPECT_EQ(wire::Colours("_`z"), "_         ");
    EXPECT_EQ(wire::Colours("\n\xff"
                            "A"),
              "  A       ");
}

TEST(LineBuffer, CutsAtLineFeedsAndStopsAtLongLines) {
    LineBuffer buffer;
    buffer.Add("one\ntw");
    EXPECT_EQ(buffer.Take(), "one");
    EXPECT_EQ(buffer.Take(), std::nullopt);
    buffer.Add("o\r\n\n" + std::string(LineBuffer::lineLimit, 'a') + "\nrest");
    EXPECT_EQ(buffer.Take(), "two");
    EXPECT_EQ(buffer.Take(), "");
    EXPECT_EQ(buffer.Take()->size(), LineBuffer::lineLimit);
    EXPECT_FALSE(buffer.Overflowed());
    buffer.Add(std::string(LineBuffer::lineLimit, 'b'));
    EXPECT_EQ(buffer.Take(), std::nullopt);
    EXPECT_TRUE(buffer.Overflowed());
    buffer.Add("\nmore\n");
    EXPECT_EQ(buffer.Take(), std::nullopt);
}

TEST(Accounts, AreReadFromPlayerFiles) {
    const support::TestFolder folder;
    folder.Write("a.ini", "V1.6\nName=Ann Lee\nColors=x\nPassword= spaced \n");
    folder.Write("b.ini", "V1.6\r\nName=Bob\r\nPassword=\r\n");
    folder.Write("settings.ini", "Sound=1\n");
    folder.Write("c.txt", "Name=Cid\nPassword=x\n");
    const std::vector<Account> accounts = ReadAccounts(folder.Path());
    EXPECT_EQ(accounts.size(), 2U);
    ASSERT_NE(FindAccount(accounts, "Ann Lee  spaced "), nullptr);
    EXPECT_NE(FindAccount(accounts, "Bob "), nullptr);
    for (const char* wrong : {"Ann Lee spaced", "Bob", "bob ", "Cid x", "", " "})
        EXPECT_EQ(FindAccount(accounts, wrong), nullptr) << wrong;
    EXPECT_TRUE(ReadAccounts(folder.Path() + "/nowhere").empty());
}

}  // namespace
}  // namespace demo
