#include "graphics/model/MeshWeld.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <numeric>
#include <random>
#include <type_traits>
#include <vector>

namespace {

__extension__ using Product = unsigned __int128;

constexpr std::size_t wordBytes = 8;
constexpr std::size_t mostWords = 4;

struct HashKeys {
    std::array<std::uint64_t, mostWords> words{};
    std::uint64_t multiplier = 1;
};

HashKeys MakeKeys() {
    std::random_device random;
    const auto number = [&random] { return std::uint64_t{random()} << 32 | random(); };
    HashKeys keys;
    std::generate(keys.words.begin(), keys.words.end(), number);
    keys.multiplier = number() | 1U;
    return keys;
}

// NH of UMAC (RFC 4418): without its keys nobody can choose vertices whose sums agree. The product brings what differs
// into the upper bits.
template <typename Stride>
std::uint64_t HashOf(const unsigned char* vertex, Stride stride, const HashKeys& keys) {
    const auto keyed = [&](std::size_t number) {
        std::uint64_t word = 0;
        const std::size_t at = number * wordBytes;
        if (at < stride) std::memcpy(&word, vertex + at, std::min<std::size_t>(stride - at, wordBytes));
        return word + keys.words[number];
    };
    Product sum = 0;
    for (std::size_t number = 0; number * wordBytes < stride; number += 2)
        sum += Product{keyed(number)} * keyed(number + 1);
    return static_cast<std::uint64_t>(sum ^ sum >> 64) * keys.multiplier;
}

struct Welding {
    WeldedVertices welded;
    std::unique_ptr<std::uint32_t[]> places;  // of every vertex among those kept
};

// False when the table took too long. A slot holds the number of a kept vertex in its lower bits and a part of the hash
// in the upper ones, so that different vertices are hardly ever compared.
template <typename Stride>
bool WeldByTable(const unsigned char* vertices, std::size_t count, Stride stride, std::size_t probesPerVertex,
                 Welding& out) {
    static const HashKeys keys = MakeKeys();
    constexpr std::uint32_t empty = ~0U;
    const std::size_t slots = std::bit_ceil(2 * count + 1);
    const int shift = 64 - std::countr_zero(slots);
    const std::uint32_t numberBits = static_cast<std::uint32_t>(std::bit_ceil(count + 1)) - 1;
    std::vector<std::uint32_t> table(slots, empty);
    unsigned char* const kept = out.welded.bytes.get();
    std::uint32_t keptCount = 0;
    std::size_t probesLeft = count * probesPerVertex;
    for (std::size_t vertex = 0; vertex < count; ++vertex) {
        const unsigned char* const bytes = vertices + vertex * stride;
        const std::uint64_t hash = HashOf(bytes, stride, keys);
        const std::uint32_t hashPart = static_cast<std::uint32_t>(hash) & ~numberBits;
        for (std::size_t slot = hash >> shift;; slot = (slot + 1) & (slots - 1)) {
            if (probesLeft-- == 0) return false;
            const std::uint32_t held = table[slot];
            if (held == empty) {
                table[slot] = hashPart | keptCount;
                std::memcpy(kept + keptCount * stride, bytes, stride);
                out.places[vertex] = keptCount++;
                break;
            }
            const std::uint32_t number = held & numberBits;
            if ((held & ~numberBits) != hashPart || std::memcmp(kept + number * stride, bytes, stride) != 0) continue;
            out.places[vertex] = number;
            break;
        }
    }
    out.welded.count = keptCount;
    return true;
}

void WeldBySorting(const unsigned char* vertices, std::size_t count, std::size_t stride, Welding& out) {
    const auto compare = [&](std::uint32_t a, std::uint32_t b) {
        return std::memcmp(vertices + a * stride, vertices + b * stride, stride);
    };
    std::vector<std::uint32_t> sorted(count);
    std::iota(sorted.begin(), sorted.end(), 0U);
    std::sort(sorted.begin(), sorted.end(), [&](std::uint32_t a, std::uint32_t b) {
        const int order = compare(a, b);
        return order != 0 ? order < 0 : a < b;
    });

    std::vector<std::uint32_t> firstEqual(count);
    for (std::size_t i = 0; i < count; ++i) {
        const bool repeats = i > 0 && compare(sorted[i - 1], sorted[i]) == 0;
        firstEqual[sorted[i]] = repeats ? firstEqual[sorted[i - 1]] : sorted[i];
    }

    std::uint32_t keptCount = 0;
    for (std::uint32_t vertex = 0; vertex < count; ++vertex) {
        const bool isFirst = firstEqual[vertex] == vertex;
        out.places[vertex] = isFirst ? keptCount : out.places[firstEqual[vertex]];
        if (isFirst) std::memcpy(out.welded.bytes.get() + keptCount++ * stride, vertices + vertex * stride, stride);
    }
    out.welded.count = keptCount;
}

// The strides of positions and of the two vertex types that models have; known to the compiler, they halve the time.
bool TryTable(const unsigned char* vertices, std::size_t count, std::size_t stride, std::size_t probesPerVertex,
              Welding& out) {
    switch (stride) {
        case 12:
            return WeldByTable(vertices, count, std::integral_constant<std::size_t, 12>(), probesPerVertex, out);
        case 28:
            return WeldByTable(vertices, count, std::integral_constant<std::size_t, 28>(), probesPerVertex, out);
        case 32:
            return WeldByTable(vertices, count, std::integral_constant<std::size_t, 32>(), probesPerVertex, out);
        default:
            return false;
    }
}

}  // namespace

WeldedVertices WeldVertices(const unsigned char* vertices, std::size_t count, std::size_t stride,
                            std::span<std::uint16_t> indices, std::size_t probesPerVertex) {
    Welding welding;
    welding.welded.bytes = std::make_unique_for_overwrite<unsigned char[]>(count * stride);
    welding.places = std::make_unique_for_overwrite<std::uint32_t[]>(count);
    if (!TryTable(vertices, count, stride, probesPerVertex, welding)) WeldBySorting(vertices, count, stride, welding);
    // A place is never above its vertex's number, so it fits wherever the number did.
    for (std::uint16_t& index : indices)
        if (index < count) index = static_cast<std::uint16_t>(welding.places[index]);
    return std::move(welding.welded);
}
