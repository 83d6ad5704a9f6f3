#include "platform/shaders/ShaderConstants.h"

#include <cmath>
#include <cstring>

namespace platform {

namespace {

bool WriteOne(const ShaderConstant& constant, std::size_t element, std::uint32_t row, std::uint32_t column, float value,
              std::vector<std::uint8_t>& block) {
    const std::size_t inside = constant.rows == 1  ? column * 4U
                               : constant.rowMajor ? row * constant.matrixStride + column * 4U
                                                   : column * constant.matrixStride + row * 4U;
    const std::size_t at = constant.offset + element * constant.elementStride + inside;
    if (at + 4 > block.size()) return false;
    std::uint32_t bits = 0;
    if (constant.type == ConstantType::Float) {
        std::memcpy(&bits, &value, 4);
    } else if (constant.type == ConstantType::Bool) {
        bits = value != 0.0F ? 1 : 0;
    } else if (std::fabs(value) < 2147483000.0F) {
        const auto whole = static_cast<std::int32_t>(value);
        std::memcpy(&bits, &whole, 4);
    }
    if (std::memcmp(&block[at], &bits, 4) == 0) return false;
    std::memcpy(&block[at], &bits, 4);
    return true;
}

}  // namespace

bool WriteComponents(const ShaderConstant& constant, const float* values, std::size_t count,
                     std::vector<std::uint8_t>& block) {
    bool changed = false;
    std::size_t next = 0;
    for (std::uint32_t element = 0; element < constant.elements; ++element)
        for (std::uint32_t row = 0; row < constant.rows; ++row)
            for (std::uint32_t column = 0; column < constant.columns; ++column) {
                if (next == count) return changed;
                changed |= WriteOne(constant, element, row, column, values[next++], block);
            }
    return changed;
}

bool WriteVectors(const ShaderConstant& constant, const float (*values)[4], std::size_t count,
                  std::vector<std::uint8_t>& block) {
    bool changed = false;
    for (std::size_t at = 0; at < count && at / constant.rows < constant.elements; ++at)
        for (std::uint32_t column = 0; column < constant.columns; ++column)
            changed |= WriteOne(constant, at / constant.rows, static_cast<std::uint32_t>(at % constant.rows), column,
                                values[at][column], block);
    return changed;
}

bool WriteMatrix(const ShaderConstant& constant, const float values[16], bool transpose,
                 std::vector<std::uint8_t>& block) {
    bool changed = false;
    for (std::uint32_t row = 0; row < constant.rows && row < 4; ++row)
        for (std::uint32_t column = 0; column < constant.columns && column < 4; ++column)
            changed |=
                WriteOne(constant, 0, row, column, values[transpose ? 4 * column + row : 4 * row + column], block);
    return changed;
}

}  // namespace platform
