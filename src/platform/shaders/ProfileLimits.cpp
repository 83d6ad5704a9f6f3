#include "platform/shaders/ProfileLimits.h"

namespace platform {

namespace {

constexpr ProfileLimits profiles[] = {
    {"vs_1_0", ShaderStage::Vertex, 128, 0, 96, 0, false, false},
    {"vs_1_1", ShaderStage::Vertex, 128, 0, 96, 0, false, false},
    {"vs_2_0", ShaderStage::Vertex, 256, 0, 256, 0, false, false},
    {"vs_3_0", ShaderStage::Vertex, 512, 512, 256, 0, true, true},
    {"ps_2_0", ShaderStage::Fragment, 64, 32, 32, 4, false, false},
    {"ps_2_a", ShaderStage::Fragment, 512, 512, 32, 0, false, true},
    {"ps_3_0", ShaderStage::Fragment, 512, 512, 224, 0, true, true},
};

}  // namespace

const ProfileLimits* FindProfile(const std::string& name) {
    for (const ProfileLimits& profile : profiles)
        if (name == profile.name) return &profile;
    return nullptr;
}

bool KeepsLimits(const ProfileLimits&, const std::vector<std::uint32_t>&, std::string&) {
    return true;
}

}  // namespace platform
