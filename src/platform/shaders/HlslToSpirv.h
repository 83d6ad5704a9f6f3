#pragma once
// HLSL to SPIR-V through glslang, with the rules of the Direct3D 9 era.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/ShaderCompiler.h"

namespace platform {

// Replaces macros and drops what conditions leave out; lines keep their numbers. False with the reasons in `messages`.
[[nodiscard]] bool PreprocessHlsl(const std::string& source, const std::string& fileName, std::string& out,
                                  std::string& messages);

// On failure `messages` holds the reasons, on success the warnings; each line names the file. One compilation runs at a
// time.
[[nodiscard]] bool HlslToSpirv(const std::string& source, const std::string& fileName, const std::string& entry,
                               ShaderStage stage, std::vector<std::uint32_t>& spirv, std::string& messages);

}  // namespace platform
