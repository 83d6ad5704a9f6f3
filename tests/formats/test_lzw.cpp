#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "demo/formats/LzwEncoder.h"
#include "formats/CappedMessages.h"
#include "formats/Lzw.h"
#include "support/TestFolder.h"

namespace {

using support::ErrorLogText;

constexpr char tooBig[] = "The impossible happened when doing lzw decode.. code bigger than dict.\n";
constexpr std::size_t noLimit = 1U << 26;

std::string Decoded(const std::string& stream, std::size_t limit = noLimit) {
    std::string out;
    LzwDecode(stream, out, limit);
    return out;
}

TEST(Lzw, DecodesCodesByHand) {
    struct Row {
        const char* name;
        std::vector<std::pair<std::uint32_t, unsigned>> codes;
        std::string outcome;
    };
    const Row rows[] = {
        {"two letters and their pair", {{256, 9}, {65, 9}, {66, 9}, {258, 9}, {257, 9}}, "ABAB"},
        {"the entry in the making", {{256, 9}, {65, 9}, {258, 9}, {259, 9}, {257, 9}, {66, 9}}, "AAAAAA"},
        {"one beyond it", {{256, 9}, {65, 9}, {259, 9}, {66, 9}}, std::string("A") + tooBig},
        {"no clear first", {{65, 9}, {66, 9}}, tooBig},
        {"code 0 before the clear", {{0, 9}, {256, 9}, {65, 9}, {33, 5}}, "A"},
        {"the entry in the making after a clear", {{256, 9}, {258, 9}, {65, 9}, {258, 9}}, "AAA"},
    };
    for (const Row& row : rows) {
        const support::TestFolder folder;
        const std::string decoded = Decoded(demo::LzwCodes(row.codes));
        EXPECT_EQ(decoded + ErrorLogText(), row.outcome) << row.name;
    }
}

TEST(Lzw, UndoesTheEncoder) {
    std::mt19937 random(22);
    for (const std::size_t mostEntries : {300, 4094, 60000}) {
        const support::TestFolder folder;
        std::string data;
        for (int i = 0; i < 300000; ++i)
            data.push_back(static_cast<char>(i % 5000 < 2500 ? random() % 3 : random() % 200));
        data += std::string(20000, 'x');  // every code is the entry in the making
        EXPECT_TRUE(Decoded(demo::LzwEncode(data, mostEntries)) == data) << mostEntries;
        EXPECT_EQ(ErrorLogText().empty(), mostEntries <= 4094);
    }
}

// Codes wider than 16 bits count by their low 16, and the log is capped.
TEST(Lzw, GrowsPastSixteenBits) {
    const support::TestFolder folder;
    demo::BitWriter bits;
    std::string letters;
    bits.Put(256, 9);
    unsigned width = 9;
    for (std::uint32_t i = 0; i < 140000; ++i) {
        letters += static_cast<char>(i % 251);
        bits.Put(i % 251 | (width > 16 ? 1U << 16 : 0U), width);
        if (i > 0 && 258 + i + 1 == 1U << width) ++width;
    }
    ASSERT_EQ(width, 18U);
    EXPECT_TRUE(Decoded(bits.Finish()) == letters);
    const std::string line = "lzw dict: Adding even though dict is past 12 bits...\n";
    const std::string closing = "(more messages like the last one are left out)\n";
    EXPECT_EQ(ErrorLogText().size(), 65536 * line.size() + closing.size());
    EXPECT_TRUE(ErrorLogText().starts_with(line + line) && ErrorLogText().ends_with(line + closing));
}

TEST(Lzw, AppendsNothingBeyondTheLimit) {
    const support::TestFolder folder;
    const std::string stream = demo::LzwEncode(std::string(100000, 'x'));
    std::string out = "before";
    LzwDecode(stream, out, 100000);
    EXPECT_EQ(out.size(), 100006U);
    EXPECT_EQ(ErrorLogText(), "");
    out = "before";
    LzwDecode(stream, out, 99999);
    EXPECT_EQ(out, "before");
    EXPECT_EQ(ErrorLogText(), "Error: lzw data decodes to more than 99999 bytes.\n");
}

}  // namespace
