#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

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

// Floor, object, lower x wall and lower y wall.
std::string CellText(const TolvMap& map, int gx, int gy) {
    return std::to_string(map.GetFloor(gx, gy)) + " " + std::to_string(map.GetObject(gx, gy)) + " " +
           std::to_string(map.GetLowXWall(gx, gy)) + " " + std::to_string(map.GetLowYWall(gx, gy)) + "|";
}

// Where the four cells of a 2 x 2 file land.
constexpr int landing[4][2] = {{0, 4}, {0, 5}, {1, 3}, {1, 4}};

TEST(TolvMap, PutsEveryFileCellOnTheSquareGrid) {
    const support::TestFolder folder;
    folder.Write("m.map", demo::WriteMap(NumberedDrawing(2, 2)));
    TolvMap map;
    ASSERT_TRUE(map.LoadMap("M.MAP"));
    EXPECT_EQ(GridSize(map), (Size{8, 8}));
    int i = 0;
    std::string cells;
    for (const auto [gx, gy] : landing) {
        cells += CellText(map, gx, gy);
        int fx = -1;
        int fy = -1;
        map.GridToFile(gx, gy, fx, fy);
        EXPECT_EQ(fx * 2 + fy, i++);
    }
    EXPECT_EQ(cells, "1000 2000 1 101|1001 2001 2 102|1002 2002 3 103|1003 2003 4 104|");
    int filled = 0;
    for (int cell = 0; cell < 64; ++cell)
        filled += CellText(map, cell % 8, cell / 8) != "65535 0 0 0|";
    EXPECT_EQ(filled, 4);
    EXPECT_EQ(ErrorLogText(), "");
}

TEST(TolvMap, AnswersOutsideTheGridAndKeepsChanges) {
    const support::TestFolder folder;
    TolvMap map;
    EXPECT_EQ(CellText(map, 0, 0), "161 0 0 0|");
    ASSERT_TRUE(map.LoadMapBytes(demo::WriteMap(NumberedDrawing(2, 2)), "m.map"));
    constexpr int outside[4][2] = {{-1, 0}, {0, -1}, {8, 0}, {INT_MIN, INT_MAX}};
    for (const auto& [gx, gy] : outside) {
        map.SetFloor(gx, gy, 7);
        map.SetLowXWall(gx, gy, 7);
        EXPECT_EQ(CellText(map, gx, gy), "161 0 0 0|");
    }
    map.SetFloor(7, 7, 5);
    map.SetObject(7, 7, 6);
    map.SetLowXWall(7, 7, 200);
    map.SetLowYWall(7, 7, 127);
    EXPECT_EQ(CellText(map, 7, 7), "5 6 -56 127|");
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
    const auto sized = [](const std::string& width, const std::string& height) {
        return version + ("width=" + width + "\nheight=" + height + "\nBODY\n");
    };
    struct Row {
        const char* name;
        std::string file;
        int grid;  // 0: refused
        std::string log;
    };
    const Row rows[] = {
        {"other keys", version + size + "name=x\n=\n\nencoded=0\nBODY\n" + body, 8, ""},
        {"another version", "MAP V01.10 Tolvarin\r\n" + size + "BODY\n" + body, 8, warned + "MAP V01.10 Tolvarin\r\n"},
        {"BODY with more behind", version + size + "=BODY=1=2\n" + body, 8, ""},
        {"a carriage return is part of BODY", version + size + "BODY\r\n" + body, 8, shortBody},
        {"no BODY", version + std::string("width=2\nheight=2"), 8, shortBody},
        {"three pieces", version + size + "width=30=5\nBODY\n" + body, 8, ""},
        {"no width", version + std::string("height=2\nBODY\n") + body, 0, bad + "0x2\n"},
        {"no line at all", std::string(9000, 'v'), 0, warned + std::string(4096, 'v') + "\n" + bad + "0x0\n"},
        {"sizes that cancel out", sized("3", "-3"), 0, ""},
        {"negative sizes", sized("-3", "-3"), 0, ""},
        {"a count of cells beyond 31 bits", sized("20000", "10000"), 0, ""},
        {"a count beyond 32 bits", sized("32768", "1"), 0, bad + "32768x1\n"},
    };
    for (const Row& row : rows) {
        const support::TestFolder folder;
        TolvMap map;
        EXPECT_EQ(map.LoadMapBytes(row.file, "m.map"), row.grid != 0) << row.name;
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
    std::string log;
    for (int i = 0; i < 9; ++i)
        log += "coord less than 0 after deskew transform while loading map wide.map\n";
    EXPECT_EQ(ErrorLogText(), log);
    EXPECT_EQ(CellText(map, 4, 0), "1008 2008 9 109|");
}

TEST(TolvMap, LeavesTheCellsOfAShortBodyEmpty) {
    const std::string whole = demo::WriteMap(NumberedDrawing(2, 2));
    const std::pair<std::size_t, std::string> rows[] = {
        {7, "1000 0 0 0|1001 0 0 0|1002 0 0 0|65535 0 0 0|"},
        {11, "1000 2000 0 0|1001 0 0 0|1002 0 0 0|1003 0 0 0|"},
        {19, "1000 2000 1 101|1001 2001 2 0|1002 2002 0 0|1003 2003 0 0|"},
    };
    for (const auto& [kept, expected] : rows) {
        const support::TestFolder folder;
        TolvMap map;
        ASSERT_TRUE(map.LoadMapBytes(whole.substr(0, whole.size() - 24 + kept), "m.map"));
        std::string cells;
        for (const auto [gx, gy] : landing)
            cells += CellText(map, gx, gy);
        EXPECT_EQ(cells, expected);
        EXPECT_EQ(ErrorLogText(), shortBody);
    }
}

}  // namespace
