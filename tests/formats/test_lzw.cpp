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
constexpr char pastTwelveBits[] = "lzw dict: Adding even though dict is past 12 bits...\n";
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

// The decoder as one would write it down first: strings in a list, one input byte at a time.
std::string PlainDecode(const std::string& data, std::size_t& additionsPastTwelveBits, bool& stopped) {
    std::string out;
    std::string previous;
    std::vector<std::string> dictionary;
    unsigned width = 9;
    std::uint64_t accumulator = 0;
    unsigned pending = 0;
    for (const char byte : data) {
        accumulator = accumulator << 8 | static_cast<unsigned char>(byte);
        pending += 8;
        if (pending < width) continue;
        pending -= width;
        const auto code = static_cast<std::uint16_t>(accumulator >> pending);
        accumulator &= (1ULL << pending) - 1;
        if (code == 257) break;
        if (code == 256) {
            previous.clear();
            dictionary.assign(258, "");
            for (std::size_t i = 0; i < 256; ++i)
                dictionary[i] = std::string(1, static_cast<char>(i));
            width = 9;
            continue;
        }
        const bool known = code < dictionary.size();
        const std::string current = known ? dictionary[code] : previous + previous.substr(0, 1);
        stopped = code > dictionary.size();
        if (stopped) break;
        out += current;
        if (!previous.empty()) {
            additionsPastTwelveBits += dictionary.size() >= 4096 ? 1 : 0;
            dictionary.push_back(previous + current.substr(0, 1));
            if (dictionary.size() + 1 == 1ULL << width) ++width;
        }
        previous = current;
    }
    return out;
}

// A stream whose codes a decoder can follow: the writer keeps the decoder's count and width.
std::string RandomStream(std::mt19937& random, std::size_t codes, unsigned clearOneIn, unsigned newestOneIn) {
    demo::BitWriter bits;
    std::size_t count = 0;
    unsigned width = 9;
    for (std::size_t i = 0; i < codes; ++i) {
        const bool clear = count == 0 || random() % clearOneIn == 0;
        if (clear) {
            bits.Put(256, width);
            count = 258;
            width = 9;
        }
        auto code = static_cast<std::uint32_t>(random() % newestOneIn == 0 && !clear ? count : random() % count);
        if ((code & 0xFFFEU) == 256) code = random() % 256;
        bits.Put(code, width);
        if (!clear && ++count + 1 == std::size_t{1} << width) ++width;
    }
    return bits.Finish();
}

TEST(Lzw, AgreesWithThePlainDecoder) {
    const support::TestFolder folder;
    std::mt19937 random(20);
    for (int round = 0; round < 400; ++round) {
        std::string stream = RandomStream(random, 1 + random() % 6000, round % 2 ? 900 : 100000, 2 + random() % 40);
        // Half of the streams are damaged somewhere.
        if (round % 4 >= 2) stream[random() % stream.size()] ^= static_cast<char>(1U << random() % 8);
        std::size_t additions = 0;
        bool stopped = false;
        std::string expected = PlainDecode(stream, additions, stopped);
        for (; additions > 0; --additions)
            expected += pastTwelveBits;
        support::ClearErrorLog();
        const std::string decoded = Decoded(stream);
        ASSERT_EQ(decoded + ErrorLogText(), expected + (stopped ? tooBig : "")) << "round " << round;
    }
}

// More than 65536 entries: codes wider than 16 bits count by their low 16, and the log is capped.
TEST(Lzw, GrowsPastSixteenBits) {
    const support::TestFolder folder;
    std::mt19937 random(21);
    const std::string stream = RandomStream(random, 140000, 10000000, 1000000);
    std::size_t additions = 0;
    bool stopped = false;
    ASSERT_EQ(Decoded(stream), PlainDecode(stream, additions, stopped));
    ASSERT_GT(additions, 130000U);
    const std::string log = ErrorLogText();
    const std::string closing = "(more messages like the last one are left out)\n";
    EXPECT_EQ(log.size(), 65536 * (sizeof pastTwelveBits - 1) + closing.size());
    EXPECT_EQ(log.substr(log.size() - closing.size()), closing);
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
