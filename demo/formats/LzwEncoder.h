#pragma once
// The compressor for LZW entries of dream archives.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace demo {

constexpr unsigned lzwClear = 256;
constexpr unsigned lzwEnd = 257;

// Bits packed most significant first.
class BitWriter {
  public:
    void Put(std::uint32_t value, unsigned width);
    // The bytes so far; a last, partly filled byte is padded with zero bits.
    [[nodiscard]] std::string Finish() const;

  private:
    std::string bytes;
    std::uint64_t pending = 0;
    unsigned pendingCount = 0;
};

// The code stream of `data`: a clear code, codes of 9 bits and more, an end code. The dictionary is cleared when the
// reader's has `entriesBeforeClear` entries; the default keeps every code within 12 bits, more lets the codes grow (to
// 16 bits at most).
std::string LzwEncode(std::string_view data, std::size_t entriesBeforeClear = 4094);

// A stream of just these codes, each with the width in bits that follows it.
std::string LzwCodes(const std::vector<std::pair<std::uint32_t, unsigned>>& codesAndWidths);

}  // namespace demo
