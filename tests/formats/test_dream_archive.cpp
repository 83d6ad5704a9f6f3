#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "demo/formats/ArchiveWriter.h"
#include "demo/formats/ByteWriter.h"
#include "demo/formats/LzwEncoder.h"
#include "formats/DreamArchive.h"
#include "support/TestFolder.h"

namespace {

using demo::ArchiveEntryHeader;
using demo::ArchiveMethod;
using support::ErrorLogText;

constexpr char path[] = "dream\\a.arc";
const std::string none = "No decompressed data generated for file: dream\\x, so skipping\n";
const std::string badHeader = "Error in file entry header, in dream file: dream\\a.arc\n";

std::string Entry(const std::string& name, std::uint32_t method, const std::string& stored) {
    return ArchiveEntryHeader(name, static_cast<std::uint32_t>(stored.size()), method) + stored;
}

TEST(DreamArchive, UnpacksEveryMethodIntoItsFolder) {
    const support::TestFolder folder;
    std::string text;
    for (int i = 0; i < 5000; ++i)
        text += "line " + std::to_string(i % 77) + "\n";
    folder.Write("dream/a.arc", demo::WriteArchive({{"plain.txt", ArchiveMethod::Plain, text},
                                                    {"sub\\deep\\lzw.txt", ArchiveMethod::Lzw, text},
                                                    {"bz.txt", ArchiveMethod::Bzip2, text}}));
    EXPECT_TRUE(UnpackDreamArchive(path));
    for (const char* const name : {"plain.txt", "sub/deep/lzw.txt", "bz.txt"})
        EXPECT_EQ(folder.Read(std::string("dream/") + name), text) << name;
    EXPECT_EQ(ErrorLogText(), "");
}

// A process that ends in the middle must not leave a part, which the next visit would take for an unpacked file.
TEST(DreamArchive, NeverWritesIntoTheFileItReplaces) {
    const support::TestFolder folder;
    folder.Write("dream/x", "a part");
    std::filesystem::create_hard_link("dream/x", "dream/before");
    folder.Write("dream/a.arc", demo::WriteArchive({{"x", ArchiveMethod::Plain, "the whole of it"}}));
    EXPECT_TRUE(UnpackDreamArchive(path));
    EXPECT_EQ(folder.Read("dream/x"), "the whole of it");
    EXPECT_EQ(folder.Read("dream/before"), "a part");
    EXPECT_FALSE(folder.Has("dream/x.tmp"));
}

// After every row's entries follows a good one; whether it came out tells a walk that went on from one that stopped.
TEST(DreamArchive, SaysWhatIsWrong) {
    const std::string lzwOfA = demo::StoredData(ArchiveMethod::Lzw, "A");
    const std::string noClear = demo::Complemented(demo::LzwCodes({{65, 9}, {257, 9}}));
    const std::string header = Entry("x", 1, "abc");
    const std::string unnamed(48, 'n');
    struct Row {
        const char* name;
        std::string entries;
        bool result;
        std::string x;  // content of the file "x"
        std::string log;
    };
    const Row rows[] = {
        {"complemented bytes", Entry("x", 1, std::string("\0\xFF", 2)), true, std::string("\xFF\0", 2), ""},
        {"method 3", Entry("x", 3, "abc"), true, "",
         "Unsupported compression method for file \"x\" in dream \"dream\\a.arc\": method 3\n" + none},
        {"lzw without a clear code", Entry("x", 0, noClear), true, "",
         "The impossible happened when doing lzw decode.. code bigger than dict.\n"
         "Data decompression (lzw) failed on file \"x\" in dream file: dream\\a.arc\n" +
             none},
        {"lzw that grows when packed", Entry("x", 0, lzwOfA), true, "A",
         "Data decompression (lzw) has a suspicious size on file \"x\" in dream file: dream\\a.arc ...\n"},
        {"bzip2 cut short", Entry("x", 2, demo::StoredData(ArchiveMethod::Bzip2, "abc").substr(0, 20)), true, "",
         "error while doing bz2 decompression for file dream\\x, result=-7\n" + none},
        {"damaged bzip2", Entry("x", 2, "abcdef"), true, "",
         "error while doing bz2 decompression for file dream\\x, result=-5\n" + none},
        {"a folder in the way", Entry("y\\z", 1, "b") + Entry("y", 1, "abc"), true, "",
         "Unable to write file: dream\\y, so skipping\n"},
        {"a name that climbs", Entry("..\\x", 1, "abc"), true, "", "Bad: file name refused: \"..\\x\"\n"},
        {"the archive's own name", Entry("A.arc", 1, std::string(5000, 'a')), true, "",
         "Error: refused file \"A.arc\", which would replace the dream file: dream\\a.arc\n"},
        {"the note of its size", Entry("a.arc.SIZE", 1, "9"), true, "",
         "Error: refused file \"a.arc.SIZE\", which would replace the dream file: dream\\a.arc\n"},
        {"wrong entry magic", header + "ZF" + header.substr(2), false, demo::Complemented("abc"), badHeader},
        {"a name without an end", ArchiveEntryHeader(unnamed, 1, 1) + "a", false, "", badHeader},
        {"more stored data than archive", ArchiveEntryHeader("x", 1000, 1) + "abc", false, "", badHeader},
        {"a stored size near 2^32", ArchiveEntryHeader("x", 0xFFFFFFC2U, 1) + "abc", false, "", badHeader},
    };
    for (const Row& row : rows) {
        const support::TestFolder folder;
        folder.Write("dream/a.arc", demo::ArchiveHeader() + row.entries + Entry("last", 1, "abc"));
        EXPECT_EQ(UnpackDreamArchive(path), row.result) << row.name;
        EXPECT_EQ(folder.Read("dream/x"), row.x) << row.name;
        EXPECT_EQ(folder.Has("dream/last"), row.result) << row.name;
        EXPECT_EQ(ErrorLogText(), row.log) << row.name;
    }
}

TEST(DreamArchive, RefusesWhatIsNoArchive) {
    const support::TestFolder folder;
    folder.Write("dream/a.arc", "FR02" + std::string(24, '\0'));
    EXPECT_FALSE(UnpackDreamArchive(path));
    EXPECT_EQ(ErrorLogText(), "Error decompressing dream file (dream\\a.arc): dream header ID is invalid.\n");
}

TEST(DreamArchive, KeepsFilesThatAreThereAlready) {
    const support::TestFolder folder;
    folder.Write("dream/x", "old");
    folder.Write("dream/y", "old");
    folder.Write("dream/a.arc", demo::ArchiveHeader() + Entry("x", 1, "abc") + Entry("y", 1, "abcd"));
    EXPECT_TRUE(UnpackDreamArchive(path));
    EXPECT_EQ(folder.Read("dream/x") + folder.Read("dream/y") + ErrorLogText(), "old" + demo::Complemented("abcd"));
}

}  // namespace
