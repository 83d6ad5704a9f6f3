#include "demo/formats/LzwEncoder.h"

#include <algorithm>
#include <unordered_map>

namespace demo {

void BitWriter::Put(std::uint32_t value, unsigned width) {
    pending = (pending << width) | value;
    pendingCount += width;
    while (pendingCount >= 8) {
        pendingCount -= 8;
        bytes.push_back(static_cast<char>((pending >> pendingCount) & 0xFFU));
    }
    pending &= (1ULL << pendingCount) - 1;
}

std::string BitWriter::Finish() const {
    if (pendingCount == 0) return bytes;
    return bytes + static_cast<char>((pending << (8 - pendingCount)) & 0xFFU);
}

namespace {

constexpr unsigned firstWidth = 9;
constexpr std::size_t entriesAfterClear = 258;

// Writes codes and follows the dictionary that the reader has when it meets each of them.
class CodeWriter {
  public:
    void Clear() {
        bits.Put(lzwClear, width);
        width = firstWidth;
        readerEntries = entriesAfterClear;
        afterClear = true;
    }
    // The reader adds an entry for every code but the first after a clear, and takes the wider codes one entry early.
    void Code(std::uint32_t code) {
        bits.Put(code, width);
        if (!afterClear && ++readerEntries + 1 == std::size_t{1} << width) ++width;
        afterClear = false;
    }
    std::string End() {
        bits.Put(lzwEnd, width);
        return bits.Finish();
    }
    [[nodiscard]] std::size_t ReaderEntries() const { return readerEntries; }

  private:
    BitWriter bits;
    unsigned width = firstWidth;
    std::size_t readerEntries = entriesAfterClear;
    bool afterClear = true;
};

}  // namespace

std::string LzwEncode(std::string_view data, std::size_t entriesBeforeClear) {
    const std::size_t mostEntries = std::clamp<std::size_t>(entriesBeforeClear, entriesAfterClear + 1, 65534);
    CodeWriter writer;
    std::unordered_map<std::uint32_t, std::uint32_t> longer;  // code << 8 | next byte -> code
    std::uint32_t nextCode = entriesAfterClear;
    writer.Clear();
    bool hasCurrent = false;
    std::uint32_t current = 0;
    for (const char character : data) {
        const auto byte = static_cast<unsigned char>(character);
        if (!hasCurrent) {
            current = byte;
            hasCurrent = true;
            continue;
        }
        const std::uint32_t key = current << 8 | byte;
        if (const auto found = longer.find(key); found != longer.end()) {
            current = found->second;
            continue;
        }
        writer.Code(current);
        longer.emplace(key, nextCode++);
        current = byte;
        if (writer.ReaderEntries() >= mostEntries) {
            writer.Clear();
            longer.clear();
            nextCode = entriesAfterClear;
        }
    }
    if (hasCurrent) writer.Code(current);
    return writer.End();
}

std::string LzwCodes(const std::vector<std::pair<std::uint32_t, unsigned>>& codesAndWidths) {
    BitWriter bits;
    for (const auto& [code, width] : codesAndWidths)
        bits.Put(code, width);
    return bits.Finish();
}

}  // namespace demo
