#include "graphics/model/MeshWeld.h"

#include <algorithm>
#include <cstring>
#include <numeric>

std::vector<std::uint32_t> WeldVertices(const unsigned char* vertices, std::size_t count, std::size_t stride,
                                        std::span<std::uint16_t> indices) {
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

    std::vector<std::uint32_t> kept;
    std::vector<std::uint32_t> place(count);
    for (std::uint32_t vertex = 0; vertex < count; ++vertex) {
        const bool isFirst = firstEqual[vertex] == vertex;
        place[vertex] = isFirst ? static_cast<std::uint32_t>(kept.size()) : place[firstEqual[vertex]];
        if (isFirst) kept.push_back(vertex);
    }
    // A place is never above its vertex's number, so it fits wherever the number did.
    for (std::uint16_t& index : indices)
        if (index < count) index = static_cast<std::uint16_t>(place[index]);
    return kept;
}
