#include "platform/gl/GlDevice.h"

#include <SDL.h>

#include <algorithm>

#include "platform/Caps.h"
#include "platform/gl/GlCheck.h"

namespace platform::gl {

namespace {

// Bytes, an estimate from what the driver says; 0 when it says nothing.
std::uint64_t DriverFreeMemory() {
    constexpr GLenum nvidiaAvailableKib = 0x9049;  // GL_NVX_gpu_memory_info
    constexpr GLenum atiTextureFreeKib = 0x87FC;   // GL_ATI_meminfo
    GLint kib[4] = {};
    if (epoxy_has_gl_extension("GL_NVX_gpu_memory_info"))
        glGetIntegerv(nvidiaAvailableKib, kib);
    else if (epoxy_has_gl_extension("GL_ATI_meminfo"))
        glGetIntegerv(atiTextureFreeKib, kib);
    return kib[0] > 0 ? static_cast<std::uint64_t>(kib[0]) << 10 : 0;
}

bool HasStencil(PixelFormat format) {
    return format == PixelFormat::D24S8 || format == PixelFormat::D15S1;
}

constexpr DeviceMatrix identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

}  // namespace

Device::Device(std::shared_ptr<Context> onContext, const PresentParameters& parameters)
    : context(std::move(onContext)),
      shared(std::make_shared<SharedState>()),
      programs(shared),
      streamId(shared->NextId()),
      whiteId(shared->NextId()) {
    Start(parameters);
    // A system whose driver says nothing shares its memory between texels and everything else.
    memoryAtStart = DriverFreeMemory();
    if (memoryAtStart == 0) memoryAtStart = static_cast<std::uint64_t>(SDL_GetSystemRAM()) << 19;
}

Device::~Device() {
    // Objects that outlive the device find their names already gone with the context.
    shared->ContextLost();
    Context::ForgetWaiting();
}

void Device::Start(const PresentParameters& parameters) {
    presentation = parameters;
    bound = {};
    shared->bindings = {};
    samplers.fill({});
    stageTextured.fill(false);
    stageTextured[0] = true;
    transforms.fill(identity);
    transformsChanged = true;
    states.SetDefaults(RenderTargetHasStencil());
    SetViewport({0, 0, presentation.backBufferWidth, presentation.backBufferHeight, 0.0F, 1.0F});
    MeasureWindow();
    viewportChanged = true;
    inScene = false;
    lost = false;
    MakeCommonObjects();
    SDL_GL_SetSwapInterval(presentation.waitForRetrace ? 1 : 0);
}

void Device::MakeCommonObjects() {
    samplerObjects.clear();
    programs.Clear();
    GLint value = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &value);
    limits.plain = static_cast<unsigned>(value);
    glGetIntegerv(GL_MAX_CUBE_MAP_TEXTURE_SIZE, &value);
    limits.cube = static_cast<unsigned>(value);
    glGetIntegerv(GL_MAX_3D_TEXTURE_SIZE, &value);
    limits.volume = static_cast<unsigned>(value);

    glGenBuffers(1, &streamBuffer);
    const std::uint32_t white = 0xFFFFFFFF;
    glGenTextures(1, &whiteTexture);
    glBindTexture(GL_TEXTURE_2D, whiteTexture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 1, 1, 0, GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV, &white);
    bound.units[0].texture = whiteId;

    // A colour that the vertices leave out is white.
    glVertexAttrib4f(2, 1.0F, 1.0F, 1.0F, 1.0F);
    glFrontFace(GL_CW);
    glProvokingVertex(GL_FIRST_VERTEX_CONVENTION);
    glDisable(GL_DITHER);
    glDisable(GL_MULTISAMPLE);
    glReadBuffer(GL_BACK);
    CheckErrors("starting the device");
}

DeviceResult Device::TestCooperativeLevel() {
    if (!lost && context->MakeCurrent() && context->WasReset()) {
        lost = true;
        shared->ContextLost();
    }
    if (!lost) return DeviceResult::Ok;
    if (lossTests > 0) {
        --lossTests;
        return DeviceResult::DeviceLost;
    }
    return DeviceResult::DeviceNotReset;
}

void Device::ProvokeLoss(unsigned tests) {
    lost = true;
    lossTests = tests;
    shared->ContextLost();
}

DeviceResult Device::Reset(PresentParameters& parameters) {
    if (lossTests > 0) return DeviceResult::DeviceLost;
    if (!parameters.windowed || parameters.backBufferWidth == 0 || parameters.backBufferHeight == 0)
        return DeviceResult::InvalidCall;
    shared->ContextLost();
    lost = true;
    if (!context->Renew()) return DeviceResult::DriverInternalError;
    Start(parameters);
    return DeviceResult::Ok;
}

DeviceResult Device::BeginScene() {
    if (lost) return DeviceResult::DeviceLost;
    if (inScene || !context->MakeCurrent()) return DeviceResult::InvalidCall;
    shared->DeleteDiscarded();
    MeasureWindow();
    inScene = true;
    return DeviceResult::Ok;
}

// A window manager may make the window larger or smaller than the picture. The picture keeps its size and its place at
// the top left corner, where positions of the mouse are counted from; OpenGL counts rows from the bottom.
void Device::MeasureWindow() {
    int width = 0;
    int height = 0;
    context->DrawableSize(width, height);
    const int offset = height - static_cast<int>(presentation.backBufferHeight);
    viewportChanged = viewportChanged || offset != rowOffset;
    rowOffset = offset;
}

void Device::EndScene() {
    inScene = false;
}

void Device::Present() {
    if (lost || !context->MakeCurrent()) return;
    // Swapping an invisible window returns at once with some drivers and never with others.
    if ((SDL_GetWindowFlags(context->Window()) & SDL_WINDOW_MINIMIZED) != 0) {
        constexpr unsigned pauseMs = 10;
        glFinish();
        SDL_Delay(pauseMs);
        return;
    }
    SDL_GL_SwapWindow(context->Window());
    Finished("presenting");
}

void Device::Clear(bool target, bool depth, bool stencil, std::uint32_t colour, float depthValue,
                   std::uint32_t stencilValue) {
    if (lost || !context->MakeCurrent()) return;
    GLbitfield buffers = 0;
    if (target) {
        buffers |= GL_COLOR_BUFFER_BIT;
        const auto channel = [&](unsigned shift) { return static_cast<float>((colour >> shift) & 255) / 255.0F; };
        glClearColor(channel(16), channel(8), channel(0), channel(24));
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    }
    if (depth) {
        buffers |= GL_DEPTH_BUFFER_BIT;
        glClearDepth(depthValue);
        glDepthMask(GL_TRUE);
    }
    if (stencil && RenderTargetHasStencil()) {
        buffers |= GL_STENCIL_BUFFER_BIT;
        glClearStencil(static_cast<GLint>(stencilValue));
    }
    if (buffers == 0) return;
    glClear(buffers);
    states.ForgetMasks();
    Finished("clearing");
}

bool Device::RenderTargetHasStencil() const {
    return HasStencil(presentation.depthFormat) && context->Bits().stencil > 0;
}

std::uint32_t Device::GetRenderState(RenderState state) const {
    return state < RenderState::Count ? states.Get(state) : 0;
}

void Device::SetStageOperation(unsigned stage, StageOperation colour, StageOperation) {
    if (stage < stageCount) stageTextured[stage] = colour == StageOperation::TextureTimesDiffuse;
}

void Device::SetSampler(unsigned stage, const SamplerState& state) {
    if (stage < stageCount) samplers[stage] = state;
}

void Device::SetTransform(TransformKind kind, const DeviceMatrix& matrix) {
    transforms[static_cast<unsigned>(kind)] = matrix;
    transformsChanged = true;
}

DeviceMatrix Device::GetTransform(TransformKind kind) const {
    return transforms[static_cast<unsigned>(kind)];
}

void Device::SetViewport(const Viewport& wanted) {
    viewport = wanted;
    viewportChanged = true;
}

std::uint64_t Device::FreeTextureMemory() {
    if (!lost && context->MakeCurrent())
        if (const std::uint64_t said = DriverFreeMemory()) return said;
    const auto used = static_cast<std::uint64_t>(std::max<std::int64_t>(shared->TextureBytes(), 0));
    return memoryAtStart - std::min(memoryAtStart, used);
}

DeviceResult Device::CreateTexture(const TextureRequest& request, std::unique_ptr<DeviceTexture>& out) {
    return Texture::Make(shared, limits, request, out);
}

DeviceResult Device::CreateVertexBuffer(std::size_t bytes, bool dynamic, bool, std::unique_ptr<DeviceBuffer>& out) {
    if (bytes == 0) return DeviceResult::InvalidCall;
    if (bytes > caps::bufferBytes) return DeviceResult::OutOfVideoMemory;
    try {
        out = std::make_unique<Buffer>(shared, bytes, dynamic);
    } catch (const std::bad_alloc&) {
        return DeviceResult::OutOfMemory;
    }
    return DeviceResult::Ok;
}

DeviceResult Device::CreateIndexBuffer(std::size_t bytes, bool dynamic, bool writeOnly,
                                       std::unique_ptr<DeviceBuffer>& out) {
    return CreateVertexBuffer(bytes, dynamic, writeOnly, out);
}

std::unique_ptr<VertexLayout> Device::CreateVertexLayout(const std::vector<VertexElement>& elements) {
    for (const VertexElement& element : elements)
        if (element.type > VertexType::PackedColour || element.use > VertexUse::TextureCoordinates) return nullptr;
    return elements.empty() ? nullptr : std::make_unique<Layout>(shared, elements);
}

std::unique_ptr<DeviceShader> Device::CreateShader(const CompiledShader& shader) {
    // Off the device's thread or while lost it is only seen at the first draw whether the card takes it.
    if (!lost && context->IsCurrent() && !CanCompile(shader)) return nullptr;
    return std::make_unique<Shader>(shared, shader);
}

void Device::SetTexture(unsigned stage, DeviceTexture* texture) {
    if (stage < stageCount) shared->bindings.textures[stage] = static_cast<Texture*>(texture);
}

void Device::SetVertexLayout(VertexLayout* layout) {
    shared->bindings.layout = static_cast<Layout*>(layout);
}

void Device::SetVertexBuffer(DeviceBuffer* buffer, unsigned stride) {
    shared->bindings.vertexBuffer = static_cast<Buffer*>(buffer);
    shared->bindings.stride = stride;
}

void Device::SetIndexBuffer(DeviceBuffer* buffer) {
    shared->bindings.indexBuffer = static_cast<Buffer*>(buffer);
}
void Device::SetVertexShader(DeviceShader* shader) {
    shared->bindings.vertexShader = static_cast<Shader*>(shader);
}
void Device::SetFragmentShader(DeviceShader* shader) {
    shared->bindings.fragmentShader = static_cast<Shader*>(shader);
}

bool Device::ReadBackBuffer(std::vector<std::uint32_t>& argb, unsigned& width, unsigned& height) {
    if (lost || !context->MakeCurrent()) return false;
    width = presentation.backBufferWidth;
    height = presentation.backBufferHeight;
    argb.resize(std::size_t(width) * height);
    glReadPixels(0, rowOffset, static_cast<GLsizei>(width), static_cast<GLsizei>(height), GL_BGRA,
                 GL_UNSIGNED_INT_8_8_8_8_REV, argb.data());
    // OpenGL's first row is the lowest.
    for (unsigned row = 0; row < height / 2; ++row) {
        const auto upper = argb.begin() + static_cast<std::ptrdiff_t>(std::size_t(row) * width);
        const auto lower = argb.begin() + static_cast<std::ptrdiff_t>(std::size_t(height - 1 - row) * width);
        std::swap_ranges(upper, upper + width, lower);
    }
    return CheckErrors("reading the back buffer");
}

void Device::Finished(const char* place) {
    if (ChecksEachDraw()) CheckErrors(place);
}

}  // namespace platform::gl
