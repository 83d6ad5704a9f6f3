#include "platform/ShaderCompiler.h"

#include <map>

#include "platform/shaders/HlslSource.h"
#include "platform/shaders/HlslToSpirv.h"
#include "platform/shaders/ProfileLimits.h"
#include "platform/shaders/ShaderConstants.h"
#include "platform/shaders/SpirvCount.h"
#include "platform/shaders/SpirvToGlsl.h"

namespace platform {

namespace {

void ApplyInitialValues(const HlslSource& read, CompiledShader& out) {
    out.initialConstants.assign(out.constantBytes, 0);
    for (const ShaderConstant& constant : out.constants) {
        const auto found = read.initialValues.find(constant.name);
        if (found == read.initialValues.end()) continue;
        std::vector<float> values(found->second.begin(), found->second.end());
        // A single number stands for every component.
        if (values.size() == 1)
            values.assign(std::size_t(constant.elements) * constant.rows * constant.columns, values[0]);
        WriteComponents(constant, values.data(), values.size(), out.initialConstants);
    }
}

void WarnOfInitialisers(const HlslSource& read, const CompiledShader& shader, const std::string& fileName,
                        std::string& messages) {
    for (const ShaderConstant& constant : shader.constants)
        for (const std::string& name : read.unreadInitialisers)
            if (name == constant.name)
                messages += fileName + ": warning: the initial value of \"" + name +
                            "\" is not a list of numbers and is not applied\n";
}

}  // namespace

bool CompileShader(const std::string& source, const std::string& fileName, const std::string& entry,
                   const std::string& profile, CompiledShader& out, std::string& messages) {
    messages.clear();
    out = {};
    const ProfileLimits* limits = FindProfile(profile);
    if (!limits) {
        messages = fileName + ": unknown profile \"" + profile + "\"\n";
        return false;
    }
    const auto refuse = [&](const std::string& reason) {
        messages += fileName + ": error: " + reason + "\n";
        return false;
    };
    HlslSource read;
    SpirvResult result;
    std::string reason;
    if (!CheckHlslText(source, reason)) return refuse(reason);
    const bool compiled = HlslToSpirv(source, fileName, entry, limits->stage, result);
    messages = result.messages;
    if (!compiled) return false;
    if (!ReadHlslSource(result.preprocessed, entry, read, reason)) return refuse(reason);
    const std::vector<std::uint32_t>& spirv = result.spirv;
    if (HasRecursion(spirv)) return refuse("a function calls itself");
    if (!KeepsLimits(*limits, spirv, reason)) return refuse(profile + ": " + reason);

    CompiledShader made;
    made.stage = limits->stage;
    made.profile = profile;
    if (!SpirvToGlsl(spirv, read.samplerRegisters, made, reason)) return refuse(reason);
    if (!KeepsConstants(*limits, made.constants, reason)) return refuse(profile + ": " + reason);
    ApplyInitialValues(read, made);
    WarnOfInitialisers(read, made, fileName, messages);
    out = std::move(made);
    return true;
}

}  // namespace platform
