#include <gtest/gtest.h>

#include <climits>
#include <filesystem>

#include "diag/PathFiles.h"
#include "platform/FileSystem.h"
#include "support/TestFolder.h"

namespace {

using Strings = std::vector<std::string>;
using support::TestFolder;

TEST(Paths, TextsAreSplitReadAndCompared) {
    EXPECT_EQ(SplitTokens(",a, b,,c ,", ", "), (Strings{"a", "b", "c"}));
    for (const auto& [text, number] : {std::pair{"12abc", 12},
                                       {" \t\n+7", 7},
                                       {"- 1", 0},
                                       {"", 0},
                                       {"2147483648", INT_MAX},
                                       {"-2147483648", INT_MIN},
                                       {"-99999999999999999999999", INT_MIN}})
        EXPECT_EQ(DecimalOf(text), number) << text;
    EXPECT_TRUE(EqualsIgnoringCase("aBc", "AbC"));
    EXPECT_FALSE(EqualsIgnoringCase("abc", "ab"));
    EXPECT_FALSE(EqualsIgnoringCase("[", "{"));
}

TEST(Files, AreReadWholeOrByLines) {
    const TestFolder folder;
    folder.Write("Data/List.txt", "one\r\n\r\ntwo\n\n\nthree\r");
    EXPECT_EQ(FileSize("data\\LIST.txt"), 19U);
    EXPECT_EQ(FileSize("data"), 0U);
    EXPECT_EQ(ReadWholeFile("data\\list.txt", true), "one\r\n\r\ntwo\n\n\nthree\r");
    EXPECT_EQ(ReadWholeFile("data\\list.txt", false), "one\n\ntwo\n\n\nthree\r");
    Strings lines{"before"};
    EXPECT_TRUE(ReadLines("data\\list.txt", lines));
    EXPECT_EQ(lines, (Strings{"one", "two", "three\r"}));
    std::list<std::string> list{"kept"};
    EXPECT_TRUE(LoadStringList(list, "data\\list.txt"));
    EXPECT_EQ(list, (std::list<std::string>{"kept", "one"}));
    EXPECT_EQ(ReadWholeFile("none", true), "");
    EXPECT_FALSE(ReadLines("none", lines));
    EXPECT_EQ(support::ErrorLogText(), "");
    EXPECT_FALSE(LoadStringList(list, "no\\list"));
    EXPECT_EQ(support::ErrorLogText(), "Failed to open string list: no\\list\n");
}

TEST(Files, FoldersOfAPathAreMade) {
    const TestFolder folder;
    MakePathDirectories("a\\b/c\\file.txt");
    MakePathDirectories("A\\d\\");
    EXPECT_TRUE(std::filesystem::is_directory("a/b/c"));
    EXPECT_FALSE(folder.Has("a/b/c/file.txt"));
    EXPECT_TRUE(folder.Has("a/d"));  // what exists in other letters is used
}

void ExpectRefused(const std::string& folder, const Strings& names) {
    for (const std::string& name : names) {
        support::ClearErrorLog();
        EXPECT_EQ(ContainedPath(folder, name), "") << name;
        const std::string log = support::ErrorLogText();
        EXPECT_EQ(log.find("Bad: file name refused: \""), 0U) << name;
        EXPECT_EQ(log.find('\n'), log.size() - 1) << name;
    }
}

TEST(ContainedPath, StaysBelowItsFolder) {
    const TestFolder folder;
    folder.Write("dl/real/x", "");
    std::filesystem::create_symlink("real", "dl/Link");
    std::filesystem::create_symlink("nowhere", "dl/dangling");
    const std::string accepted[] = {"a.txt",    "real\\new.txt",       "deep/er\\file", "..a", "a..b",
                                    "\xE9.map", std::string(200, 'n'), "...a",          "~"};
    for (const std::string& name : accepted)
        EXPECT_EQ(ContainedPath("dl\\", name), "dl\\" + name);
    EXPECT_EQ(ContainedPath("", "file"), "file");
    EXPECT_EQ(support::ErrorLogText(), "");
    ExpectRefused("dl\\",
                  {"", ".", "..", "..\\x", "a\\..\\x", "a/../../x", "a\\.\\x", "\\x", "/x", "\\\\host\\share\\x"});
    ExpectRefused("dl\\",
                  {"C:x", "C:\\x", "x:stream", "a\\", "dir.\\x", "x.", "x ", "x...", ".. \\x", "a\nb", "a\x7F"});
    ExpectRefused("dl\\", {std::string("a\0b", 3), std::string(201, 'n'), "link\\x", "Link", "dangling"});
}

}  // namespace
