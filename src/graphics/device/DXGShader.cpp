#include "graphics/device/DXGShader.h"

#include <array>
#include <initializer_list>
#include <utility>

#include "diag/CThread.h"
#include "diag/PathFiles.h"
#include "graphics/device/DXGFoundation.h"
#include "graphics/device/DXGHardware.h"
#include "graphics/device/DXGState.h"
#include "platform/ShippedShaders.h"

namespace G {

namespace {

// The standard matrices in the order of ShaderRecord::matrices.
enum StandardName : unsigned {
    modelViewProjection,
    viewProjection,
    modelView,
    model,
    view,
    projection,
    worldRotation,
    standardCount,
};
constexpr std::array standardNames{
    "ModelViewProjectionMatrix", "ViewProjectionMatrix", "ModelViewMatrix", "ModelMatrix", "ViewMatrix",
    "ProjectionMatrix",          "WorldRotMatrix[0]",
};
static_assert(standardNames.size() == standardCount &&
              sizeof(ShaderRecord::matrices) == standardCount * sizeof(ShaderRecord::StandardMatrix));

ShaderRecord* currentShader = nullptr;

// A file in data/shaders that is as it was shipped need not be compiled.
bool CompileUnlessShipped(const std::string& source, const std::string& fileName, const std::string& entry,
                          const std::string& profile, platform::CompiledShader& out, std::string& messages) {
    const platform::CompiledShader* shipped = platform::FindShippedShader(source, entry, profile);
    if (!shipped) return platform::CompileShader(source, fileName, entry, profile, out, messages);
    out = *shipped;
    messages.clear();
    return true;
}

ShaderCompiler compileShader = CompileUnlessShipped;

// One source file, read once for all profiles.
struct StageSource {
    std::string fileName;
    std::string text;
};

void WriteShaderStack(const std::string& message) {
    WriteReport(shaderLog, message, "  -call stack:\n", false);
}

std::unique_ptr<platform::DeviceShader> MakeStage(const StageSource& source, const char* profile, bool report) {
    platform::CompiledShader compiled;
    std::string messages;
    bool done = false;
    if (source.text.empty())
        messages = source.fileName + ": the source file is empty or cannot be opened\n";
    else
        done = compileShader(source.text, source.fileName, "main", profile, compiled, messages);
    if (!done) {
        if (!report) return nullptr;
        shaderLog.Write("Failed to compile shader: " + source.fileName + ":\n" + messages);
        errorLog.Write("Failed to compile shader: " + source.fileName + "\n");
        return nullptr;
    }
    if (report && !messages.empty())
        shaderLog.Write("Shader warning(s) (" + source.fileName + "):\n" + messages + "\n");
    std::unique_ptr<platform::DeviceShader> shader = DXG::DeviceOrNull()->CreateShader(compiled);
    if (!shader && report)
        shaderLog.Write("Failed to create shader (" + source.fileName +
                        "), though it did compile... hardware can't handle it probably.\n");
    return shader;
}

// The profiles in their order; only the last attempt speaks.
std::unique_ptr<platform::DeviceShader> MakeVertexStage(const std::string& fileName) {
    const StageSource source{fileName, ReadWholeFile(fileName, false)};
    for (const char* profile : {"vs_2_0", "vs_1_0"})
        if (auto shader = MakeStage(source, profile, false)) return shader;
    constexpr unsigned softwareBelow = 3;
    auto shader = MakeStage(source, "vs_3_0", true);
    if (shader && DXG::VertexShaderMajor() < softwareBelow)
        shaderLog.Write("note: " + fileName + " loaded, but likely running in software.\n");
    return shader;
}

std::unique_ptr<platform::DeviceShader> MakeFragmentStage(const std::string& fileName) {
    if (!DXG::HasPixelShaders()) {
        const std::string message = "Cannot compile Fragment Shader on this hardware: " + fileName + "\n";
        errorLog.Write(message);
        shaderLog.Write(message);
        return nullptr;
    }
    const StageSource source{fileName, ReadWholeFile(fileName, false)};
    auto shader = MakeStage(source, "ps_2_0", true);
    return shader ? std::move(shader) : MakeStage(source, "ps_2_a", true);
}

struct FoundConstant {
    platform::DeviceShader* stage = nullptr;  // null: not there
    int constant = -1;
    bool inVertex = false;
};

FoundConstant FindConstant(const SShaderApiData& api, const std::string& name, bool warnWhenMissing) {
    const int inVertex = api.vertex ? api.vertex->FindConstant(name) : -1;
    const int inFragment = api.fragment ? api.fragment->FindConstant(name) : -1;
    if (inVertex >= 0) {
        if (inFragment >= 0) {
            const std::string warning =
                "Warning: constant name(" + name +
                ") exists in both fragment and vertex shader... fragment constant is unreachable.\n";
            errorLog.Write(warning);
            WriteShaderStack(warning);
        }
        return {api.vertex.get(), inVertex, true};
    }
    if (inFragment >= 0) return {api.fragment.get(), inFragment, false};
    if (warnWhenMissing && (api.vertex || api.fragment))
        WriteShaderStack("Warning: Asking for constant (" + name + ") in a shader, but it's not there.\n");
    return {};
}

// Calls `write` with the stage that holds a constant and the constant's handle.
template <typename Write>
void WriteNamed(const ShaderRecord* shader, const std::string& name, Write write) {
    if (!shader) return;
    const FoundConstant found = FindConstant(shader->api, name, true);
    if (found.stage) write(*found.stage, found.constant);
}

void FindStandardMatrices(ShaderRecord& shader) {
    for (unsigned i = 0; i < standardCount; ++i) {
        const FoundConstant found = FindConstant(shader.api, standardNames[i], false);
        shader.matrices[i] = {found.constant, found.inVertex};
    }
}

void WriteStandard(const ShaderRecord& shader, StandardName name, const Mat4& value, bool transpose) {
    const ShaderRecord::StandardMatrix& matrix = shader.matrices[name];
    platform::DeviceShader& stage = matrix.inVertex ? *shader.api.vertex : *shader.api.fragment;
    stage.SetMatrix(matrix.constant, value.m.data(), transpose);
}

void DropObjects(ShaderRecord& shader) {
    if (currentShader == &shader) {
        currentShader = nullptr;
        DXG::UnbindShaders();
    }
    shader.api = SShaderApiData();
    shader.loaded = false;
}

void DropAllObjects() {
    for (ShaderRecord* shader : Shader::Records())
        DropObjects(*shader);
}

}  // namespace

ShaderCompiler SetShaderCompiler(ShaderCompiler compiler) {
    return std::exchange(compileShader, compiler ? compiler : CompileUnlessShipped);
}

Shader::~Shader() {
    Release();
}

Shader::Shader(const Shader& other) : SharedResource() {
    const ScopedLock held(DXG::GraphicsLock());
    CopyFrom(other);
}

Shader& Shader::operator=(const Shader& other) {
    const ScopedLock held(DXG::GraphicsLock());
    CopyFrom(other);
    return *this;
}

void Shader::Release() {
    const ScopedLock held(DXG::GraphicsLock());
    SRFree();
}

void Shader::ReleaseApi() {
    DropObjects(*Record());
}

bool Shader::Load(const std::string& vertexBase, const std::string& fragmentBase) {
    const ScopedLock held(DXG::GraphicsLock());
    SRFree();
    if (!DXG::DeviceOrNull()) {
        ReportMisuse(DXG::NotInitializedMessage("G::Shader::Load"));
        return false;
    }
    static const bool registered = (DXG::AddTeardownHook(DropAllObjects), true);
    (void)registered;
    SShaderApiData api;
    if (!vertexBase.empty()) api.vertex = MakeVertexStage(vertexBase + ".hlsl_v");
    if (!fragmentBase.empty()) api.fragment = MakeFragmentStage(fragmentBase + ".hlsl_f");
    const bool whole = (vertexBase.empty() || api.vertex) && (fragmentBase.empty() || api.fragment);
    if (!whole || (!api.vertex && !api.fragment)) return false;
    ShaderRecord& made = AllocateRecord();
    made.vertexBase = vertexBase;
    made.fragmentBase = fragmentBase;
    made.api = std::move(api);
    FindStandardMatrices(made);
    made.loaded = true;
    return true;
}

void Shader::Set() {
    platform::GraphicsDevice* device = DXG::DeviceOrNull();
    if (!IsLoaded() || !device) {
        currentShader = nullptr;
        DXG::UnbindShaders();
        return;
    }
    currentShader = Record();
    device->SetVertexShader(currentShader->api.vertex.get());
    device->SetFragmentShader(currentShader->api.fragment.get());
    UpdateShaderMatrices();
}

void Shader::SetFloat(const std::string& name, float value) {
    SetFloatArray(name, &value, 1);
}

void Shader::SetFloatArray(const std::string& name, const float* values, unsigned count) {
    WriteNamed(Record(), name,
               [&](platform::DeviceShader& stage, int constant) { stage.SetFloats(constant, values, count); });
}

void Shader::SetVector(const std::string& name, const Vec4& value) {
    SetVectorArray(name, &value, 1);
}

void Shader::SetVectorArray(const std::string& name, const Vec4* values, unsigned count) {
    static_assert(sizeof(Vec4) == 4 * sizeof(float));
    WriteNamed(Record(), name, [&](platform::DeviceShader& stage, int constant) {
        stage.SetVectors(constant, reinterpret_cast<const float(*)[4]>(values), count);
    });
}

void Shader::SetMatrix(const std::string& name, const Mat4& value, bool transpose) {
    WriteNamed(Record(), name, [&](platform::DeviceShader& stage, int constant) {
        stage.SetMatrix(constant, value.m.data(), transpose);
    });
}

void Shader::SetInt(const std::string&, int) {
    errorLog.Write("Shader::SetInt not implemented yet in DX.\n");
}

void UpdateShaderMatrices() {
    const ShaderRecord* shader = currentShader;
    if (!shader || !DXG::DeviceOrNull()) return;
    const Mat4 world = DXG::GetWorld();
    const Mat4 viewing = DXG::GetView();
    const Mat4 projecting = DXG::GetProjection();
    const auto has = [shader](StandardName name) { return shader->matrices[name].constant >= 0; };
    // The combined view and projection is built from the device's own (row-vector) form of the view, the plain
    // model-view from the column-vector forms: the shipped shaders were written against exactly these.
    if (has(modelViewProjection))
        WriteStandard(*shader, modelViewProjection,
                      Transpose(Multiply(Transpose(Multiply(viewing, world)), projecting)), true);
    if (has(viewProjection)) WriteStandard(*shader, viewProjection, Multiply(Transpose(viewing), projecting), true);
    if (has(modelView)) WriteStandard(*shader, modelView, Multiply(world, viewing), true);
    if (has(model)) WriteStandard(*shader, model, world, false);
    if (has(view)) WriteStandard(*shader, view, viewing, true);
    if (has(projection)) WriteStandard(*shader, projection, projecting, true);
    if (has(worldRotation)) WriteStandard(*shader, worldRotation, world, false);
}

}  // namespace G
