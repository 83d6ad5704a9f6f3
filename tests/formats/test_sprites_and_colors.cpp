#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "demo/formats/ByteWriter.h"
#include "demo/formats/PcxWriter.h"
#include "demo/formats/SpriteWriter.h"
#include "formats/Palette.h"
#include "formats/SpriteArchive.h"
#include "support/TestFolder.h"

namespace {

using demo::IndexedImage;
using support::ErrorLogText;

// One pixel, so that images can be told apart.
IndexedImage Dot(std::uint8_t index) {
    return {1, 1, {index}};
}

// The first pixel of every slot; -1: empty, -2: an image without pixels.
std::vector<int> FirstPixels(const SpriteArchive& archive) {
    std::vector<int> pixels;
    for (const auto& image : archive.images)
        pixels.push_back(!image ? -1 : image->Width() == 0 ? -2 : image->rows[0][0]);
    return pixels;
}

std::string EndOfFile(const std::string& counts) {
    return "Warning: EOF hit, but only " + counts + " images were loaded from s.  Will use what we got...\n";
}

TEST(SpriteArchive, KeepsRowsFromTheTop) {
    const support::TestFolder folder;
    const IndexedImage image{2, 2, {3, 4, 1, 2}};
    // 2 images, the first with stored rows 1 2 and 3 4
    const std::string tsh = demo::WriteTsh({image, Dot(9)});
    ASSERT_EQ(tsh.substr(6, 8), std::string("\x02\x02\0\0\x01\x02\x03\x04", 8));
    SpriteArchive archive;
    ASSERT_TRUE(LoadTshBytes(archive, tsh, "s"));
    ASSERT_TRUE(LoadTs2Bytes(archive, demo::WriteTs2({{1, image}}), "s", 2));
    ASSERT_EQ(FirstPixels(archive), (std::vector<int>{3, 9, -1, 3}));
    for (const std::size_t slot : {0, 3}) {
        EXPECT_EQ(archive.images[slot]->rows, (std::vector<std::vector<std::uint8_t>>{{3, 4}, {1, 2}}));
        EXPECT_EQ(archive.images[slot]->keyIndex, slot == 0 ? 3 : 0);
    }
    EXPECT_EQ(ErrorLogText(), "");
}

TEST(SpriteArchive, TshKeepsWholeImagesOfAShortFile) {
    const std::string whole = demo::WriteTsh({Dot(5), {2, 0, {}}, {0, 2, {}}, {1, 2, {7, 8}}});
    struct Row {
        std::size_t kept;
        std::vector<int> pixels;
        std::string log;
    };
    const Row rows[] = {
        {whole.size(), {5, -2, -2, 7}, ""},
        {whole.size() - 1, {5, -2, -2, -1}, EndOfFile("3 of the 4")},
        {16, {5, -1, -1, -1}, EndOfFile("1 of the 4")},
        {7, {-1, -1, -1, -1}, EndOfFile("0 of the 4")},
        {1, {}, EndOfFile("0 of the 0")},
    };
    for (const Row& row : rows) {
        const support::TestFolder folder;
        SpriteArchive archive;
        EXPECT_TRUE(LoadTshBytes(archive, whole.substr(0, row.kept), "s")) << row.kept;
        EXPECT_EQ(FirstPixels(archive), row.pixels) << row.kept;
        EXPECT_EQ(ErrorLogText(), row.log) << row.kept;
    }
}

TEST(SpriteArchive, Ts2AddsToTheTable) {
    const std::string erp = "Erp... s... trying to load into an image index that's not a sane value... ignoring it.\n";
    const std::string cut = "Warning: EOF hit mid-pixel-data while reading s.  Will discard this image...\n";
    const std::string tall = demo::Ts2Image(0, {1, 3, {1, 2, 3}});
    const auto file = [](unsigned count, const std::string& images) {
        return demo::Ts2Header("TSH2.001", count, false) + images;
    };
    struct Row {
        const char* name;
        std::string bytes;
        int base;
        bool result;
        std::vector<int> pixels;  // of a table that began with the dots 50 and 51
        std::string log;
    };
    const Row rows[] = {
        {"one replaced, one added",
         file(2, demo::Ts2Image(1, Dot(6)) + demo::Ts2Image(3, Dot(7))),
         0,
         true,
         {50, 6, -1, 7},
         ""},
        {"slots 1024 and -1",
         file(2, demo::Ts2Image(1024, Dot(6)) + demo::Ts2Image(65535, Dot(6))),
         0,
         true,
         {50, 51},
         erp + erp},
        {"beyond with the base", file(1, demo::Ts2Image(600, Dot(6))), 500, true, {50, 51}, erp},
        {"a base that wraps", file(1, demo::Ts2Image(65535, Dot(6))), 65539, true, {50, 51, 6}, ""},
        {"cut in the second row",
         file(3, demo::Ts2Image(0, Dot(6)) + tall.substr(0, 7)),
         0,
         true,
         {6, 51},
         cut + cut + EndOfFile("2 of the 3")},
        {"cut in the last image", file(1, tall.substr(0, 8)), 0, true, {50, 51}, cut},
        {"cut in the file header", file(2, "").substr(0, 11), 0, true, {50, 51}, EndOfFile("0 of the 2")},
        {"enciphered",
         demo::Ts2Header("TSH2.002", 1, true) + tall,
         0,
         false,
         {50, 51},
         "s is encrypted.  We cannot load that yet.\n"},
        {"another version",
         demo::Ts2Header("TSH2.003", 1, false) + tall,
         0,
         false,
         {50, 51},
         "TS2 format version for s isn't recognized...\n"},
        {"nothing", "", 0, false, {50, 51}, ""},
    };
    for (const Row& row : rows) {
        const support::TestFolder folder;
        SpriteArchive archive;
        ASSERT_TRUE(LoadTshBytes(archive, demo::WriteTsh({Dot(50), Dot(51)}), "t"));
        EXPECT_EQ(LoadTs2Bytes(archive, row.bytes, "s", row.base), row.result) << row.name;
        EXPECT_EQ(FirstPixels(archive), row.pixels) << row.name;
        EXPECT_EQ(ErrorLogText(), row.log) << row.name;
    }
}

TEST(SpriteArchive, LaysDreamsOverTheGamesOwnImages) {
    const support::TestFolder folder;
    const std::string overlay = demo::WriteTs2({{1, Dot(21)}});
    folder.Write("dream/floors.ts2", overlay);
    folder.Write("dream/own.ts2", overlay);
    folder.Write("dream/own.tsh", demo::WriteTsh({Dot(1)}));
    folder.Write("patches/default/floors.tsh", demo::WriteTsh({Dot(10), Dot(11), Dot(12)}));
    folder.Write("dream/lone.ts2", overlay);
    struct Row {
        const char* path;
        bool result;
        std::vector<int> pixels;
        std::string log;
    };
    const Row rows[] = {
        {"dream\\FLOORS.TS2", true, {10, 21, 12}, ""},
        {"dream\\own.ts2", true, {1, 21}, ""},
        {"dream\\own.tsh", true, {1}, ""},
        {"dream\\lone.ts2", true, {-1, 21}, ""},
        {"dream\\none.ts2", false, {}, ""},
        {"dream\\x.bmp",
         false,
         {},
         "TSH/TS2 loader encountered an unknown extension to load, for file: dream\\x.bmp\n"},
    };
    for (const Row& row : rows) {
        support::ClearErrorLog();
        SpriteArchive archive;
        EXPECT_EQ(LoadSpriteArchive(archive, row.path), row.result) << row.path;
        EXPECT_EQ(FirstPixels(archive), row.pixels) << row.path;
        EXPECT_EQ(ErrorLogText(), row.log) << row.path;
    }
}

std::string Hex(const Color& color) {
    char text[16];
    std::snprintf(text, sizeof text, "%02x%02x%02x%02x", color.lead, color.red, color.green, color.blue);
    return text;
}

TEST(Palette, TakesTheEndOfAPcxFile) {
    const support::TestFolder folder;
    demo::RgbPalette palette;
    for (std::size_t i = 0; i < palette.size(); ++i)
        palette[i] = {static_cast<std::uint8_t>(3 * i), static_cast<std::uint8_t>(3 * i + 1),
                      static_cast<std::uint8_t>(i)};
    folder.Write("p.pcx", demo::WritePcx(3, 2, {1, 1, 2, 200, 200, 201}, palette));
    folder.Write("short.pcx", std::string(767, 'x'));
    for (const char* path : {"p.pcx", "none.pcx", "short.pcx"}) {
        LoadPcxPalette(path);
        EXPECT_EQ(Hex(currentPalette[1]), "00030401") << path;
        EXPECT_EQ(Hex(currentPalette[255]), "00fdfeff") << path;
    }
    EXPECT_EQ(ErrorLogText(),
              "Failed to open file to read pcx palette (none.pcx)\n"
              "File is too short for a pcx palette (short.pcx)\n");
    currentPalette = {};
}

TEST(ColorTables, ReadColorNames) {
    const std::string error = "Error in file data\\colors\\colors.txt, some colors may be wrong...\n";
    struct Row {
        const char* file;
        std::string names;
        std::string log;
    };
    const Row rows[] = {
        {"red 255 1 2\r\nblue 256 -1 3 red 0 0 0\nEnd after 1 2 3", "blue=0000ff03 red=00ff0102 ", ""},
        {"red 255 1 2 blue 1 2 3", "blue=00010203 red=00ff0102 ", error},
        {"red 255 1 2 blue 1 x 3 End", "red=00ff0102 ", error},
        {"red 255 1 2 blue 1 2 99999999999 End", "red=00ff0102 ", error},
        {"red 255 1 End", "", error},
        {"", "", error},
    };
    for (const Row& row : rows) {
        const support::TestFolder folder;
        folder.Write("data/colors/colors.txt", row.file);
        ColorNames names{{"old", {}}};
        LoadColorNames(names);
        std::string text;
        for (const auto& [name, color] : names)
            text += name + "=" + Hex(color) + " ";
        EXPECT_EQ(text, row.names) << row.file;
        EXPECT_EQ(ErrorLogText(), row.log) << row.file;
    }
}

TEST(ColorTables, ReadColorNumbers) {
    const std::string error = "Error in file f\n";
    const std::string tooHigh = "Color index too high (70) in file f...  ignoring it.\n";
    struct Row {
        const char* file;
        std::string third;
        std::string log;
    };
    const Row rows[] = {
        {"3 red 70 blue -1", "00ff0000", tooHigh},
        {"3 red 70 blue", "00ff0000", tooHigh + error},
        {"3 blue 3 teal\n-1 3 red", "000000ff", "No such color (teal), referanced in file f\n"},
        {"3 red 4", "00ff0000", error},
        {"3 red four red -1", "00ff0000", error},
        {"", "00000000", error},
    };
    const ColorNames names{{"red", {0, 255, 0, 0}}, {"blue", {0, 0, 0, 255}}};
    for (const Row& row : rows) {
        const support::TestFolder folder;
        folder.Write("f", row.file);
        ColorTable table;
        table.fill({0, 9, 9, 9});
        LoadColorNumbers("f", names, table);
        EXPECT_EQ(Hex(table[3]), row.third) << row.file;
        EXPECT_EQ(Hex(table[63]), "00000000") << row.file;
        EXPECT_EQ(ErrorLogText(), row.log) << row.file;
    }
}

TEST(ColorTables, LoadEveryPartInTurn) {
    const support::TestFolder folder;
    folder.Write("data/colors/colors.txt", "red 9 0 0 End");
    folder.Write("data/colors/vest.txt", "1 red -1");
    LoadCharacterColorTables();
    EXPECT_EQ(GetColorTable(BodyPart::Vest)[1].red, 9);
    std::string log;
    for (const char* part : {"badge", "bracer", "boot", "cape", "eye", "fur", "hair", "marking", "pants"})
        log += std::string("Failed to open data\\colors\\") + part + ".txt to load color indices from.\n";
    EXPECT_EQ(ErrorLogText(), log);
}

}  // namespace
