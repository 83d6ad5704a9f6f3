#pragma once
// HLSL to SPIR-V through glslang, with the rules of the Direct3D 9 era.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/ShaderCompiler.h"

namespace platform {

struct SpirvResult {
    std::string preprocessed;  // macros replaced and what conditions leave out dropped; lines keep their numbers
    std::vector<std::uint32_t> spirv;
    std::string messages;  // each line names the file: on failure the reasons, on success the warnings
};

// Compiles a source that CheckHlslText lets pass, in a copy of the process, because glslang ends the process that it
// runs in on some sources. A source that ReadHlslSource refuses is refused with its reason. One compilation runs at a
// time.
[[nodiscard]] bool HlslToSpirv(const std::string& source, const std::string& fileName, const std::string& entry,
                               ShaderStage stage, SpirvResult& result);

}  // namespace platform
