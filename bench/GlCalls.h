#pragma once
// What the device asks of OpenGL, counted in place of its calls, which are passed on.

#include <epoxy/gl.h>

#include <array>
#include <cstdint>
#include <map>

namespace bench {

struct GlCalls {
    unsigned draws = 0;
    unsigned vertices = 0;  // with indices: the indices
    unsigned textureBinds = 0;
    unsigned stateCalls = 0;
    unsigned repeatedStates = 0;  // those that set what was set already
};

// In place of OpenGL's own calls while it lives, one at a time. Functions that were never called before are not seen.
class CountedGl {
  public:
    explicit CountedGl(bool passDraws) {
        counted = GlCalls();
        drawsPass = passDraws;
        known.clear();
    }
    CountedGl(const CountedGl&) = delete;
    CountedGl& operator=(const CountedGl&) = delete;
    [[nodiscard]] const GlCalls& Calls() const { return counted; }

  private:
    using State = std::array<std::int64_t, 3>;
    using Value = std::array<std::int64_t, 5>;

    // Puts `note` before the function at `slot`, which is called when it answers true.
    template <auto slot, auto note>
    struct Hook;
    template <typename... Parts, void (**slot)(Parts...), auto note>
    struct Hook<slot, note> {
        static inline void (*real)(Parts...) = nullptr;
        static void Call(Parts... parts) {
            if (note(parts...)) real(parts...);
        }
        Hook() {
            real = *slot;
            *slot = Call;
        }
        ~Hook() { *slot = real; }
    };

    static bool Set(State state, Value value) {
        ++counted.stateCalls;
        const auto [place, isNew] = known.try_emplace(state, value);
        if (!isNew && place->second == value) ++counted.repeatedStates;
        place->second = value;
        return true;
    }
    static bool Draw(GLsizei vertices) {
        ++counted.draws;
        counted.vertices += static_cast<unsigned>(vertices);
        return drawsPass;
    }

    static inline GlCalls counted;
    static inline bool drawsPass = true;
    static inline std::map<State, Value> known;
    static inline GLenum unit = 0;
    static inline GLuint arrayBuffer = 0;

    static bool OnDrawArrays(GLenum, GLint, GLsizei count) { return Draw(count); }
    static bool OnDrawElements(GLenum, GLuint, GLuint, GLsizei count, GLenum, const void*) { return Draw(count); }
    static bool OnActiveTexture(GLenum wanted) {
        unit = wanted;
        return Set({1}, {wanted});
    }
    static bool OnBindTexture(GLenum target, GLuint texture) {
        if (texture != 0) ++counted.textureBinds;
        return Set({2, unit, target}, {texture});
    }
    static bool OnBindSampler(GLuint at, GLuint sampler) { return Set({3, at}, {sampler}); }
    static bool OnUseProgram(GLuint program) { return Set({4}, {program}); }
    static bool OnBindBuffer(GLenum target, GLuint buffer) {
        if (target == GL_ARRAY_BUFFER) arrayBuffer = buffer;
        return Set({5, target}, {buffer});
    }
    static bool OnEnableAttribute(GLuint at) { return Set({6, at}, {1}); }
    static bool OnDisableAttribute(GLuint at) { return Set({6, at}, {0}); }
    static bool OnAttributePointer(GLuint at, GLint size, GLenum type, GLboolean, GLsizei stride, const void* offset) {
        return Set({7, at}, {arrayBuffer, size, type, stride, reinterpret_cast<std::intptr_t>(offset)});
    }
    static bool OnEnable(GLenum what) { return Set({8, what}, {1}); }
    static bool OnDisable(GLenum what) { return Set({8, what}, {0}); }
    static bool OnCullFace(GLenum face) { return Set({9}, {face}); }
    static bool OnDepthMask(GLboolean on) { return Set({10}, {on}); }
    static bool OnViewport(GLint x, GLint y, GLsizei width, GLsizei height) { return Set({11}, {x, y, width, height}); }
    static bool OnBindVertexArray(GLuint array) { return Set({12}, {array}); }

    Hook<&epoxy_glDrawArrays, OnDrawArrays> drawArrays;
    Hook<&epoxy_glDrawRangeElements, OnDrawElements> drawElements;
    Hook<&epoxy_glActiveTexture, OnActiveTexture> activeTexture;
    Hook<&epoxy_glBindTexture, OnBindTexture> bindTexture;
    Hook<&epoxy_glBindSampler, OnBindSampler> bindSampler;
    Hook<&epoxy_glUseProgram, OnUseProgram> useProgram;
    Hook<&epoxy_glBindBuffer, OnBindBuffer> bindBuffer;
    Hook<&epoxy_glEnableVertexAttribArray, OnEnableAttribute> enableAttribute;
    Hook<&epoxy_glDisableVertexAttribArray, OnDisableAttribute> disableAttribute;
    Hook<&epoxy_glVertexAttribPointer, OnAttributePointer> attributePointer;
    Hook<&epoxy_glEnable, OnEnable> enable;
    Hook<&epoxy_glDisable, OnDisable> disable;
    Hook<&epoxy_glCullFace, OnCullFace> cullFace;
    Hook<&epoxy_glDepthMask, OnDepthMask> depthMask;
    Hook<&epoxy_glViewport, OnViewport> viewport;
    Hook<&epoxy_glBindVertexArray, OnBindVertexArray> vertexArray;
};

}  // namespace bench
