#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace demo {

// 0xAARRGGBB words row by row from the top, as a PNG file with alpha; false when it cannot be written.
[[nodiscard]] bool WritePngFile(const std::string& path, unsigned width, unsigned height,
                                const std::vector<std::uint32_t>& argb);

}  // namespace demo
