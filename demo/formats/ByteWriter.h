#pragma once
// Builds little-endian binary files field by field.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace demo {

class ByteWriter {
  public:
    ByteWriter& U8(unsigned value) { return Number(value, 1); }
    ByteWriter& U16(unsigned value) { return Number(value, 2); }
    ByteWriter& U32(std::uint32_t value) { return Number(value, 4); }
    ByteWriter& Bytes(std::string_view text) {
        bytes.append(text);
        return *this;
    }
    ByteWriter& Zeros(std::size_t count) {
        bytes.append(count, '\0');
        return *this;
    }
    // The text, cut or padded with zeros to `count` bytes.
    ByteWriter& Field(std::string_view text, std::size_t count) {
        const std::string_view kept = text.substr(0, count);
        return Bytes(kept).Zeros(count - kept.size());
    }

    [[nodiscard]] const std::string& Str() const { return bytes; }

  private:
    ByteWriter& Number(std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i)
            bytes.push_back(static_cast<char>((value >> (8 * i)) & 0xFFU));
        return *this;
    }

    std::string bytes;
};

}  // namespace demo
