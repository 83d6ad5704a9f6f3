#include "platform/gl/GlShader.h"

#include "platform/shaders/ShaderConstants.h"

namespace platform::gl {

Shader::Shader(std::shared_ptr<SharedState> state, const CompiledShader& shader)
    : shared(std::move(state)), source(shader), block(shader.initialConstants), id(shared->NextId()) {
    block.resize(source.constantBytes);
}

Shader::~Shader() {
    if (shared->bindings.vertexShader == this) shared->bindings.vertexShader = nullptr;
    if (shared->bindings.fragmentShader == this) shared->bindings.fragmentShader = nullptr;
    shared->Discard(SharedState::Kind::Buffer, name, generation);
    shared->ForgetShader(id);
}

int Shader::FindConstant(const std::string& wanted) const {
    const std::string plain = wanted.ends_with("[0]") ? wanted.substr(0, wanted.size() - 3) : wanted;
    for (std::size_t at = 0; at < source.constants.size(); ++at)
        if (source.constants[at].name == plain) return static_cast<int>(at);
    return -1;
}

const ShaderConstant* Shader::At(int constant) const {
    const bool known = constant >= 0 && static_cast<std::size_t>(constant) < source.constants.size();
    return known ? &source.constants[static_cast<std::size_t>(constant)] : nullptr;
}

void Shader::SetFloats(int constant, const float* values, std::size_t count) {
    if (const ShaderConstant* found = At(constant)) stale |= WriteComponents(*found, values, count, block);
}

void Shader::SetVectors(int constant, const float (*values)[4], std::size_t count) {
    if (const ShaderConstant* found = At(constant)) stale |= WriteVectors(*found, values, count, block);
}

void Shader::SetMatrix(int constant, const float values[16], bool transpose) {
    if (const ShaderConstant* found = At(constant)) stale |= WriteMatrix(*found, values, transpose, block);
}

void Shader::BindConstants(GLuint point, std::uint64_t& bound, std::uint64_t& boundLast) {
    if (block.empty()) return;
    if (generation != shared->Generation()) {
        glGenBuffers(1, &name);
        generation = shared->Generation();
        stale = true;
        bound = 0;
    }
    if (bound != id) {
        glBindBufferBase(GL_UNIFORM_BUFFER, point, name);
        bound = boundLast = id;
    }
    if (!stale) return;
    if (boundLast != id) glBindBuffer(GL_UNIFORM_BUFFER, name);
    boundLast = id;
    glBufferData(GL_UNIFORM_BUFFER, static_cast<GLsizeiptr>(block.size()), block.data(), GL_STREAM_DRAW);
    stale = false;
}

}  // namespace platform::gl
