#pragma once
// The OpenGL device.

#include <epoxy/gl.h>

#include <array>
#include <map>
#include <memory>
#include <optional>

#include "platform/GraphicsDevice.h"
#include "platform/gl/GlBuffer.h"
#include "platform/gl/GlContext.h"
#include "platform/gl/GlPrograms.h"
#include "platform/gl/GlSharedState.h"
#include "platform/gl/GlStates.h"
#include "platform/gl/GlTexture.h"

namespace platform::gl {

class Device : public GraphicsDevice {
  public:
    Device(std::shared_ptr<Context> onContext, const PresentParameters& parameters);
    ~Device() override;

    DeviceResult TestCooperativeLevel() override;
    DeviceResult Reset(PresentParameters& parameters) override;
    DeviceResult BeginScene() override;
    void EndScene() override;
    void Present() override;
    void Clear(bool target, bool depth, bool stencil, std::uint32_t colour, float depthValue,
               std::uint32_t stencilValue) override;
    [[nodiscard]] bool RenderTargetHasStencil() const override;

    void SetRenderState(RenderState state, std::uint32_t value) override { states.Set(state, value); }
    [[nodiscard]] std::uint32_t GetRenderState(RenderState state) const override;
    void SetStageOperation(unsigned stage, StageOperation colour, StageOperation alpha) override;
    void SetSampler(unsigned stage, const SamplerState& state) override;
    void SetTransform(TransformKind kind, const DeviceMatrix& matrix) override;
    [[nodiscard]] DeviceMatrix GetTransform(TransformKind kind) const override;
    void SetViewport(const Viewport& viewport) override;
    [[nodiscard]] Viewport GetViewport() const override { return viewport; }

    [[nodiscard]] std::uint64_t FreeTextureMemory() override;
    [[nodiscard]] bool SupportsOcclusionQuery() override { return true; }  // a part of OpenGL 3.3
    [[nodiscard]] std::string VertexProfile() const override { return "vs_3_0"; }
    [[nodiscard]] std::string PixelProfile() const override { return "ps_3_0"; }

    DeviceResult CreateTexture(const TextureRequest& request, std::unique_ptr<DeviceTexture>& out) override;
    DeviceResult CreateVertexBuffer(std::size_t bytes, bool dynamic, bool writeOnly,
                                    std::unique_ptr<DeviceBuffer>& out) override;
    DeviceResult CreateIndexBuffer(std::size_t bytes, bool dynamic, bool writeOnly,
                                   std::unique_ptr<DeviceBuffer>& out) override;
    std::unique_ptr<VertexLayout> CreateVertexLayout(const std::vector<VertexElement>& elements) override;
    std::unique_ptr<DeviceShader> CreateShader(const CompiledShader& shader) override;

    void SetTexture(unsigned stage, DeviceTexture* texture) override;
    void SetVertexLayout(VertexLayout* layout) override;
    void SetVertexBuffer(DeviceBuffer* buffer, unsigned stride) override;
    void SetIndexBuffer(DeviceBuffer* buffer) override;
    void SetVertexShader(DeviceShader* shader) override;
    void SetFragmentShader(DeviceShader* shader) override;

    void Draw(Primitive primitive, unsigned firstVertex, unsigned primitiveCount) override;
    void DrawIndexed(Primitive primitive, unsigned vertexCount, unsigned firstIndex, unsigned primitiveCount) override;
    void DrawFromMemory(Primitive primitive, unsigned primitiveCount, const void* vertices, unsigned stride) override;

    bool ReadBackBuffer(std::vector<std::uint32_t>& argb, unsigned& width, unsigned& height) override;
    void ProvokeLoss(unsigned tests) override;

  private:
    // What OpenGL has bound, so that nothing is bound twice. Ids are those of the objects, 0 for none.
    struct Bound {
        struct Unit {
            std::uint64_t texture = 0;
            GLenum target = GL_TEXTURE_2D;
            GLuint sampler = 0;
        };
        std::array<Unit, stageCount> units;
        unsigned activeUnit = 0;
        const Program* program = nullptr;
        std::uint64_t vertexConstants = 0;
        std::uint64_t fragmentConstants = 0;
        std::uint64_t lastConstants = 0;
        std::uint64_t vertexArray = 0;  // of the buffer's id
    };

    void Start(const PresentParameters& parameters);
    void MakeCommonObjects();
    void MeasureWindow();

    bool PrepareDraw();
    void ApplyTextures();
    void ApplyTexture(unsigned stage);
    void BindWhite();
    void SelectUnit(unsigned unit);
    GLuint SamplerOf(const SamplerState& state);
    bool ApplyProgram();
    void SendTransform(Program& program);
    void UseArray(VertexArray& array, std::uint64_t bufferId);
    VertexArray* BindVertexBuffer();
    void SendViewport();
    void Finished(const char* place);

    std::shared_ptr<Context> context;
    std::shared_ptr<SharedState> shared;
    PresentParameters presentation;
    TextureLimits limits;
    States states;
    Programs programs;
    Bound bound;
    std::array<SamplerState, stageCount> samplers{};
    std::array<bool, stageCount> stageTextured{};
    std::map<std::uint32_t, GLuint> samplerObjects;
    std::array<DeviceMatrix, 3> transforms{};
    Viewport viewport;
    Versioned<std::array<float, 2>> pixelShift;
    Versioned<std::array<float, 4>> alphaTest;
    Versioned<DeviceMatrix> fixedTransform;
    bool transformsChanged = true;
    bool viewportChanged = true;
    VertexArray streamArray;
    GLuint streamBuffer = 0;
    GLuint whiteTexture = 0;
    std::uint64_t streamId = 0;
    std::uint64_t whiteId = 0;
    int rowOffset = 0;  // rows of the window below the picture
    bool inScene = false;
    bool lost = false;
    unsigned lossTests = 0;  // calls of TestCooperativeLevel that still find the device lost
    std::uint64_t memoryAtStart = 0;
};

}  // namespace platform::gl
