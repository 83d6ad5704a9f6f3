#pragma once
// Exact welding: vertices that agree in every byte become one.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

struct WeldedVertices {
    std::unique_ptr<unsigned char[]> bytes;
    std::size_t count = 0;
};

// Of each set of equal vertices the first, in their order. `vertices` are `count` times `stride` bytes. Each index
// below `count` is rewritten to its vertex's place among those kept; others stay.
//
// By a hash table whose keys are random for each process, which takes linear time. Where it should ever need more than
// `probesPerVertex` looks a vertex, the vertices are sorted instead: n log n comparisons whatever the bytes are, so
// that no file can make it slow.
WeldedVertices WeldVertices(const unsigned char* vertices, std::size_t count, std::size_t stride,
                            std::span<std::uint16_t> indices, std::size_t probesPerVertex = 8);
