#pragma once
// What a program would cost on hardware of the Direct3D 9 era, estimated from SPIR-V.

#include <cstdint>
#include <vector>

namespace platform {

struct SpirvCount {
    unsigned instructions = 0;  // arithmetic, after inlining and unrolling
    unsigned textureReads = 0;
    unsigned dependentLevels = 0;  // 1: no read's place depends on another read
    bool openLoops = false;        // loops whose count is not known before the program runs
    bool gradients = false;        // derivatives, or a read with gradients or a given level of detail
};

// Whether a function calls itself, by whatever way. HLSL forbids it, its compiler does not look, and what comes after
// needs it.
[[nodiscard]] bool HasRecursion(const std::vector<std::uint32_t>& spirv);

// False when the program cannot be taken apart.
[[nodiscard]] bool CountSpirv(const std::vector<std::uint32_t>& spirv, SpirvCount& out);

}  // namespace platform
