#include "platform/shaders/ProfileLimits.h"

#include "platform/shaders/SpirvCount.h"

namespace platform {

namespace {

// From the tables of the Direct3D 9 documentation.
constexpr ProfileLimits profiles[] = {
    {"vs_1_0", ShaderStage::Vertex, 128, 0, 96, 0, false, false},
    {"vs_1_1", ShaderStage::Vertex, 128, 0, 96, 0, false, false},
    {"vs_2_0", ShaderStage::Vertex, 256, 0, 256, 0, false, false},
    {"vs_3_0", ShaderStage::Vertex, 512, 512, 256, 0, true, true},
    {"ps_2_0", ShaderStage::Fragment, 64, 32, 32, 4, false, false},
    {"ps_2_a", ShaderStage::Fragment, 512, 512, 32, 0, false, true},
    {"ps_3_0", ShaderStage::Fragment, 512, 512, 224, 0, true, true},
};

std::string Above(unsigned count, const char* what, unsigned limit) {
    return std::to_string(count) + " " + what + ", of at most " + std::to_string(limit);
}

// Registers that a constant takes: one for each vector of each element.
unsigned RegistersOf(const ShaderConstant& constant) {
    if (constant.rows == 1) return constant.elements;
    return constant.elements * (constant.rowMajor ? constant.rows : constant.columns);
}

}  // namespace

const ProfileLimits* FindProfile(const std::string& name) {
    for (const ProfileLimits& profile : profiles)
        if (name == profile.name) return &profile;
    return nullptr;
}

bool KeepsLimits(const ProfileLimits& limits, const std::vector<std::uint32_t>& spirv, std::string& reason) {
    SpirvCount count;
    // What cannot be counted cannot be held against it.
    if (!CountSpirv(spirv, count)) return true;
    // The estimate of instructions may be a third above what a compiler of the time would need.
    const unsigned sure = limits.instructions + limits.instructions / 3;
    reason.clear();
    if (count.textureReads > 0 && limits.textureInstructions == 0)
        reason = "textures cannot be read";
    else if (count.openLoops && !limits.loops)
        reason = "a loop cannot be unrolled";
    else if (count.gradients && !limits.gradients)
        reason = "gradients and a given level of detail cannot be used";
    else if (count.instructions > sure)
        reason = Above(count.instructions, "instructions (estimated)", limits.instructions);
    else if (limits.textureInstructions > 0 && count.textureReads > limits.textureInstructions)
        reason = Above(count.textureReads, "texture reads", limits.textureInstructions);
    else if (limits.dependentReads > 0 && count.dependentLevels > limits.dependentReads)
        reason = Above(count.dependentLevels, "levels of dependent texture reads", limits.dependentReads);
    return reason.empty();
}

bool KeepsConstants(const ProfileLimits& limits, const std::vector<ShaderConstant>& constants, std::string& reason) {
    unsigned registers = 0;
    for (const ShaderConstant& constant : constants)
        registers += RegistersOf(constant);
    if (registers <= limits.constants) return true;
    reason = Above(registers, "constant registers", limits.constants);
    return false;
}

}  // namespace platform
