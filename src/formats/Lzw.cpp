#include "formats/Lzw.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

#include "diag/LogFile.h"
#include "formats/CappedMessages.h"
#include "platform/Caps.h"

namespace {

constexpr std::size_t clearCode = 256;
constexpr std::size_t endCode = 257;
constexpr std::size_t entriesAfterClear = 258;
constexpr unsigned firstWidth = 9;
constexpr std::size_t twelveBitEntries = 4096;
// Codes are used as 16-bit values, so no code names an entry from here on.
constexpr std::size_t namedEntries = 65536;

// Every string of the dictionary but those of one byte is the string of some earlier code plus the byte that followed
// it, so it stands in the output already.
struct Entry {
    std::uint32_t start;  // in the output, or in the table of single bytes
    std::uint32_t length;
};

constexpr std::array<char, 256 + 16> MakeSingleBytes() {
    std::array<char, 256 + 16> table{};  // the tail lets a chunk be read anywhere
    for (int i = 0; i < 256; ++i)
        table[static_cast<std::size_t>(i)] = static_cast<char>(i);
    return table;
}
constexpr auto singleBytes = MakeSingleBytes();

constexpr std::size_t chunk = 16;

// Copies forward in whole chunks, so up to chunk - 1 bytes after the end are overwritten. The source may end where the
// destination begins: what a chunk then reads too much only goes into bytes that count for nothing yet.
inline void CopyInChunks(char* to, const char* from, std::size_t count) {
    for (std::size_t i = 0; i == 0 || i < count; i += chunk) {
        std::array<char, chunk> bytes;
        std::memcpy(bytes.data(), from + i, chunk);
        std::memcpy(to + i, bytes.data(), chunk);
    }
}

// Eight bytes from `position`, most significant first, zeros after the end.
inline std::uint64_t Window(std::string_view data, std::size_t position) {
    std::uint64_t window = 0;
    if (position + sizeof window <= data.size()) {
        std::memcpy(&window, data.data() + position, sizeof window);
        return __builtin_bswap64(window);
    }
    for (std::size_t i = 0; i < sizeof window; ++i)
        window = window << 8 | (position + i < data.size() ? static_cast<unsigned char>(data[position + i]) : 0U);
    return window;
}

// The output in the making: `out` with room after what is decoded.
class Output {
  public:
    explicit Output(std::string& toFill) : text(toFill), begin(toFill.size()) {}

    [[nodiscard]] char* Data() { return text.data() + begin; }
    [[nodiscard]] std::size_t Room() const { return text.size() - begin; }
    // Makes room for `needed` bytes and for as many as the whole input will give if it goes on as it began.
    void Grow(std::size_t needed, double decodedShare, std::size_t limit) {
        const auto expected = static_cast<std::size_t>(
            std::min(1.05 * static_cast<double>(Room()) / decodedShare, 16.0 * static_cast<double>(Room())));
        const std::size_t wanted = std::max({needed, Room() + Room() / 2, expected, std::size_t{1} << 15});
        text.resize(begin + std::max(needed, std::min(wanted, limit + chunk)));
    }
    void Cut(std::size_t count) { text.resize(begin + count); }

  private:
    std::string& text;
    const std::size_t begin;
};

}  // namespace

void LzwDecode(std::string_view data, std::string& out, std::size_t limit) {
    CappedMessages pastTwelveBits(caps::repeatedMessages);
    (void)LzwDecode(data, out, limit, pastTwelveBits);
}

// One loop over the codes with everything in locals: stores through char pointers would make the compiler reload
// members.
bool LzwDecode(std::string_view data, std::string& out, std::size_t limit, CappedMessages& pastTwelveBits) {
    limit = std::min<std::size_t>(limit, UINT32_MAX - chunk);
    const auto dictionary = std::make_unique_for_overwrite<Entry[]>(namedEntries);
    Entry* const entries = dictionary.get();
    for (std::uint32_t i = 0; i < 256; ++i)
        entries[i] = {i, 1};

    Output output(out);
    char* decoded = output.Data();
    std::size_t room = output.Room();
    std::size_t count = 0;           // bytes decoded
    std::size_t entryCount = 0;      // no entries, not even the single bytes, before the first clear
    std::size_t previousStart = 0;   // the string of the code before, in the output
    std::size_t previousLength = 0;  // 0: none
    unsigned width = firstWidth;
    const std::size_t bitCount = data.size() * 8;

    for (std::size_t bit = 0; bit + width <= bitCount;) {
        const std::uint64_t window = Window(data, bit / 8) << bit % 8;
        const std::size_t code = (window >> (64 - width)) & 0xFFFFU;
        bit += width;
        if (code == clearCode) {
            previousLength = 0;
            entryCount = entriesAfterClear;
            width = firstWidth;
            continue;
        }
        if (code == endCode) break;
        if (code > entryCount) {
            pastTwelveBits.Flush();
            errorLog.Write("The impossible happened when doing lzw decode.. code bigger than dict.\n");
            break;
        }
        // The code that is about to be given to an entry means the string before and its first byte once more.
        const bool known = code < entryCount;
        const std::size_t copied = known ? entries[code].length : previousLength;
        const std::size_t start = known ? entries[code].start : previousStart;
        if (copied == 0) continue;
        const std::size_t length = known ? copied : copied + 1;
        if (length > limit - count) {
            output.Cut(0);
            pastTwelveBits.Flush();
            errorLog.Write("Error: lzw data decodes to more than " + std::to_string(limit) + " bytes.\n");
            return false;
        }
        if (room - count < length + 2 * chunk) {
            output.Grow(count + length + 2 * chunk, static_cast<double>(bit) / static_cast<double>(bitCount), limit);
            decoded = output.Data();
            room = output.Room();
        }
        const char* const from = (code < clearCode ? singleBytes.data() : decoded) + start;
        CopyInChunks(decoded + count, from, copied);
        if (!known) decoded[count + copied] = *from;

        if (previousLength != 0) {
            if (entryCount >= twelveBitEntries)
                pastTwelveBits.Add("lzw dict: Adding even though dict is past 12 bits...\n");
            if (entryCount < namedEntries)
                entries[entryCount] = {static_cast<std::uint32_t>(previousStart),
                                       static_cast<std::uint32_t>(previousLength + 1)};
            ++entryCount;
            if (entryCount + 1 == std::size_t{1} << width) ++width;
        }
        previousStart = count;
        previousLength = length;
        count += length;
    }
    output.Cut(count);
    return true;
}
