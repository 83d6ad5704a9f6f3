#pragma once
// Numbers of the binary cache and how its fields are written.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

namespace G {

constexpr std::uint32_t meshCacheMagic = 1335;
constexpr std::size_t meshCacheHeaderBytes = 8;  // magic and RandomID
constexpr unsigned meshCacheEnd = 0;
constexpr unsigned meshCacheMeshRecord = 1;
constexpr unsigned meshCacheBoneRecord = 2;
constexpr std::size_t meshCacheElementBytes = 8;  // of a vertex format

// Little-endian, `count` bytes.
inline void AppendNumber(std::string& bytes, std::uint32_t number, unsigned count) {
    for (; count > 0; --count, number >>= 8)
        bytes += static_cast<char>(number & 0xFFU);
}
inline void AppendFloat(std::string& bytes, float number) {
    AppendNumber(bytes, std::bit_cast<std::uint32_t>(number), 4);
}

}  // namespace G
