#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "demo/formats/MapWriter.h"
#include "formats/TolvMap.h"
#include "platform/MessageBox.h"
#include "support/TestFolder.h"

namespace {

using support::ErrorLogText;

constexpr char version[] = "MAP V01.10 Tolvarin\n";
const std::string shortBody = "Warning: map file ends before its last cell, the rest of the map stays empty: m.map\n";

struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

Size GridSize(const TolvMap& map) {
    Size size;
    map.GetGridSize(size.width, size.height);
    return size;
}

// Every plane's numbers tell the file cell that they came from.
demo::MapDrawing NumberedDrawing(int width, int height) {
    demo::MapDrawing drawing(width, height);
    for (std::size_t i = 0; i < drawing.floors.size(); ++i) {
        drawing.floors[i] = static_cast<std::uint16_t>(1000 + i);
        drawing.objects[i] = static_cast<std::uint16_t>(2000 + i);
        drawing.lowXWalls[i] = static_cast<std::uint8_t>(1 + i);
        drawing.lowYWalls[i] = static_cast<std::uint8_t>(101 + i);
    }
    return drawing;
}

TEST(TolvMap, PutsEveryFileCellOnTheSquareGrid) {
    const support::TestFolder folder;
    folder.Write("m.map", demo::WriteMap(NumberedDrawing(2, 2)));
    TolvMap map;
    ASSERT_TRUE(map.LoadMap("M.MAP"));
    EXPECT_EQ(GridSize(map), (Size{8, 8}));
    constexpr int column[4][2] = {{0, 4}, {0, 5}, {1, 3}, {1, 4}};
    int filled = 0;
    for (int i = 0; i < 4; ++i) {
        const auto [gx, gy] = column[i];
        EXPECT_EQ(map.GetFloor(gx, gy), 1000 + i);
        EXPECT_EQ(map.GetObject(gx, gy), 2000 + i);
        EXPECT_EQ(map.GetLowXWall(gx, gy), 1 + i);
        EXPECT_EQ(map.GetLowYWall(gx, gy), 101 + i);
        int fx = -1;
        int fy = -1;
        map.GridToFile(gx, gy, fx, fy);
        EXPECT_EQ(fx * 2 + fy, i);
    }
    for (int gy = 0; gy < 8; ++gy)
        for (int gx = 0; gx < 8; ++gx)
            filled += map.GetFloor(gx, gy) != 0xFFFF || map.GetObject(gx, gy) != 0 || map.GetLowXWall(gx, gy) != 0 ||
                      map.GetLowYWall(gx, gy) != 0;
    EXPECT_EQ(filled, 4);
    EXPECT_EQ(ErrorLogText(), "");
}

TEST(TolvMap, AnswersOutsideTheGridAndKeepsChanges) {
    const support::TestFolder folder;
    TolvMap map;
    EXPECT_EQ(map.GetFloor(0, 0), 161);
    ASSERT_TRUE(map.LoadMapBytes(demo::WriteMap(NumberedDrawing(2, 2)), "m.map"));
    constexpr int outside[4][2] = {{-1, 0}, {0, -1}, {8, 0}, {INT_MIN, INT_MAX}};
    for (const auto& [gx, gy] : outside) {
        map.SetFloor(gx, gy, 7);
        map.SetLowXWall(gx, gy, 7);
        EXPECT_EQ(map.GetFloor(gx, gy), 161);
        EXPECT_EQ(map.GetObject(gx, gy) + map.GetLowXWall(gx, gy) + map.GetLowYWall(gx, gy), 0);
    }
    map.SetFloor(7, 7, 5);
    map.SetObject(7, 7, 6);
    map.SetLowXWall(7, 7, 200);
    map.SetLowYWall(7, 7, 127);
    EXPECT_EQ(map.GetFloor(7, 7), 5);
    EXPECT_EQ(map.GetObject(7, 7), 6);
    EXPECT_EQ(map.GetLowXWall(7, 7), -56);
    EXPECT_EQ(map.GetLowYWall(7, 7), 127);
    int far = 0;
    map.FileToGrid(INT_MAX, INT_MAX, far, far);
    map.GridToFile(INT_MIN, INT_MAX, far, far);
    EXPECT_FALSE(map.LoadMap("none.map"));
    EXPECT_EQ(ErrorLogText(), "Failed to load tolv .map file: none.map\n");
    EXPECT_EQ(GridSize(map), Size{});
}

TEST(TolvMap, ReadsHeadersAsTheyCome) {
    const std::string body = demo::MapBody(NumberedDrawing(2, 2));
    const std::string size = "width=2\nheight=2\n";
    const std::string warned =
        "Warning: Unrecognized map version found in map file: m.map\n"
        "  -load may potentially be invalid.\n  -version=";
    const std::string bad = "map dimensions loaded from file are bad: ";
    struct Row {
        const char* name;
        std::string file;
        bool result;
        int grid;
        std::string log;
    };
    const Row rows[] = {
        {"other keys", version + size + "name=x\n=\n\nencoded=0\nBODY\n" + body, true, 8, ""},
        {"another version", "MAP V01.00 Tolvarin\n" + size + "BODY\n" + body, true, 8,
         warned + "MAP V01.00 Tolvarin\n"},
        {"a carriage return", "MAP V01.10 Tolvarin\r\n" + size + "BODY\n" + body, true, 8,
         warned + "MAP V01.10 Tolvarin\r\n"},
        {"BODY with more behind", version + size + "=BODY=1=2\n" + body, true, 8, ""},
        {"a carriage return is part of BODY", version + size + "BODY\r\n" + body, true, 8, shortBody},
        {"no BODY", version + std::string("width=2\nheight=2"), true, 8, shortBody},
        {"three pieces", version + size + "width=30=5\nBODY\n" + body, true, 8, ""},
        {"no width", version + std::string("height=2\nBODY\n") + body, false, 0, bad + "0x2\n"},
        {"nothing at all", "", false, 0, warned + "\n" + bad + "0x0\n"},
        {"sizes that cancel out", version + std::string("width=3\nheight=-3\nBODY\n"), false, 0, ""},
        {"negative sizes", version + std::string("width=-3\nheight=-3\nBODY\n"), false, 0, ""},
        {"a count of cells beyond 31 bits", version + std::string("width=20000\nheight=10000\nBODY\n"), false, 0, ""},
        {"a count beyond 32 bits", version + std::string("width=32768\nheight=1\nBODY\n"), false, 0, bad + "32768x1\n"},
        {"more cells than the cap", version + std::string("width=4096\nheight=1\nBODY\n"), false, 0, bad + "4096x1\n"},
    };
    for (const Row& row : rows) {
        const support::TestFolder folder;
        TolvMap map;
        EXPECT_EQ(map.LoadMapBytes(row.file, "m.map"), row.result) << row.name;
        EXPECT_EQ(GridSize(map), (Size{row.grid, row.grid})) << row.name;
        EXPECT_EQ(ErrorLogText(), row.log) << row.name;
    }
}

std::string shownBox;

platform::BoxAnswer RecordBox(const std::string& text, const std::string& caption, platform::BoxKind kind, bool owned) {
    shownBox = caption + "|" + text + (kind == platform::BoxKind::Ok && owned ? "|ok" : "");
    return platform::BoxAnswer::Ok;
}

TEST(TolvMap, RefusesEncipheredMaps) {
    const support::TestFolder folder;
    const auto before = platform::SetMessageBoxHandler(RecordBox);
    TolvMap map;
    ASSERT_TRUE(map.LoadMapBytes(demo::WriteMap(NumberedDrawing(2, 2)), "m.map"));
    EXPECT_FALSE(map.LoadMapBytes(version + std::string("width=2\nencoded=1x\nheight=2\nBODY\n"), "m.map"));
    platform::SetMessageBoxHandler(before);
    EXPECT_EQ(shownBox, "Evil Encrypted Dreams...|This map is encrypted.  Encrypted dreams are not yet supported.|ok");
    EXPECT_EQ(GridSize(map), Size{});
    EXPECT_EQ(ErrorLogText(), "");
}

TEST(TolvMap, DropsCellsBesideTheGrid) {
    const support::TestFolder folder;
    TolvMap map;
    ASSERT_TRUE(map.LoadMapBytes(demo::WriteMap(NumberedDrawing(10, 2)), "wide.map"));
    // Columns 5 to 9 reach below 0: column 5 with one cell, the others with both.
    const std::string line = "coord less than 0 after deskew transform while loading map wide.map\n";
    std::string log;
    for (int i = 0; i < 9; ++i)
        log += line;
    EXPECT_EQ(ErrorLogText(), log);
    EXPECT_EQ(map.GetFloor(4, 0), 1008);
    EXPECT_EQ(map.GetLowYWall(4, 0), 109);
}

TEST(TolvMap, LeavesTheCellsOfAShortBodyEmpty) {
    const std::string whole = demo::WriteMap(NumberedDrawing(2, 2));
    const std::size_t bodyStart = whole.size() - 24;
    for (std::size_t kept = 0; kept < 24; ++kept) {
        const support::TestFolder folder;
        TolvMap map;
        ASSERT_TRUE(map.LoadMapBytes(whole.substr(0, bodyStart + kept), "m.map"));
        EXPECT_EQ(map.GetFloor(1, 4), kept >= 8 ? 1003 : 0xFFFF) << kept;
        EXPECT_EQ(map.GetObject(0, 4), kept >= 10 ? 2000 : 0) << kept;
        EXPECT_EQ(map.GetObject(0, 5), kept >= 12 ? 2001 : 0) << kept;
        EXPECT_EQ(map.GetLowXWall(0, 5), kept >= 18 ? 2 : 0) << kept;
        EXPECT_EQ(map.GetLowYWall(0, 4), kept >= 19 ? 101 : 0) << kept;
        EXPECT_EQ(ErrorLogText(), shortBody) << kept;
    }
}

}  // namespace
