#pragma once
// HLSL sources of the Direct3D 9 era to programs for the device of this system.

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

enum class ShaderStage { Vertex, Fragment };

enum class ConstantType { Float, Int, Bool };

// One named constant that the program really reads.
struct ShaderConstant {
    std::string name;
    ConstantType type = ConstantType::Float;
    std::uint32_t offset = 0;  // bytes into the stage's constant block
    std::uint32_t size = 0;    // bytes
    std::uint32_t rows = 1;    // 1 for scalars and vectors
    std::uint32_t columns = 1;
    std::uint32_t elements = 1;       // of an array
    std::uint32_t elementStride = 0;  // bytes
    std::uint32_t matrixStride = 0;   // bytes between rows (rowMajor) or columns
    bool rowMajor = false;            // as the source packs it; the default of HLSL is by columns

    bool operator==(const ShaderConstant&) const = default;
};

// A sampler that the program really reads, and the texture stage that it reads from.
struct ShaderSampler {
    std::string name;
    std::uint32_t stage = 0;

    bool operator==(const ShaderSampler&) const = default;
};

struct CompiledShader {
    ShaderStage stage = ShaderStage::Vertex;
    std::string profile;
    std::string code;  // for the device; GLSL 330 for the OpenGL device, see shaders/StageInterface.h
    std::vector<ShaderConstant> constants;
    std::uint32_t constantBytes = 0;
    std::vector<std::uint8_t>
        initialConstants;  // constantBytes long: the initial values that the source gives, else zeros
    std::vector<ShaderSampler> samplers;
    // Semantics with their numbers ("TEXCOORD0"), in capital letters: what the stage reads from the one before and what
    // it hands on. The clip position and the written colour and depth are not among them.
    std::vector<std::string> inputs;
    std::vector<std::string> outputs;

    bool operator==(const CompiledShader&) const = default;
};

// Compiles `source` with the entry function `entry` for a profile such as "vs_2_0" or "ps_2_a". On failure returns
// false with the reasons in `messages`, each naming `fileName`; on success `messages` holds the warnings, if any. The
// limits of the profile (instructions, constants, loops, texture reads) are honoured as far as they can be known. The
// first call of a process takes about 25 ms longer.
[[nodiscard]] bool CompileShader(const std::string& source, const std::string& fileName, const std::string& entry,
                                 const std::string& profile, CompiledShader& out, std::string& messages);

}  // namespace platform
