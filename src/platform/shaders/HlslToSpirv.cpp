#include "platform/shaders/HlslToSpirv.h"

#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
#include <glslang/SPIRV/GlslangToSpv.h>

#include <cstring>
#include <mutex>
#include <sstream>

#include "platform/Caps.h"
#include "platform/Isolated.h"
#include "platform/shaders/HlslSource.h"

namespace platform {

namespace {

// Drops the lines that carry no news: counts of errors and repeated ends.
std::string TidyMessages(const std::string& log, const std::string& fileName) {
    std::istringstream lines(log);
    std::string tidy;
    for (std::string line; std::getline(lines, line);) {
        const bool summary = line.find("compilation errors.  No code generated") != std::string::npos;
        if (line.empty() || summary) continue;
        if (line.find(fileName) == std::string::npos) line = fileName + ": " + line;
        tidy += line + "\n";
    }
    return tidy;
}

constexpr auto rules =
    static_cast<EShMessages>(EShMsgSpvRules | EShMsgVulkanRules | EShMsgReadHlsl | EShMsgHlslDX9Compatible);

void Describe(glslang::TShader& shader, EShLanguage language, const std::string& entry) {
    shader.setEnvInput(glslang::EShSourceHlsl, language, glslang::EShClientVulkan, 100);
    shader.setEnvClient(glslang::EShClientVulkan, glslang::EShTargetVulkan_1_0);
    shader.setEnvTarget(glslang::EShTargetSpv, glslang::EShTargetSpv_1_0);
    // Keeps the semantics' names in the result.
    shader.setEnvTargetHlslFunctionality1();
    shader.setEntryPoint(entry.c_str());
    shader.setSourceEntryPoint(entry.c_str());
    shader.setAutoMapLocations(true);
}

// Replaces macros and drops what conditions leave out; lines keep their numbers.
bool Preprocess(const std::string& source, const std::string& fileName, std::string& out, std::string& messages) {
    glslang::TShader shader(EShLangFragment);
    const char* text = source.c_str();
    const int length = static_cast<int>(source.size());
    const char* name = fileName.c_str();
    shader.setStringsWithLengthsAndNames(&text, &length, &name, 1);
    Describe(shader, EShLangFragment, "main");
    glslang::TShader::ForbidIncluder noFiles;
    const bool fine = shader.preprocess(GetDefaultResources(), 100, ENoProfile, false, false, rules, &out, noFiles);
    if (!fine) messages = TidyMessages(shader.getInfoLog(), fileName);
    return fine;
}

bool Compile(const std::string& source, const std::string& fileName, const std::string& entry, ShaderStage stage,
             std::vector<std::uint32_t>& spirv, std::string& messages) {
    const EShLanguage language = stage == ShaderStage::Vertex ? EShLangVertex : EShLangFragment;
    glslang::TShader shader(language);
    const char* text = source.c_str();
    const int length = static_cast<int>(source.size());
    const char* name = fileName.c_str();
    shader.setStringsWithLengthsAndNames(&text, &length, &name, 1);
    Describe(shader, language, entry);
    const bool parsed = shader.parse(GetDefaultResources(), 100, false, rules);
    messages = TidyMessages(shader.getInfoLog(), fileName);
    if (!parsed) return false;

    glslang::TProgram program;
    program.addShader(&shader);
    const bool linked = program.link(rules) && program.mapIO();
    const std::string linkLog = program.getInfoLog();
    messages += TidyMessages(linkLog, fileName);
    // The linker mentions a missing entry function only as a warning and makes an empty program.
    if (linkLog.find("Entry point not found") != std::string::npos) {
        messages += fileName + ": entry function \"" + entry + "\" not found\n";
        return false;
    }
    if (!linked) return false;

    spv::SpvBuildLogger log;
    glslang::SpvOptions options;
    options.disableOptimizer = true;
    glslang::GlslangToSpv(*program.getIntermediate(language), spirv, &log, &options);
    messages += TidyMessages(log.getAllMessages(), fileName);
    return !spirv.empty();
}

// glslang's symbol tables are made with the first program of a process, which costs about 25 ms, and stay until its
// end. They are made before any copy of the process, which would make its own and take them along.
bool MakeTables() {
    std::vector<std::uint32_t> spirv;
    std::string messages;
    return glslang::InitializeProcess() &&
           Compile("float4 main() : COLOR { return 1; }", "", "main", ShaderStage::Fragment, spirv, messages);
}

std::mutex& CompilerLock() {
    static std::mutex lock;
    static const bool ready = MakeTables();
    (void)ready;
    return lock;
}

// What comes back from the copy of the process: whether it compiled, then two texts with their lengths before them,
// then the words.
std::string Pack(bool fine, const SpirvResult& result) {
    std::string packed(fine ? "1" : "0");
    for (const std::string* text : {&result.messages, &result.preprocessed}) {
        const std::uint32_t length = static_cast<std::uint32_t>(text->size());
        packed.append(reinterpret_cast<const char*>(&length), sizeof length);
        packed += *text;
    }
    return packed.append(reinterpret_cast<const char*>(result.spirv.data()),
                         result.spirv.size() * sizeof(std::uint32_t));
}

bool Unpack(const std::string& packed, SpirvResult& result) {
    std::size_t at = 1;
    for (std::string* text : {&result.messages, &result.preprocessed}) {
        std::uint32_t length = 0;
        std::memcpy(&length, packed.data() + at, sizeof length);
        *text = packed.substr(at + sizeof length, length);
        at += sizeof length + length;
    }
    result.spirv.resize((packed.size() - at) / sizeof(std::uint32_t));
    if (!result.spirv.empty())
        std::memcpy(result.spirv.data(), packed.data() + at, result.spirv.size() * sizeof(std::uint32_t));
    return packed[0] == '1';
}

}  // namespace

bool HlslToSpirv(const std::string& source, const std::string& fileName, const std::string& entry, ShaderStage stage,
                 SpirvResult& result) {
    const std::scoped_lock lock(CompilerLock());
    const auto compile = [&] {
        SpirvResult made;
        HlslSource read;
        std::string refusal;
        bool fine = Preprocess(source, fileName, made.preprocessed, made.messages);
        if (fine && !ReadHlslSource(made.preprocessed, entry, read, refusal)) {
            made.messages = fileName + ": error: " + refusal + "\n";
            fine = false;
        }
        return Pack(fine && Compile(source, fileName, entry, stage, made.spirv, made.messages), made);
    };
    // glslang follows null pointers on some broken sources, and its preprocessor descends once for each bracket of a
    // condition.
    std::string packed;
    if (RunIsolated(compile, caps::shaderSeconds, packed)) return Unpack(packed, result);
    result.messages = fileName + ": error: the compiler broke down on this program\n";
    return false;
}

}  // namespace platform
