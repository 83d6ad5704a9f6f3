#include "platform/gl/GlPrograms.h"

#include <algorithm>

#include "platform/gl/GlBuffer.h"
#include "platform/gl/GlCheck.h"
#include "platform/shaders/StageInterface.h"

namespace platform::gl {

namespace {

// The fixed-function stages: position by the transforms and colour and coordinates as they come; texture times colour.
// Without a texture the device binds a white one.
std::string FixedVertexSource() {
    return std::string(
               "#version 330\n"
               "uniform vec2 kvPixelShift;\nuniform mat4 kvTransform;\n"
               "in vec4 kvIn_POSITION0;\nin vec4 kvIn_COLOR0;\nin vec4 kvIn_TEXCOORD0;\n"
               "out vec4 kvVary_COLOR0;\nout vec4 kvVary_TEXCOORD0;\n") +
           stages::extraOutputsMark +
           "void main()\n{\n"
           "    gl_Position = kvTransform * vec4(kvIn_POSITION0.xyz, 1.0);\n"
           "    kvVary_COLOR0 = kvIn_COLOR0;\n    kvVary_TEXCOORD0 = kvIn_TEXCOORD0;\n" +
           stages::extraWritesMark + stages::vertexEnding + "}\n";
}

std::string FixedFragmentSource() {
    return std::string(
               "#version 330\n"
               "uniform vec4 kvAlphaTest;\nuniform sampler2D kvSampler;\n"
               "in vec4 kvVary_COLOR0;\nin vec4 kvVary_TEXCOORD0;\n"
               "layout(location = 0) out vec4 kvFragment;\n"
               "void main()\n{\n"
               "    vec4 kvColour = texture(kvSampler, kvVary_TEXCOORD0.xy) * kvVary_COLOR0;\n") +
           stages::alphaTest + "    kvFragment = kvColour;\n}\n";
}

const std::vector<std::string>& FixedCrossings() {
    static const std::vector<std::string> crossings{"COLOR0", "TEXCOORD0"};
    return crossings;
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

// What the fragment stage reads and the vertex stage leaves out: white for colours, zero for the rest.
void AddMissingOutputs(std::string& vertexSource, const std::vector<std::string>& written,
                       const std::vector<std::string>& read) {
    std::string declarations;
    std::string writes;
    for (const std::string& semantic : read) {
        if (std::find(written.begin(), written.end(), semantic) != written.end()) continue;
        const std::string name = stages::varyingPrefix + semantic;
        declarations += "out vec4 " + name + ";\n";
        writes += "    " + name + (semantic.starts_with("COLOR") ? " = vec4(1.0);\n" : " = vec4(0.0);\n");
    }
    ReplaceAll(vertexSource, stages::extraOutputsMark, declarations);
    ReplaceAll(vertexSource, stages::extraWritesMark, writes);
}

GLuint CompileStage(GLenum kind, const std::string& source) {
    const GLuint stage = glCreateShader(kind);
    const char* text = source.c_str();
    glShaderSource(stage, 1, &text, nullptr);
    glCompileShader(stage);
    GLint fine = GL_FALSE;
    glGetShaderiv(stage, GL_COMPILE_STATUS, &fine);
    if (fine) return stage;
    char log[2048] = "";
    glGetShaderInfoLog(stage, sizeof log, nullptr, log);
    ReportError("compiling a stage", log);
    glDeleteShader(stage);
    return 0;
}

void BindAttributePlaces(GLuint program, const Shader* vertex) {
    for (GLuint at = 0; at < attributeCount; ++at)
        glBindAttribLocation(program, at, (std::string(stages::attributePrefix) + attributeSemantics[at]).c_str());
    if (!vertex) return;
    // Semantics that no layout feeds stand apart from those that one may feed.
    GLuint next = attributeCount;
    for (const std::string& semantic : vertex->Source().inputs)
        if (std::find(attributeSemantics.begin(), attributeSemantics.end(), semantic) == attributeSemantics.end())
            glBindAttribLocation(program, next++, (stages::attributePrefix + semantic).c_str());
}

bool LinkStages(GLuint program, GLuint vertexStage, GLuint fragmentStage) {
    glAttachShader(program, vertexStage);
    glAttachShader(program, fragmentStage);
    glLinkProgram(program);
    glDetachShader(program, vertexStage);
    glDetachShader(program, fragmentStage);
    GLint fine = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &fine);
    if (fine) return true;
    char log[2048] = "";
    glGetProgramInfoLog(program, sizeof log, nullptr, log);
    ReportError("linking a program", log);
    return false;
}

void ConnectBlock(GLuint program, const char* block, GLuint point) {
    const GLuint index = glGetUniformBlockIndex(program, block);
    if (index != GL_INVALID_INDEX) glUniformBlockBinding(program, index, point);
}

void ConnectSamplers(GLuint program, const Shader* shader) {
    if (!shader) return;
    for (const ShaderSampler& sampler : shader->Source().samplers) {
        const GLint place = glGetUniformLocation(program, sampler.name.c_str());
        if (place >= 0) glUniform1i(place, static_cast<GLint>(sampler.stage));
    }
}

}  // namespace

bool CanCompile(const CompiledShader& shader) {
    const GLenum kind = shader.stage == ShaderStage::Vertex ? GL_VERTEX_SHADER : GL_FRAGMENT_SHADER;
    const GLuint stage = CompileStage(kind, shader.code);
    if (stage) glDeleteShader(stage);
    return stage != 0;
}

Program& Programs::Find(const Shader* vertex, const Shader* fragment, bool flat) {
    const Key key{vertex ? vertex->Id() : 0, fragment ? fragment->Id() : 0, flat};
    const auto found = programs.find(key);
    return found != programs.end() ? found->second : programs.emplace(key, Link(vertex, fragment, flat)).first->second;
}

void Programs::DropForgotten() {
    for (const std::uint64_t id : shared->TakeForgottenShaders()) {
        std::erase_if(programs, [&](const auto& entry) {
            if (entry.first.vertex != id && entry.first.fragment != id) return false;
            shared->Discard(SharedState::Kind::Program, entry.second.name, shared->Generation());
            return true;
        });
    }
}

Program Programs::Link(const Shader* vertex, const Shader* fragment, bool flat) {
    std::string vertexSource = vertex ? vertex->Source().code : FixedVertexSource();
    std::string fragmentSource = fragment ? fragment->Source().code : FixedFragmentSource();
    AddMissingOutputs(vertexSource, vertex ? vertex->Source().outputs : FixedCrossings(),
                      fragment ? fragment->Source().inputs : FixedCrossings());
    if (flat) {
        ReplaceAll(vertexSource, "\nout vec4 kvVary_COLOR", "\nflat out vec4 kvVary_COLOR");
        ReplaceAll(fragmentSource, "\nin vec4 kvVary_COLOR", "\nflat in vec4 kvVary_COLOR");
    }
    const GLuint vertexStage = CompileStage(GL_VERTEX_SHADER, vertexSource);
    const GLuint fragmentStage = CompileStage(GL_FRAGMENT_SHADER, fragmentSource);
    Program program;
    program.name = glCreateProgram();
    BindAttributePlaces(program.name, vertex);
    const bool linked = vertexStage && fragmentStage && LinkStages(program.name, vertexStage, fragmentStage);
    glDeleteShader(vertexStage);
    glDeleteShader(fragmentStage);
    if (!linked) {
        glDeleteProgram(program.name);
        return {};
    }
    program.pixelShift = glGetUniformLocation(program.name, "kvPixelShift");
    program.alphaTest = glGetUniformLocation(program.name, "kvAlphaTest");
    program.transform = glGetUniformLocation(program.name, "kvTransform");
    ConnectBlock(program.name, stages::vertexBlock, vertexBlockPoint);
    ConnectBlock(program.name, stages::fragmentBlock, fragmentBlockPoint);
    glUseProgram(program.name);
    ConnectSamplers(program.name, vertex);
    ConnectSamplers(program.name, fragment);
    CheckErrors("linking a program");
    return program;
}

}  // namespace platform::gl
