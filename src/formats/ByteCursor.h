#pragma once
// The bounds-checked little-endian reader of every binary format.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Reads forward through bytes that it does not own. The first read past the end fails, gives 0 or nothing, moves no
// further, and every later read fails too.
class ByteCursor {
  public:
    explicit ByteCursor(std::string_view toRead) : bytes(toRead) {}

    [[nodiscard]] bool Failed() const { return failed; }
    [[nodiscard]] std::size_t Position() const { return position; }
    [[nodiscard]] std::size_t Remaining() const { return bytes.size() - position; }

    std::uint8_t U8() { return static_cast<std::uint8_t>(Number(1)); }
    std::uint16_t U16() { return static_cast<std::uint16_t>(Number(2)); }
    std::uint32_t U32() { return Number(4); }
    float F32();
    // `count` bytes, or none.
    std::string_view Bytes(std::size_t count) {
        if (failed || count > Remaining()) {
            failed = true;
            return {};
        }
        position += count;
        return bytes.substr(position - count, count);
    }
    void Skip(std::size_t count) { (void)Bytes(count); }
    // To an offset from the start.
    void Seek(std::size_t offset) {
        if (offset > bytes.size())
            failed = true;
        else if (!failed)
            position = offset;
    }

  private:
    std::uint32_t Number(std::size_t count) {
        std::uint32_t number = 0;
        const std::string_view field = Bytes(count);
        for (std::size_t i = 0; i < field.size(); ++i)
            number |= static_cast<std::uint32_t>(static_cast<unsigned char>(field[i])) << (8 * i);
        return number;
    }

    std::string_view bytes;
    std::size_t position = 0;
    bool failed = false;
};

inline float ByteCursor::F32() {
    const std::uint32_t bits = U32();
    float value = 0.0F;
    static_assert(sizeof value == sizeof bits);
    __builtin_memcpy(&value, &bits, sizeof value);
    return value;
}
