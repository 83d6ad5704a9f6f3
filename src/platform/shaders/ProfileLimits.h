#pragma once
// What the shader profiles of Direct3D 9 allow, checked on SPIR-V.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/ShaderCompiler.h"

namespace platform {

struct ProfileLimits {
    const char* name = "";
    ShaderStage stage = ShaderStage::Vertex;
    unsigned instructions = 0;         // arithmetic ones for fragments, all slots for vertices
    unsigned textureInstructions = 0;  // 0: none
    unsigned constants = 0;            // four-component registers
    unsigned dependentReads = 0;       // levels of texture reads that depend on each other; 0: any
    bool loops = false;                // left after unrolling
    bool gradients = false;            // explicit level of detail and derivatives
};

// Null for an unknown name.
const ProfileLimits* FindProfile(const std::string& name);

// False with the reason when the program surely breaks a limit of the profile. Instructions are estimated from the
// optimised program, so a program close to the limit may pass or fail against what another compiler says.
[[nodiscard]] bool KeepsLimits(const ProfileLimits& limits, const std::vector<std::uint32_t>& spirv,
                               std::string& reason);
// The same for the constants that the program reads.
[[nodiscard]] bool KeepsConstants(const ProfileLimits& limits, const std::vector<ShaderConstant>& constants,
                                  std::string& reason);

}  // namespace platform
