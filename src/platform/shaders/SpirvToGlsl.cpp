#include "platform/shaders/SpirvToGlsl.h"

#include <spirv_cross/spirv_cross_c.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <set>
#include <string_view>

#include "platform/shaders/StageInterface.h"

namespace platform {

namespace {

struct ContextCloser {
    void operator()(spvc_context context) const { spvc_context_destroy(context); }
};

// A value that enters or leaves the stage, under its name inside the stage's code.
struct Crossing {
    std::string semantic;  // capitals, with number
    std::string variable;
    bool input = false;
    std::string type;  // GLSL, found in the code
};

// "color" -> "COLOR0". A semantic without a number is number 0.
std::string FullSemantic(const char* text) {
    std::string semantic = text ? text : "";
    for (char& letter : semantic)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    if (!semantic.empty() && !std::isdigit(static_cast<unsigned char>(semantic.back()))) semantic += '0';
    // The later names of the same things.
    if (semantic.starts_with("SV_TARGET")) return "COLOR" + semantic.substr(9);
    if (semantic == "SV_POSITION0") return "POSITION0";
    return semantic == "SV_DEPTH0" ? "DEPTH0" : semantic;
}

class Translator {
  public:
    Translator(CompiledShader& result, std::string& why) : out(result), reason(why) {}

    bool Run(const std::vector<std::uint32_t>& spirv, const std::map<std::string, unsigned>& samplerRegisters) {
        if (!Open(spirv)) return Refuse();
        if (!ReadConstants() || !ReadCrossings() || !ReadSamplers(samplerRegisters)) return Refuse();
        const char* code = nullptr;
        if (spvc_compiler_compile(compiler, &code) != SPVC_SUCCESS) return Refuse();
        return Rewrite(code);
    }

  private:
    bool Open(const std::vector<std::uint32_t>& spirv) {
        spvc_context raw = nullptr;
        if (spvc_context_create(&raw) != SPVC_SUCCESS) return false;
        context.reset(raw);
        spvc_parsed_ir ir = nullptr;
        if (spvc_context_parse_spirv(raw, spirv.data(), spirv.size(), &ir) != SPVC_SUCCESS) return false;
        if (spvc_context_create_compiler(raw, SPVC_BACKEND_GLSL, ir, SPVC_CAPTURE_MODE_TAKE_OWNERSHIP, &compiler) !=
            SPVC_SUCCESS)
            return false;
        spvc_set active = nullptr;
        if (spvc_compiler_get_active_interface_variables(compiler, &active) != SPVC_SUCCESS) return false;
        if (spvc_compiler_create_shader_resources_for_active_variables(compiler, &resources, active) != SPVC_SUCCESS)
            return false;
        spvc_compiler_set_enabled_interface_variables(compiler, active);
        return SetOptions();
    }

    bool SetOptions() {
        spvc_compiler_options options = nullptr;
        if (spvc_compiler_create_compiler_options(compiler, &options) != SPVC_SUCCESS) return false;
        spvc_compiler_options_set_uint(options, SPVC_COMPILER_OPTION_GLSL_VERSION, 330);
        spvc_compiler_options_set_bool(options, SPVC_COMPILER_OPTION_GLSL_ES, SPVC_FALSE);
        spvc_compiler_options_set_bool(options, SPVC_COMPILER_OPTION_GLSL_ENABLE_420PACK_EXTENSION, SPVC_FALSE);
        spvc_compiler_options_set_bool(options, SPVC_COMPILER_OPTION_GLSL_SEPARATE_SHADER_OBJECTS, SPVC_FALSE);
        return spvc_compiler_install_compiler_options(compiler, options) == SPVC_SUCCESS;
    }

    // The reason is what the library said, unless one was found here.
    bool Refuse() {
        if (!reason.empty()) return false;
        const char* said = context ? spvc_context_get_last_error_string(context.get()) : nullptr;
        reason = said && *said ? said : "the program cannot be translated";
        return false;
    }

    std::pair<const spvc_reflected_resource*, std::size_t> List(spvc_resource_type type) {
        const spvc_reflected_resource* list = nullptr;
        std::size_t count = 0;
        spvc_resources_get_resource_list_for_type(resources, type, &list, &count);
        return {list, count};
    }

    bool ReadConstants() {
        const auto [blocks, count] = List(SPVC_RESOURCE_TYPE_UNIFORM_BUFFER);
        if (count == 0) return true;
        if (count > 1) return RefuseWith("only one block of constants can be used");
        const spvc_reflected_resource& block = blocks[0];
        const bool vertex = out.stage == ShaderStage::Vertex;
        spvc_compiler_set_name(compiler, block.base_type_id, vertex ? stages::vertexBlock : stages::fragmentBlock);
        const spvc_type type = spvc_compiler_get_type_handle(compiler, block.base_type_id);
        std::size_t bytes = 0;
        if (spvc_compiler_get_declared_struct_size(compiler, type, &bytes) != SPVC_SUCCESS) return false;
        out.constantBytes = static_cast<std::uint32_t>((bytes + 15) / 16 * 16);

        const spvc_buffer_range* ranges = nullptr;
        std::size_t rangeCount = 0;
        if (spvc_compiler_get_active_buffer_ranges(compiler, block.id, &ranges, &rangeCount) != SPVC_SUCCESS)
            return false;
        std::set<unsigned> members;
        for (std::size_t at = 0; at < rangeCount; ++at)
            members.insert(ranges[at].index);
        for (const unsigned member : members)
            if (!ReadConstant(block.base_type_id, type, member)) return false;
        return true;
    }

    bool ReadConstant(spvc_type_id blockId, spvc_type block, unsigned member) {
        const spvc_type type = spvc_compiler_get_type_handle(compiler, spvc_type_get_member_type(block, member));
        const spvc_basetype base = spvc_type_get_basetype(type);
        // Structures keep their place in the block but cannot be set by name.
        if (base == SPVC_BASETYPE_STRUCT) return true;
        ShaderConstant constant;
        constant.name = spvc_compiler_get_member_name(compiler, blockId, member);
        if (base == SPVC_BASETYPE_INT32)
            constant.type = ConstantType::Int;
        else if (base != SPVC_BASETYPE_FP32)
            constant.type = ConstantType::Bool;
        std::size_t size = 0;
        unsigned offset = 0;
        if (spvc_compiler_get_declared_struct_member_size(compiler, block, member, &size) != SPVC_SUCCESS ||
            spvc_compiler_type_struct_member_offset(compiler, block, member, &offset) != SPVC_SUCCESS)
            return false;
        constant.offset = offset;
        constant.size = static_cast<std::uint32_t>(size);
        // A row of the source is a column here, and the other way round: glslang swaps them, and packing with them.
        const unsigned vectors = spvc_type_get_columns(type);
        constant.rows = vectors;
        constant.columns = spvc_type_get_vector_size(type);
        if (vectors > 1) {
            constant.rowMajor = !spvc_compiler_has_member_decoration(compiler, blockId, member, SpvDecorationRowMajor);
            if (spvc_compiler_type_struct_member_matrix_stride(compiler, block, member, &constant.matrixStride) !=
                SPVC_SUCCESS)
                return false;
        }
        constant.elementStride = constant.size;
        for (unsigned at = 0; at < spvc_type_get_num_array_dimensions(type); ++at)
            constant.elements *= spvc_type_get_array_dimension(type, at);
        if (spvc_type_get_num_array_dimensions(type) > 0)
            spvc_compiler_type_struct_member_array_stride(compiler, block, member, &constant.elementStride);
        if (spvc_type_get_num_array_dimensions(type) > 1)
            return RefuseWith("constant \"" + constant.name + "\": arrays of arrays cannot be used");
        out.constants.push_back(std::move(constant));
        return true;
    }

    bool ReadCrossings() {
        return ReadCrossings(SPVC_RESOURCE_TYPE_STAGE_INPUT, true) &&
               ReadCrossings(SPVC_RESOURCE_TYPE_STAGE_OUTPUT, false);
    }

    bool ReadCrossings(spvc_resource_type kind, bool input) {
        const auto [list, count] = List(kind);
        for (std::size_t at = 0; at < count; ++at) {
            const spvc_variable_id id = list[at].id;
            Crossing crossing;
            crossing.input = input;
            crossing.semantic =
                FullSemantic(spvc_compiler_get_decoration_string(compiler, id, SpvDecorationUserSemantic));
            if (crossing.semantic.empty())
                return RefuseWith(std::string(input ? "an input" : "an output") + " (" + list[at].name +
                                  ") has no semantic");
            const std::string side = input ? "kvFrom_" : "kvTo_";
            crossing.variable = side + crossing.semantic;
            const auto same = [&](const Crossing& other) { return other.variable == crossing.variable; };
            if (std::any_of(crossings.begin(), crossings.end(), same))
                return RefuseWith("semantic " + crossing.semantic + " is used twice");
            spvc_compiler_set_name(compiler, id, crossing.variable.c_str());
            spvc_compiler_unset_decoration(compiler, id, SpvDecorationLocation);
            crossings.push_back(std::move(crossing));
        }
        return true;
    }

    bool ReadSamplers(const std::map<std::string, unsigned>& registers) {
        if (List(SPVC_RESOURCE_TYPE_SEPARATE_IMAGE).second > 0 || List(SPVC_RESOURCE_TYPE_SEPARATE_SAMPLERS).second > 0)
            return RefuseWith("textures apart from their samplers cannot be used");
        const auto [list, count] = List(SPVC_RESOURCE_TYPE_SAMPLED_IMAGE);
        std::set<unsigned> taken;
        for (std::size_t at = 0; at < count; ++at) {
            const auto named = registers.find(list[at].name);
            if (named != registers.end() && !taken.insert(named->second).second)
                return RefuseWith("two samplers share register s" + std::to_string(named->second));
        }
        for (std::size_t at = 0; at < count; ++at) {
            ShaderSampler sampler{list[at].name, 0};
            const auto named = registers.find(sampler.name);
            if (named != registers.end()) {
                sampler.stage = named->second;
            } else {
                while (taken.contains(sampler.stage))
                    ++sampler.stage;
                taken.insert(sampler.stage);
            }
            if (sampler.stage >= 16) return RefuseWith("sampler \"" + sampler.name + "\" has no register below s16");
            // A prefix keeps the name apart from every word of GLSL.
            const std::string name = "kvSampler_" + sampler.name;
            spvc_compiler_set_name(compiler, list[at].id, name.c_str());
            sampler.name = name;
            out.samplers.push_back(std::move(sampler));
        }
        return true;
    }

    bool RefuseWith(const std::string& why) {
        reason = why;
        return false;
    }

    // The stage's own interface lines become plain variables, and a main of ours carries the values across.
    bool Rewrite(std::string_view code) {
        std::string body;
        while (!code.empty()) {
            const std::size_t end = std::min(code.find('\n'), code.size() - 1);
            body += RewriteLine(std::string(code.substr(0, end + 1)));
            code.remove_prefix(end + 1);
        }
        for (const Crossing& crossing : crossings)
            if (crossing.type.empty())
                return RefuseWith("semantic " + crossing.semantic + " has a type that cannot cross between stages");
        const std::string before = out.stage == ShaderStage::Vertex ? VertexInterface() : FragmentInterface();
        if (!reason.empty()) return false;
        const std::size_t afterVersion = body.find('\n') + 1;
        body.insert(afterVersion, before);
        out.code = body + (out.stage == ShaderStage::Vertex ? VertexMain() : FragmentMain());
        return true;
    }

    std::string RewriteLine(std::string line) {
        if (line == "void main()\n") return "void kvStageMain()\n";
        for (Crossing& crossing : crossings) {
            const std::string ending = " " + crossing.variable + ";\n";
            if (!line.ends_with(ending)) continue;
            const std::string head = line.substr(0, line.size() - ending.size());
            const std::string type = head.substr(head.find_last_of(' ') + 1);
            if (head != (crossing.input ? "in " : "out ") + type) continue;
            if (type != "float" && type != "vec2" && type != "vec3" && type != "vec4") continue;
            crossing.type = type;
            return type + ending;
        }
        return line;
    }

    static std::string Narrowed(const std::string& value, const std::string& type) {
        if (type == "float") return value + ".x";
        if (type == "vec2") return value + ".xy";
        return type == "vec3" ? value + ".xyz" : value;
    }

    static std::string Widened(const std::string& value, const std::string& type) {
        if (type == "float") return "vec4(" + value + ", 0.0, 0.0, 1.0)";
        if (type == "vec2") return "vec4(" + value + ", 0.0, 1.0)";
        return type == "vec3" ? "vec4(" + value + ", 1.0)" : value;
    }

    std::string VertexInterface() {
        std::string text = "uniform vec2 kvPixelShift;\n";
        for (const Crossing& crossing : crossings) {
            if (crossing.input) {
                text += "in vec4 " + std::string(stages::attributePrefix) + crossing.semantic + ";\n";
                out.inputs.push_back(crossing.semantic);
            } else if (Crosses(crossing.semantic)) {
                text += "out vec4 " + std::string(stages::varyingPrefix) + crossing.semantic + ";\n";
                out.outputs.push_back(crossing.semantic);
            }
        }
        return text + stages::extraOutputsMark;
    }

    // Point size and fog are written by old programs and mean nothing here.
    static bool Crosses(const std::string& semantic) {
        return semantic != "POSITION0" && semantic != "PSIZE0" && semantic != "FOG0";
    }

    std::string VertexMain() {
        std::string text = "\nvoid main()\n{\n";
        std::string after;
        for (const Crossing& crossing : crossings) {
            if (crossing.input) {
                const std::string attribute = stages::attributePrefix + crossing.semantic;
                text += "    " + crossing.variable + " = " + Narrowed(attribute, crossing.type) + ";\n";
            } else if (crossing.semantic == "POSITION0") {
                after += "    gl_Position = " + Widened(crossing.variable, crossing.type) + ";\n";
            } else if (Crosses(crossing.semantic)) {
                std::string value = Widened(crossing.variable, crossing.type);
                // Colours between the stages are kept within 0 to 1 before shader model 3.
                const bool clamped = crossing.semantic.starts_with("COLOR") && !out.profile.starts_with("vs_3");
                if (clamped) value = "clamp(" + value + ", 0.0, 1.0)";
                after += "    " + std::string(stages::varyingPrefix) + crossing.semantic + " = " + value + ";\n";
            }
        }
        return text + "    kvStageMain();\n" + after + stages::extraWritesMark + stages::vertexEnding + "}\n";
    }

    std::string FragmentInterface() {
        std::string text = "uniform vec4 kvAlphaTest;\nlayout(location = 0) out vec4 kvFragment;\n";
        for (const Crossing& crossing : crossings) {
            const std::string& semantic = crossing.semantic;
            if (crossing.input && (semantic == "VPOS0" || semantic == "VFACE0" || semantic == "POSITION0"))
                RefuseWith("semantic " + semantic + " cannot be read in a fragment stage");
            if (!crossing.input) {
                hasColour = hasColour || semantic == "COLOR0";
                continue;
            }
            text += "in vec4 " + std::string(stages::varyingPrefix) + semantic + ";\n";
            out.inputs.push_back(semantic);
        }
        if (!hasColour && reason.empty()) RefuseWith("the fragment stage writes no COLOR0");
        return text;
    }

    std::string FragmentMain() {
        std::string text = "\nvoid main()\n{\n";
        std::string after;
        for (const Crossing& crossing : crossings) {
            if (crossing.input) {
                const std::string varying = stages::varyingPrefix + crossing.semantic;
                text += "    " + crossing.variable + " = " + Narrowed(varying, crossing.type) + ";\n";
            } else if (crossing.semantic == "COLOR0") {
                after += "    vec4 kvColour = " + Widened(crossing.variable, crossing.type) + ";\n";
            } else if (crossing.semantic == "DEPTH0") {
                after += "    gl_FragDepth = " + crossing.variable + (crossing.type == "float" ? ";\n" : ".x;\n");
            }
        }
        return text + "    kvStageMain();\n" + after + stages::alphaTest + "    kvFragment = kvColour;\n}\n";
    }

    CompiledShader& out;
    std::string& reason;
    std::unique_ptr<spvc_context_s, ContextCloser> context;
    spvc_compiler compiler = nullptr;
    spvc_resources resources = nullptr;
    std::vector<Crossing> crossings;
    bool hasColour = false;
};

}  // namespace

bool SpirvToGlsl(const std::vector<std::uint32_t>& spirv, const std::map<std::string, unsigned>& samplerRegisters,
                 CompiledShader& out, std::string& reason) {
    reason.clear();
    return Translator(out, reason).Run(spirv, samplerRegisters);
}

}  // namespace platform
