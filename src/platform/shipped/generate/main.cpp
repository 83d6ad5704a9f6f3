// Part of the build: compiles the shaders named on the command line for each profile of their stage and writes them as
// a C++ table. Arguments: the file to write, then the sources (.hlsl_v, .hlsl_f).

#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "platform/ShaderCompiler.h"

namespace {

constexpr const char* entry = "main";

// A string literal; long texts become one literal a line, which compilers take at any length.
std::string Quoted(const std::string& text) {
    static constexpr char digits[] = "01234567";
    std::string quoted = "\"";
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte == '"' || byte == '\\')
            quoted += std::string("\\") + text[at];
        else if (byte >= ' ' && byte < 0x7F)
            quoted += text[at];
        else
            quoted += {'\\', digits[byte >> 6U], digits[byte >> 3U & 7U], digits[byte & 7U]};
        if (byte == '\n' && at + 1 < text.size()) quoted += "\"\n    \"";
    }
    return quoted + "\"";
}

template <typename List, typename Write>
std::string Listed(const List& list, Write write) {
    std::string text = "{";
    for (const auto& element : list)
        text += write(element) + ", ";
    return text + "}";
}

std::string Written(const platform::ShaderConstant& constant) {
    static constexpr const char* types[] = {"Float", "Int", "Bool"};
    std::ostringstream out;
    out << "{" << Quoted(constant.name) << ", ConstantType::" << types[static_cast<int>(constant.type)];
    for (const std::uint32_t number : {constant.offset, constant.size, constant.rows, constant.columns,
                                       constant.elements, constant.elementStride, constant.matrixStride})
        out << ", " << number << "U";
    out << ", " << (constant.rowMajor ? "true" : "false") << "}";
    return out.str();
}

std::string Written(const platform::ShaderSampler& sampler) {
    return "{" + Quoted(sampler.name) + ", " + std::to_string(sampler.stage) + "U}";
}

std::string Written(const platform::CompiledShader& shader) {
    const auto record = [](const auto& element) { return Written(element); };
    const char* stage = shader.stage == platform::ShaderStage::Vertex ? "Vertex" : "Fragment";
    return "{ShaderStage::" + std::string(stage) + ", " + Quoted(shader.profile) + ",\n    " + Quoted(shader.code) +
           ",\n    " + Listed(shader.constants, record) + ", " + std::to_string(shader.constantBytes) + "U, " +
           Listed(shader.initialConstants, [](std::uint8_t byte) { return std::to_string(byte); }) + ",\n    " +
           Listed(shader.samplers, record) + ", " + Listed(shader.inputs, Quoted) + ", " +
           Listed(shader.outputs, Quoted) + "}";
}

// Adds the entries of a source; false with the reasons on the error stream when no profile takes it.
bool AddEntries(const std::string& fileName, std::string& table) {
    std::ifstream file(fileName, std::ios::binary);
    const std::string source{std::istreambuf_iterator<char>(file), {}};
    const bool vertex = fileName.ends_with("_v");
    const std::vector<const char*> profiles =
        vertex ? std::vector{"vs_1_0", "vs_2_0", "vs_3_0"} : std::vector{"ps_2_0", "ps_2_a"};
    bool taken = false;
    std::string messages;
    for (const char* profile : profiles) {
        platform::CompiledShader compiled;
        if (!platform::CompileShader(source, fileName, entry, profile, compiled, messages)) continue;
        taken = true;
        // Warnings name the file, so a source that has some is compiled when it is loaded.
        if (messages.empty())
            table += "    {" + Quoted(source) + ",\n    " + Quoted(entry) + ",\n    " + Written(compiled) + "},\n";
    }
    if (!taken) std::cerr << messages;
    return taken;
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 2) return 2;
    std::string table =
        "#include \"platform/shipped/ShippedTable.h\"\n\nnamespace platform {\n\n"
        "const std::vector<ShippedShader>& ShippedTable() {\n    static const std::vector<ShippedShader> table{\n";
    for (int at = 2; at < count; ++at)
        if (!AddEntries(arguments[at], table)) return 1;
    std::ofstream out(arguments[1]);
    out << table << "    };\n    return table;\n}\n\n}  // namespace platform\n";
    out.close();
    return out ? 0 : 1;
}
