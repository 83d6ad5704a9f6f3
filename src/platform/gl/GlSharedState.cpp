#include "platform/gl/GlSharedState.h"

#include <epoxy/gl.h>

#include <utility>

namespace platform::gl {

std::uint64_t SharedState::NextId() {
    const std::scoped_lock guard(lock);
    return ++lastId;
}

void SharedState::Discard(Kind kind, unsigned name, unsigned madeUnder) {
    const std::scoped_lock guard(lock);
    if (name != 0 && madeUnder == generation) discarded.push_back({kind, name});
}

void SharedState::DeleteDiscarded() {
    const std::scoped_lock guard(lock);
    for (const Name& each : discarded) {
        switch (each.kind) {
            case Kind::Texture:
                glDeleteTextures(1, &each.name);
                break;
            case Kind::Buffer:
                glDeleteBuffers(1, &each.name);
                break;
            case Kind::VertexArray:
                glDeleteVertexArrays(1, &each.name);
                break;
            case Kind::Shader:
                glDeleteShader(each.name);
                break;
            case Kind::Program:
                glDeleteProgram(each.name);
                break;
        }
    }
    discarded.clear();
}

void SharedState::ContextLost() {
    const std::scoped_lock guard(lock);
    discarded.clear();
    ++generation;
}

void SharedState::ForgetShader(std::uint64_t id) {
    const std::scoped_lock guard(lock);
    forgottenShaders.push_back(id);
}

std::vector<std::uint64_t> SharedState::TakeForgottenShaders() {
    const std::scoped_lock guard(lock);
    return std::exchange(forgottenShaders, {});
}

void SharedState::AddTextureBytes(std::int64_t bytes) {
    const std::scoped_lock guard(lock);
    textureBytes += bytes;
}

std::int64_t SharedState::TextureBytes() const {
    const std::scoped_lock guard(lock);
    return textureBytes;
}

}  // namespace platform::gl
