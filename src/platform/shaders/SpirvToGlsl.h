#pragma once
// SPIR-V to GLSL 330 through SPIRV-Cross, in the form that StageInterface.h describes.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/ShaderCompiler.h"

namespace platform {

// Fills code, constants, samplers, inputs and outputs of `out`, whose stage and profile are set. `samplerRegisters`
// holds the registers that the source names. False with a reason that names no file.
[[nodiscard]] bool SpirvToGlsl(const std::vector<std::uint32_t>& spirv,
                               const std::map<std::string, unsigned>& samplerRegisters, CompiledShader& out,
                               std::string& reason);

}  // namespace platform
