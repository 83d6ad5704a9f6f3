// Bringing OpenGL to what the next draw needs, and drawing.

#include <algorithm>

#include "platform/gl/GlCheck.h"
#include "platform/gl/GlDevice.h"

namespace platform::gl {

namespace {

// Direct3D 9 has pixel centres at whole positions and fills a pixel whose centre lies on a left or top edge; OpenGL has
// them half a pixel further and leaves edges open. A little less than half a pixel gives both: far enough from 0 that a
// whole position is inside on every card (they round to 1/256 pixel), and less than the 0.005 pixel by which callers
// move what they draw.
constexpr float pixelShiftPixels = 0.5F - 0.0025F;

DeviceMatrix Multiply(const DeviceMatrix& a, const DeviceMatrix& b) {
    DeviceMatrix product{};
    for (unsigned row = 0; row < 4; ++row)
        for (unsigned column = 0; column < 4; ++column)
            for (unsigned at = 0; at < 4; ++at)
                product[4 * row + column] += a[4 * row + at] * b[4 * at + column];
    return product;
}

GLenum ModeOf(Primitive primitive) {
    switch (primitive) {
        case Primitive::Points:
            return GL_POINTS;
        case Primitive::Lines:
            return GL_LINES;
        case Primitive::TriangleFan:
            return GL_TRIANGLE_FAN;
        default:
            return GL_TRIANGLES;
    }
}

std::size_t CornersOf(Primitive primitive, unsigned primitives) {
    switch (primitive) {
        case Primitive::Points:
            return primitives;
        case Primitive::Lines:
            return std::size_t(primitives) * 2;
        case Primitive::TriangleFan:
            return std::size_t(primitives) + 2;
        default:
            return std::size_t(primitives) * 3;
    }
}

GLint FilterOf(const SamplerState& state) {
    const bool smooth = state.minify >= TextureFilter::Linear;
    if (state.mipmap == TextureFilter::None) return smooth ? GL_LINEAR : GL_NEAREST;
    if (state.mipmap == TextureFilter::Point) return smooth ? GL_LINEAR_MIPMAP_NEAREST : GL_NEAREST_MIPMAP_NEAREST;
    return smooth ? GL_LINEAR_MIPMAP_LINEAR : GL_NEAREST_MIPMAP_LINEAR;
}

GLint AddressOf(TextureAddress address) {
    return address == TextureAddress::Wrap ? GL_REPEAT : GL_CLAMP_TO_EDGE;
}

std::uint32_t KeyOf(const SamplerState& state) {
    return static_cast<std::uint32_t>(state.minify) | static_cast<std::uint32_t>(state.magnify) << 4 |
           static_cast<std::uint32_t>(state.mipmap) << 8 | static_cast<std::uint32_t>(state.u) << 12 |
           static_cast<std::uint32_t>(state.v) << 13 | static_cast<std::uint32_t>(state.w) << 14;
}

}  // namespace

bool Device::PrepareDraw() {
    if (lost || !context->MakeCurrent()) return false;
    if (viewportChanged) SendViewport();
    if (viewport.width == 0 || viewport.height == 0) return false;
    states.Apply();
    ApplyTextures();
    return ApplyProgram();
}

void Device::SendViewport() {
    viewportChanged = false;
    if (viewport.width == 0 || viewport.height == 0) return;
    // OpenGL counts rows from the bottom.
    const auto bottom = rowOffset + static_cast<GLint>(presentation.backBufferHeight) - static_cast<GLint>(viewport.y) -
                        static_cast<GLint>(viewport.height);
    glViewport(static_cast<GLint>(viewport.x), bottom, static_cast<GLsizei>(viewport.width),
               static_cast<GLsizei>(viewport.height));
    glDepthRange(viewport.minDepth, viewport.maxDepth);
    pixelShift.Set({2.0F * pixelShiftPixels / static_cast<float>(viewport.width),
                    -2.0F * pixelShiftPixels / static_cast<float>(viewport.height)});
}

void Device::SelectUnit(unsigned unit) {
    if (bound.activeUnit == unit) return;
    glActiveTexture(GL_TEXTURE0 + unit);
    bound.activeUnit = unit;
}

void Device::ApplyTextures() {
    for (unsigned stage = 0; stage < stageCount; ++stage) {
        const Texture* texture = shared->bindings.textures[stage];
        const bool same = bound.units[stage].texture == (texture ? texture->Id() : 0);
        if (stage > 0 && !texture && same) continue;
        ApplyTexture(stage);
    }
}

void Device::ApplyTexture(unsigned stage) {
    Texture* texture = shared->bindings.textures[stage];
    Bound::Unit& unit = bound.units[stage];
    // The fixed-function fragment stage multiplies by its texture: white when it has none.
    const bool fixed = stage == 0 && !shared->bindings.fragmentShader;
    if (fixed && (!texture || !stageTextured[0] || texture->Target() != GL_TEXTURE_2D)) return BindWhite();
    const std::uint64_t wanted = texture ? texture->Id() : 0;
    if (unit.texture != wanted || (texture && texture->NeedsRefresh())) {
        SelectUnit(stage);
        const GLenum target = texture ? texture->Target() : unit.target;
        if (target != unit.target) glBindTexture(unit.target, 0);
        if (texture)
            texture->Bind();
        else
            glBindTexture(target, 0);
        unit.texture = wanted;
        unit.target = target;
    }
    if (!texture) return;
    const GLuint sampler = SamplerOf(samplers[stage]);
    if (unit.sampler == sampler) return;
    glBindSampler(stage, sampler);
    unit.sampler = sampler;
}

void Device::BindWhite() {
    Bound::Unit& unit = bound.units[0];
    if (unit.texture == whiteId) return;
    SelectUnit(0);
    if (unit.target != GL_TEXTURE_2D) glBindTexture(unit.target, 0);
    glBindTexture(GL_TEXTURE_2D, whiteTexture);
    unit.texture = whiteId;
    unit.target = GL_TEXTURE_2D;
}

GLuint Device::SamplerOf(const SamplerState& state) {
    GLuint& sampler = samplerObjects[KeyOf(state)];
    if (sampler != 0) return sampler;
    glGenSamplers(1, &sampler);
    glSamplerParameteri(sampler, GL_TEXTURE_MIN_FILTER, FilterOf(state));
    glSamplerParameteri(sampler, GL_TEXTURE_MAG_FILTER,
                        state.magnify >= TextureFilter::Linear ? GL_LINEAR : GL_NEAREST);
    glSamplerParameteri(sampler, GL_TEXTURE_WRAP_S, AddressOf(state.u));
    glSamplerParameteri(sampler, GL_TEXTURE_WRAP_T, AddressOf(state.v));
    glSamplerParameteri(sampler, GL_TEXTURE_WRAP_R, AddressOf(state.w));
    return sampler;
}

bool Device::ApplyProgram() {
    if (shared->HasForgottenShaders()) {
        programs.DropForgotten();
        bound.program = nullptr;
    }
    Shader* vertex = shared->bindings.vertexShader;
    Shader* fragment = shared->bindings.fragmentShader;
    const bool flat = states.Get(RenderState::Shade) == static_cast<std::uint32_t>(ShadeMode::Flat);
    Program& program = programs.Find(vertex, fragment, flat);
    if (program.name == 0) return false;
    if (bound.program != &program) {
        glUseProgram(program.name);
        bound.program = &program;
    }
    if (program.sentPixelShift != pixelShift.version) {
        glUniform2fv(program.pixelShift, 1, pixelShift.value.data());
        program.sentPixelShift = pixelShift.version;
    }
    bool alphaChanged = false;
    const std::array<float, 4> test = states.AlphaTest(alphaChanged);
    if (alphaChanged) alphaTest.Set(test);
    if (program.sentAlphaTest != alphaTest.version) {
        glUniform4fv(program.alphaTest, 1, alphaTest.value.data());
        program.sentAlphaTest = alphaTest.version;
    }
    if (!vertex) SendTransform(program);
    if (vertex) vertex->BindConstants(vertexBlockPoint, bound.vertexConstants, bound.lastConstants);
    if (fragment) fragment->BindConstants(fragmentBlockPoint, bound.fragmentConstants, bound.lastConstants);
    return true;
}

void Device::SendTransform(Program& program) {
    if (transformsChanged) {
        transformsChanged = false;
        fixedTransform.Set(Multiply(Multiply(transforms[0], transforms[1]), transforms[2]));
    }
    if (program.sentTransform == fixedTransform.version) return;
    // Rows of a row-vector matrix are the columns that OpenGL wants.
    glUniformMatrix4fv(program.transform, 1, GL_FALSE, fixedTransform.value.data());
    program.sentTransform = fixedTransform.version;
}

void Device::UseArray(VertexArray& array, std::uint64_t bufferId) {
    if (array.generation != shared->Generation()) {
        array = {};
        glGenVertexArrays(1, &array.name);
        array.generation = shared->Generation();
    } else if (bound.vertexArray == bufferId) {
        return;
    }
    glBindVertexArray(array.name);
    bound.vertexArray = bufferId;
}

// Null when there is nothing to draw from.
VertexArray* Device::BindVertexBuffer() {
    Buffer* buffer = shared->bindings.vertexBuffer;
    const Layout* layout = shared->bindings.layout;
    if (!buffer || !layout) return nullptr;
    VertexArray& array = buffer->Array();
    UseArray(array, buffer->Id());
    const unsigned stride = shared->bindings.stride;
    const bool pointed = array.layout == layout->Id() && array.stride == stride;
    if (!pointed || buffer->NeedsRefresh()) buffer->Bind(GL_ARRAY_BUFFER);
    if (!pointed) layout->Apply(stride, array);
    return &array;
}

void Device::Draw(Primitive primitive, unsigned firstVertex, unsigned primitiveCount) {
    const Buffer* buffer = shared->bindings.vertexBuffer;
    const std::size_t corners = CornersOf(primitive, primitiveCount);
    if (primitiveCount == 0 || !buffer) return;
    if ((std::size_t(firstVertex) + corners) * shared->bindings.stride > buffer->Size()) return;
    if (!PrepareDraw() || !BindVertexBuffer()) return;
    glDrawArrays(ModeOf(primitive), static_cast<GLint>(firstVertex), static_cast<GLsizei>(corners));
    Finished("drawing");
}

void Device::DrawIndexed(Primitive primitive, unsigned vertexCount, unsigned firstIndex, unsigned primitiveCount) {
    const Buffer* vertices = shared->bindings.vertexBuffer;
    Buffer* indices = shared->bindings.indexBuffer;
    const std::size_t corners = CornersOf(primitive, primitiveCount);
    if (primitiveCount == 0 || vertexCount == 0 || !vertices || !indices) return;
    if ((std::size_t(firstIndex) + corners) * sizeof(std::uint16_t) > indices->Size()) return;
    if (std::size_t(vertexCount) * shared->bindings.stride > vertices->Size()) return;
    if (!PrepareDraw()) return;
    VertexArray* array = BindVertexBuffer();
    if (!array) return;
    if (array->indexBuffer != indices->Id() || indices->NeedsRefresh()) {
        indices->Bind(GL_ELEMENT_ARRAY_BUFFER);
        array->indexBuffer = indices->Id();
    }
    const auto* start = reinterpret_cast<const void*>(std::uintptr_t(firstIndex) * sizeof(std::uint16_t));
    glDrawRangeElements(ModeOf(primitive), 0, vertexCount - 1, static_cast<GLsizei>(corners), GL_UNSIGNED_SHORT, start);
    Finished("drawing with indices");
}

void Device::DrawFromMemory(Primitive primitive, unsigned primitiveCount, const void* vertices, unsigned stride) {
    if (primitiveCount == 0 || !vertices || stride == 0 || !shared->bindings.layout || !PrepareDraw()) return;
    const std::size_t corners = CornersOf(primitive, primitiveCount);
    glBindBuffer(GL_ARRAY_BUFFER, streamBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(corners * stride), vertices, GL_STREAM_DRAW);
    UseArray(streamArray, streamId);
    const Layout& layout = *shared->bindings.layout;
    if (streamArray.layout != layout.Id() || streamArray.stride != stride) layout.Apply(stride, streamArray);
    glDrawArrays(ModeOf(primitive), 0, static_cast<GLsizei>(corners));
    Finished("drawing from memory");
}

}  // namespace platform::gl
