#include "platform/gl/GlBuffer.h"

#include <new>

#include "platform/gl/GlCheck.h"

namespace platform::gl {

Buffer::Buffer(std::shared_ptr<SharedState> state, std::size_t count, bool isDynamic)
    : shared(std::move(state)),
      bytes(static_cast<std::uint8_t*>(std::calloc(count, 1))),
      size(count),
      dynamic(isDynamic),
      id(shared->NextId()) {
    if (!bytes) throw std::bad_alloc();
}

Buffer::~Buffer() {
    if (shared->bindings.vertexBuffer == this) shared->bindings.vertexBuffer = nullptr;
    if (shared->bindings.indexBuffer == this) shared->bindings.indexBuffer = nullptr;
    shared->Discard(SharedState::Kind::Buffer, name, generation);
    shared->Discard(SharedState::Kind::VertexArray, array.name, array.generation);
}

// Contents that may be forgotten are kept all the same: the whole buffer goes to the card anew anyway.
void* Buffer::Lock(bool) {
    return bytes.get();
}

void Buffer::Unlock() {
    stale = true;
}

void Buffer::Bind(GLenum target) {
    if (generation != shared->Generation()) {
        glGenBuffers(1, &name);
        generation = shared->Generation();
        stale = true;
    }
    glBindBuffer(target, name);
    if (!stale) return;
    // Giving the buffer new storage lets draws that still read the old one go on.
    glBufferData(target, static_cast<GLsizeiptr>(size), bytes.get(), dynamic ? GL_STREAM_DRAW : GL_STATIC_DRAW);
    stale = false;
    CheckErrors("filling a buffer");
}

Layout::Layout(std::shared_ptr<SharedState> state, const std::vector<VertexElement>& elements)
    : shared(std::move(state)), id(shared->NextId()) {
    for (const VertexElement& element : elements) {
        Attribute& attribute = attributes[static_cast<unsigned>(element.use)];
        attribute.used = true;
        attribute.offset = element.offset;
        attribute.packedColour = element.type == VertexType::PackedColour;
        attribute.components = static_cast<GLint>(element.type) + 1;
    }
}

Layout::~Layout() {
    if (shared->bindings.layout == this) shared->bindings.layout = nullptr;
}

void Layout::Apply(unsigned stride, VertexArray& array) const {
    array.layout = id;
    array.stride = stride;
    for (GLuint at = 0; at < attributeCount; ++at) {
        const Attribute& attribute = attributes[at];
        if (attribute.used && !array.enabled[at]) glEnableVertexAttribArray(at);
        if (!attribute.used && array.enabled[at]) glDisableVertexAttribArray(at);
        array.enabled[at] = attribute.used;
        if (!attribute.used) continue;
        const auto* offset = reinterpret_cast<const void*>(static_cast<std::uintptr_t>(attribute.offset));
        if (attribute.packedColour)
            glVertexAttribPointer(at, GL_BGRA, GL_UNSIGNED_BYTE, GL_TRUE, static_cast<GLsizei>(stride), offset);
        else
            glVertexAttribPointer(at, attribute.components, GL_FLOAT, GL_FALSE, static_cast<GLsizei>(stride), offset);
    }
}

}  // namespace platform::gl
