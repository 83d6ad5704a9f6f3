#pragma once
// Linked programs by their pair of stages, with the fixed-function stages that stand in for a missing one.

#include <epoxy/gl.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/GraphicsDevice.h"
#include "platform/gl/GlShader.h"

namespace platform::gl {

inline constexpr GLuint vertexBlockPoint = 0;
inline constexpr GLuint fragmentBlockPoint = 1;

// A value that reaches a program's uniform when its version differs from the one sent last.
template <typename Value>
struct Versioned {
    Value value{};
    std::uint64_t version = 1;
    void Set(const Value& to) {
        value = to;
        ++version;
    }
};

struct Program {
    GLuint name = 0;  // 0: it cannot be linked
    GLint pixelShift = -1;
    GLint alphaTest = -1;
    GLint transform = -1;
    std::uint64_t sentPixelShift = 0;
    std::uint64_t sentAlphaTest = 0;
    std::uint64_t sentTransform = 0;
};

class Programs {
  public:
    explicit Programs(std::shared_ptr<SharedState> state) : shared(std::move(state)) {}

    // The program of two stages, null meaning fixed function; `flat`: the first corner's colour for the whole face.
    Program& Find(const Shader* vertex, const Shader* fragment, bool flat);
    // Drops the programs of stages that have gone.
    void DropForgotten();
    // Forgets all without deleting: their context has gone.
    void Clear() { programs.clear(); }

  private:
    struct Key {
        std::uint64_t vertex = 0;
        std::uint64_t fragment = 0;
        bool flat = false;
        auto operator<=>(const Key&) const = default;  // NOLINT(modernize-use-nullptr): clang-tidy 14 is wrong here
    };
    Program Link(const Shader* vertex, const Shader* fragment, bool flat);

    std::shared_ptr<SharedState> shared;
    std::map<Key, Program> programs;
};

// Compiles a stage alone, to see whether the card takes it.
bool CanCompile(const CompiledShader& shader);

}  // namespace platform::gl
