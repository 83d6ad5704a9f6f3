#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "platform/FileSystem.h"
#include "support/TestFolder.h"

namespace {

using platform::File;
using platform::OpenMode;
using support::TestFolder;

int noticed = 0;

TEST(ResolvePath, FindsNamesInAnyCase) {
    const TestFolder folder;
    folder.Write("Data/Items/Chair.MBM", "");
    folder.Write("Data/Items/CHAIR.mbm", "");
    folder.Write("Data/items/other.txt", "");
    folder.Write("exact/x", "");
    folder.Write("EXACT/y", "");
    noticed = 0;
    platform::SetPathNoticeSink([](const std::string&) { ++noticed; });
    const struct {
        std::string path, resolved;
    } rows[] = {
        {"Data\\Items\\Chair.MBM", "Data/Items/Chair.MBM"},
        {"data/ITEMS\\chair.mbm", "Data/Items/CHAIR.mbm"},   // both parts ambiguous: the first of each
        {"data\\ITEMS\\OTHER.txt", "Data/Items/OTHER.txt"},  // chosen folder, new file
        {"exact\\Y", "exact/Y"},                             // an exact folder wins although the file is in the other
        {"EXACT\\Y", "EXACT/y"},
        {"New\\Place.txt", "New/Place.txt"},
        {".\\data\\..\\DATA", "./Data/../Data"},
        {folder.Path() + "/data", folder.Path() + "/Data"},
        {"", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(platform::ResolvePath(row.path), row.resolved);
    EXPECT_EQ(noticed, 2);
    for (const auto& row : rows)
        static_cast<void>(platform::ResolvePath(row.path));
    EXPECT_EQ(noticed, 2) << "told again";
    platform::SetPathNoticeSink(nullptr);
}

TEST(ResolvePath, SeesEveryChangeAtOnce) {
    const TestFolder folder;
    folder.Write("d/first", "");
    const auto now = std::filesystem::last_write_time("d");
    for (const bool settled : {false, true}) {
        // A listing of a folder that has long been quiet is kept until the folder's stamp changes; one of a fresh
        // folder is not, because a coarse clock may give a new entry the same stamp.
        if (settled) std::filesystem::last_write_time("d", now - std::chrono::hours(1));
        EXPECT_EQ(platform::ResolvePath("d\\FIRST"), "d/first");
        const std::string name = settled ? "late" : "soon";
        EXPECT_EQ(platform::ResolvePath("d\\" + name + "X"), "d/" + name + "X");
        std::ofstream("d/" + name + "x") << "made behind the program's back";
        if (!settled) std::filesystem::last_write_time("d", now);
        EXPECT_EQ(platform::ResolvePath("d\\" + name + "X"), "d/" + name + "x");
    }
    EXPECT_TRUE(File("D\\Made", OpenMode::Write).IsOpen());
    EXPECT_EQ(platform::ResolvePath("d\\MADE"), "d/Made");
    EXPECT_TRUE(platform::RenameFile("d\\MADE", "d\\First"));  // replaces d/first under its own letters
    EXPECT_EQ(platform::ResolvePath("d\\MADE"), "d/MADE");
    EXPECT_TRUE(platform::RemoveFile("d\\FIRST"));
    EXPECT_EQ(platform::ResolvePath("d\\FIRST"), "d/FIRST");
    EXPECT_TRUE(platform::MakeDirectory("d\\Sub"));
    EXPECT_FALSE(platform::MakeDirectory("d\\SUB"));
    EXPECT_FALSE(platform::MakeDirectory("x\\y") || platform::RemoveFile("d\\sub"));
}

TEST(ResolvePath, LooksAgainAfterTheHandlesHadRunOut) {
    const TestFolder folder;
    folder.Write("d/File", "");
    std::filesystem::last_write_time("d", std::filesystem::last_write_time("d") - std::chrono::hours(1));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const std::string without = platform::ResolvePath("d\\FILE");
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(without, "d/FILE");
    EXPECT_EQ(platform::ResolvePath("d\\FILE"), "d/File");
}

TEST(File, OpensFilesOnly) {
    const TestFolder folder;
    folder.Write("folder/file", "x");
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    for (const OpenMode mode : {OpenMode::Read, OpenMode::Write, OpenMode::Append})
        for (const std::string& path : {std::string(), std::string("folder"), std::string("."), std::string("pipe"),
                                        std::string("no/such"), std::string("folder/file\0x", 13)})
            EXPECT_FALSE(File(path, mode).IsOpen()) << path;
    File empty;
    EXPECT_FALSE(empty.Write("x", 1) || empty.Seek(0) || empty.Close() || empty.Size() != 0);
    std::string out = "old";
    EXPECT_FALSE(platform::ReadFileBytes("folder", out, 1));
    EXPECT_FALSE(platform::ReadFileBytes("/proc/self/mem", out, 1)) << "its first page cannot be read";
    EXPECT_EQ(out, "");
}

TEST(File, TellsOfAFullDisk) {
    File small("/dev/full", OpenMode::Write);
    ASSERT_TRUE(small.IsOpen());
    EXPECT_FALSE(small.Write("x", 1) && small.Close());
    File large("/dev/full", OpenMode::Write);
    const std::string block(1 << 20, 'x');
    EXPECT_FALSE(large.Write(block.data(), block.size()));
    EXPECT_FALSE(large.Close());
}

TEST(ListFiles, TakesRegularFilesByTheStartOfTheirExtension) {
    const TestFolder folder;
    for (const char* name :
         {"sub/a.ini", "sub/B.INI", "sub/c.inix", "sub/d.in", "sub/ini", "sub/e.ini.txt", "sub/.ini", "sub/dir.ini/x"})
        folder.Write(name, "");
    const auto names = [](std::string_view where) {
        auto found = platform::ListFiles(where, "ini");
        std::sort(found.begin(), found.end());
        return found;
    };
    const std::vector<std::string> expected = {".ini", "B.INI", "a.ini", "c.inix"};
    EXPECT_EQ(names("SUB"), expected);
    std::filesystem::current_path("sub");
    EXPECT_EQ(names(""), expected);
    EXPECT_TRUE(names("none").empty());
}

}  // namespace
