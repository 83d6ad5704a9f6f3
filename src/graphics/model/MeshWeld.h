#pragma once
// Exact welding: vertices that agree in every byte become one.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// The numbers of the vertices to keep, in ascending order: of each set of equal vertices the first. `vertices` are
// `count` times `stride` bytes. Each index below `count` is rewritten to its vertex's place among those kept; others
// stay.
//
// By sorting: n log n comparisons whatever the bytes are, so that no file can make it slow.
std::vector<std::uint32_t> WeldVertices(const unsigned char* vertices, std::size_t count, std::size_t stride,
                                        std::span<std::uint16_t> indices);
