#pragma once
// One stage with its constants, on the card as a uniform block.

#include <epoxy/gl.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/GraphicsDevice.h"
#include "platform/gl/GlSharedState.h"

namespace platform::gl {

class Shader : public DeviceShader {
  public:
    Shader(std::shared_ptr<SharedState> state, const CompiledShader& shader);
    ~Shader() override;

    [[nodiscard]] int FindConstant(const std::string& name) const override;
    void SetFloats(int constant, const float* values, std::size_t count) override;
    void SetVectors(int constant, const float (*values)[4], std::size_t count) override;
    void SetMatrix(int constant, const float values[16], bool transpose) override;

    [[nodiscard]] std::uint64_t Id() const { return id; }
    [[nodiscard]] const CompiledShader& Source() const { return source; }
    // Binds the constants to a uniform block's binding point, sending what changed. `bound` is the id of the shader
    // whose constants are bound there now, `boundLast` that of the shader whose constants were bound last to any point.
    void BindConstants(GLuint point, std::uint64_t& bound, std::uint64_t& boundLast);

  private:
    [[nodiscard]] const ShaderConstant* At(int constant) const;

    std::shared_ptr<SharedState> shared;
    CompiledShader source;
    std::vector<std::uint8_t> block;
    std::uint64_t id = 0;
    bool stale = true;
    GLuint name = 0;
    unsigned generation = 0;
};

}  // namespace platform::gl
