#include <gtest/gtest.h>

#include <string>
#include <tuple>
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

// The first pixel of every slot; "-" for an empty one, "x" for an image without pixels.
std::string Slots(const SpriteArchive& archive) {
    std::string slots;
    for (const auto& image : archive.images) {
        const bool pixels = image && image->Width() > 0;
        slots += (pixels ? std::to_string(image->rows[0][0]) : image ? "x" : "-") + " ";
    }
    return slots;
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
    ASSERT_EQ(Slots(archive), "3 9 - 3 ");
    for (const std::size_t slot : {0, 3}) {
        EXPECT_EQ(archive.images[slot]->rows, (std::vector<std::vector<std::uint8_t>>{{3, 4}, {1, 2}}));
        EXPECT_EQ(archive.images[slot]->keyIndex, slot == 0 ? 3 : 0);
    }
    EXPECT_EQ(ErrorLogText(), "");
}

TEST(SpriteArchive, TshKeepsWholeImagesOfAShortFile) {
    const std::string whole = demo::WriteTsh({Dot(5), {2, 0, {}}, {0, 2, {}}, {1, 2, {7, 8}}});
    const std::tuple<std::size_t, std::string, std::string> rows[] = {
        {whole.size(), "5 x x 7 ", ""},
        {whole.size() - 1, "5 x x - ", EndOfFile("3 of the 4")},
        {7, "- - - - ", EndOfFile("0 of the 4")},
        {1, "", EndOfFile("0 of the 0")},
    };
    for (const auto& [kept, slots, log] : rows) {
        const support::TestFolder folder;
        SpriteArchive archive;
        EXPECT_TRUE(LoadTshBytes(archive, whole.substr(0, kept), "s"));
        EXPECT_EQ(Slots(archive) + ErrorLogText(), slots + log) << kept;
    }
}

TEST(SpriteArchive, Ts2AddsToTheTable) {
    const std::string erp = "Erp... s... trying to load into an image index that's not a sane value... ignoring it.\n";
    const std::string cut = "Warning: EOF hit mid-pixel-data while reading s.  Will discard this image...\n";
    const std::string tall = demo::Ts2Image(0, {1, 3, {1, 2, 3}});
    const auto dot = [](unsigned number) { return demo::Ts2Image(number, Dot(6)); };
    const auto file = [](unsigned count, const std::string& images) {
        return demo::Ts2Header("TSH2.001", count, false) + images;
    };
    const std::string enciphered = demo::Ts2Header("TSH2.002", 1, true) + tall;
    const std::string unknown = demo::Ts2Header("TSH2.003", 1, false) + tall;
    struct Row {
        std::string bytes;
        int base;
        bool result;
        std::string slots;  // of a table that began with the dots 50 and 51
        std::string log;
    };
    const Row rows[] = {
        {file(2, dot(1) + dot(3)), 0, true, "50 6 - 6 ", ""},
        {file(2, dot(1024) + dot(65535)), 0, true, "50 51 ", erp + erp},
        {file(2, dot(600)), 500, true, "50 51 ", erp + EndOfFile("1 of the 2")},
        {file(1, dot(65535)), 65539, true, "50 51 6 ", ""},  // a base that wraps
        {file(3, dot(0) + tall.substr(0, 7)), 0, true, "6 51 ", cut + cut + EndOfFile("2 of the 3")},
        {file(1, tall.substr(0, 8)), 0, true, "50 51 ", cut},
        {file(2, "").substr(0, 11), 0, true, "50 51 ", EndOfFile("0 of the 2")},
        {enciphered, 0, false, "50 51 ", "s is encrypted.  We cannot load that yet.\n"},
        {unknown, 0, false, "50 51 ", "TS2 format version for s isn't recognized...\n"},
        {"", 0, false, "50 51 ", ""},
    };
    for (const Row& row : rows) {
        const support::TestFolder folder;
        SpriteArchive archive;
        ASSERT_TRUE(LoadTshBytes(archive, demo::WriteTsh({Dot(50), Dot(51)}), "t"));
        EXPECT_EQ(LoadTs2Bytes(archive, row.bytes, "s", row.base), row.result);
        EXPECT_EQ(Slots(archive) + ErrorLogText(), row.slots + row.log);
    }
}

TEST(SpriteArchive, LaysDreamsOverTheGamesOwnImages) {
    const support::TestFolder folder;
    for (const char* const name : {"dream/floors.ts2", "dream/own.ts2", "dream/lone.ts2"})
        folder.Write(name, demo::WriteTs2({{1, Dot(21)}}));
    folder.Write("dream/own.tsh", demo::WriteTsh({Dot(1)}));
    folder.Write("patches/default/floors.tsh", demo::WriteTsh({Dot(10), Dot(11), Dot(12)}));
    const std::string unknown = "TSH/TS2 loader encountered an unknown extension to load, for file: dream\\x.bmp\n";
    const std::tuple<std::string, bool, std::string> rows[] = {
        {"dream\\FLOORS.TS2", true, "10 21 12 "}, {"dream\\own.ts2", true, "1 21 "}, {"dream\\own.tsh", true, "1 "},
        {"dream\\lone.ts2", true, "- 21 "},       {"dream\\none.ts2", false, ""},    {"dream\\x.bmp", false, unknown},
    };
    for (const auto& [path, result, outcome] : rows) {
        SpriteArchive archive;
        EXPECT_EQ(LoadSpriteArchive(archive, path), result) << path;
        EXPECT_EQ(Slots(archive) + ErrorLogText(), outcome) << path;
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
    const std::tuple<const char*, std::string, std::string> rows[] = {
        {"red 255 1 2\r\nblue 256 -1 3 red 0 0 0\nEnd after 1 2 3", "blue=0000ff03 red=00ff0102 ", ""},
        {"red 255 1 2 blue 1 2 3", "blue=00010203 red=00ff0102 ", error},
        {"red 255 1 2 blue 1 2 99999999999 End", "red=00ff0102 ", error},
        {"red 255 1 End", "", error},
    };
    for (const auto& [file, expected, log] : rows) {
        const support::TestFolder folder;
        folder.Write("data/colors/colors.txt", file);
        ColorNames names{{"old", {}}};
        LoadColorNames(names);
        std::string text;
        for (const auto& [name, color] : names)
            text += name + "=" + Hex(color) + " ";
        EXPECT_EQ(text + ErrorLogText(), expected + log) << file;
    }
}

TEST(ColorTables, ReadColorNumbers) {
    const std::string error = "Error in file f\n";
    const std::tuple<const char*, std::string, std::string> rows[] = {
        {"3 red 70 blue -1", "00ff0000", "Color index too high (70) in file f...  ignoring it.\n"},
        {"3 blue 3 teal\n-1 3 red", "000000ff", "No such color (teal), referanced in file f\n"},
        {"3 red 4", "00ff0000", error},
        {"3 red four red -1", "00ff0000", error},
        {"", "00000000", error},
    };
    const ColorNames names{{"red", {0, 255, 0, 0}}, {"blue", {0, 0, 0, 255}}};
    for (const auto& [file, third, log] : rows) {
        const support::TestFolder folder;
        folder.Write("f", file);
        ColorTable table;
        table.fill({0, 9, 9, 9});
        LoadColorNumbers("f", names, table);
        EXPECT_EQ(Hex(table[3]) + Hex(table[63]) + ErrorLogText(), third + "00000000" + log) << file;
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
