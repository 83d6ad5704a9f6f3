#pragma once
// Writing values into the constant block of a compiled stage.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/ShaderCompiler.h"

namespace platform {

// Writes `values` into the components of `constant` in the order element, row, column, converting to its type; what
// does not fit is left out, what is missing stays. `block` is constantBytes long. True when a byte changed.
bool WriteComponents(const ShaderConstant& constant, const float* values, std::size_t count,
                     std::vector<std::uint8_t>& block);
// One vector for each row of each element.
bool WriteVectors(const ShaderConstant& constant, const float (*values)[4], std::size_t count,
                  std::vector<std::uint8_t>& block);
// M[r][c] = values[4r + c], or values[4c + r] when transposing; into the first element.
bool WriteMatrix(const ShaderConstant& constant, const float values[16], bool transpose,
                 std::vector<std::uint8_t>& block);

}  // namespace platform
