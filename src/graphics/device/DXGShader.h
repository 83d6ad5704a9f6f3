#pragma once
// A vertex and a fragment stage compiled from HLSL files, with the standard matrices by name.

#include <memory>
#include <string>

#include "graphics/device/SharedResource_TCPP.h"
#include "math/VectorMatrix.h"
#include "platform/GraphicsDevice.h"

namespace G {

struct SShaderApiData {
    std::unique_ptr<platform::DeviceShader> vertex;
    std::unique_ptr<platform::DeviceShader> fragment;
};
struct ShaderRecord : ResType {
    struct StandardMatrix {
        int constant = -1;
        bool inVertex = false;
    };
    bool loaded = false;
    std::string vertexBase;
    std::string fragmentBase;
    SShaderApiData api;
    StandardMatrix matrices[7];
};

class Shader : public SharedResource<ShaderRecord> {
  public:
    Shader() = default;
    ~Shader() override;
    Shader(const Shader& other);
    Shader& operator=(const Shader& other);

    // vertexBase + ".hlsl_v", fragmentBase + ".hlsl_f"; an empty name leaves its stage to the fixed function. On
    // failure the handle is empty and the logs say why.
    bool Load(const std::string& vertexBase, const std::string& fragmentBase);
    // Makes the shader current with the standard matrices of now; one that is not loaded leaves none current.
    void Set();
    [[nodiscard]] bool IsLoaded() const { return Record() && Record()->loaded; }
    void Release();

    // Into the stage that has a constant of the name, the vertex stage first; a missing one is told to the shader log.
    void SetFloat(const std::string& name, float value);
    void SetFloatArray(const std::string& name, const float* values, unsigned count);
    void SetVector(const std::string& name, const Vec4& value);
    void SetVectorArray(const std::string& name, const Vec4* values, unsigned count);
    void SetMatrix(const std::string& name, const Mat4& value, bool transpose);
    // Only says that it does nothing.
    void SetInt(const std::string& name, int value);

  private:
    void ReleaseApi() override;
};

// Writes the standard matrices into the current shader; nothing without one. Looks nothing up and allocates nothing.
void UpdateShaderMatrices();

// Replaces the compiler of sources (tests); null puts back the one at the start, which is platform::CompileShader for
// what FindShippedShader does not know. Returns the one before.
using ShaderCompiler = bool (*)(const std::string& source, const std::string& fileName, const std::string& entry,
                                const std::string& profile, platform::CompiledShader& out, std::string& messages);
ShaderCompiler SetShaderCompiler(ShaderCompiler compiler);

}  // namespace G
