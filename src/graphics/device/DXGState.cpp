#include "graphics/device/DXGState.h"

#include <algorithm>

#include "graphics/device/DXGFoundation.h"
#include "platform/GraphicsDevice.h"

namespace DXG {

namespace {

using platform::RenderState;
using platform::TransformKind;

constexpr unsigned stageCount = 8;
constexpr std::uint32_t allChannels = 0xF;

// The device's word for a foundation state and its value when on and off.
struct StateRow {
    RenderState state;
    std::uint32_t on;
    std::uint32_t off;
};
template <typename Enumeration>
constexpr std::uint32_t Number(Enumeration value) {
    return static_cast<std::uint32_t>(value);
}
constexpr StateRow stateRows[] = {
    {RenderState::DepthTest, Number(platform::DepthMode::On), Number(platform::DepthMode::Off)},
    {RenderState::DepthWrite, 1, 0},
    {RenderState::AlphaBlend, 1, 0},
    {RenderState::AlphaTest, 1, 0},
    {RenderState::Stencil, 1, 0},
    {RenderState::Lighting, 1, 0},
    {RenderState::Fill, Number(platform::FillMode::Wireframe), Number(platform::FillMode::Solid)},
    {RenderState::ColourWrite, allChannels, 0},
    {RenderState::TwoSidedStencil, 1, 0},
};

void SetDeviceState(RenderState state, std::uint32_t value) {
    if (platform::GraphicsDevice* device = DeviceOrNull()) device->SetRenderState(state, value);
}

// The codes are in the order of platform::CompareFunction; an unknown one passes everything.
std::uint32_t CompareOf(unsigned code) {
    return code <= Number(platform::CompareFunction::GreaterEqual) ? code : Number(platform::CompareFunction::Always);
}

// The codes are in the order of platform::BlendFactor.
std::uint32_t BlendOf(unsigned code) {
    return std::min(code, Number(platform::BlendFactor::SourceAlphaSaturated));
}

void SetDeviceTransform(TransformKind kind, const Mat4& matrix) {
    if (platform::GraphicsDevice* device = DeviceOrNull()) device->SetTransform(kind, matrix.m);
}

Mat4 DeviceTransform(TransformKind kind) {
    const platform::GraphicsDevice* device = DeviceOrNull();
    return device ? Mat4{device->GetTransform(kind)} : Identity();
}

}  // namespace

void SetState(unsigned state, bool on) {
    if (state >= std::size(stateRows)) return;
    SetDeviceState(stateRows[state].state, on ? stateRows[state].on : stateRows[state].off);
}

bool GetState(unsigned state) {
    const platform::GraphicsDevice* device = DeviceOrNull();
    if (!device || state >= std::size(stateRows)) return false;
    return device->GetRenderState(stateRows[state].state) == stateRows[state].on;
}

void SetDepthFunction(unsigned function) {
    SetDeviceState(RenderState::DepthFunction, CompareOf(function));
}
void SetAlphaFunction(unsigned function) {
    SetDeviceState(RenderState::AlphaFunction, CompareOf(function));
}

void SetAlphaReference(float reference) {
    SetDeviceState(RenderState::AlphaReference,
                   reference > 0.0F ? static_cast<std::uint32_t>(std::min(reference, 1.0F) * 255.0F) : 0);
}

void SetBlend(unsigned source, unsigned destination) {
    SetDeviceState(RenderState::BlendSource, BlendOf(source));
    SetDeviceState(RenderState::BlendDestination, BlendOf(destination));
}

void SetCullMode(unsigned mode) {
    platform::CullMode cull = platform::CullMode::None;
    if (mode == 0)
        cull = platform::CullMode::CounterClockwise;
    else if (mode == 1)
        cull = platform::CullMode::Clockwise;
    SetDeviceState(RenderState::Cull, Number(cull));
}

unsigned GetCullMode() {
    const platform::GraphicsDevice* device = DeviceOrNull();
    const std::uint32_t cull = device ? device->GetRenderState(RenderState::Cull) : 0;
    if (cull == Number(platform::CullMode::CounterClockwise)) return 0;
    return cull == Number(platform::CullMode::None) ? 2 : 1;
}

void Clear(std::uint32_t colour, bool target, bool depth, bool stencilToo, std::uint32_t stencilValue) {
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device || IsDeviceLost()) return;
    const bool clearStencil = stencilToo && UsesStencil() && device->RenderTargetHasStencil();
    if (target || depth || clearStencil) device->Clear(target, depth, clearStencil, colour, 1.0F, stencilValue);
}

void SetViewport(int x, int y, int width, int height) {
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device) return;
    platform::Viewport viewport;
    viewport.x = static_cast<unsigned>(std::max(x, 0));
    viewport.y = static_cast<unsigned>(std::max(y, 0));
    viewport.width = static_cast<unsigned>(std::max(width, 0));
    viewport.height = static_cast<unsigned>(std::max(height, 0));
    device->SetViewport(viewport);
}

void GetViewport(int& x, int& y, int& width, int& height) {
    const platform::GraphicsDevice* device = DeviceOrNull();
    const platform::Viewport viewport = device ? device->GetViewport() : platform::Viewport();
    x = static_cast<int>(viewport.x);
    y = static_cast<int>(viewport.y);
    width = static_cast<int>(viewport.width);
    height = static_cast<int>(viewport.height);
}

void SetViewportToBackBuffer() {
    if (!DeviceOrNull()) return;
    SetViewport(0, 0, static_cast<int>(GetSetup().width), static_cast<int>(GetSetup().height));
}

void SetWorld(const Mat4& world) {
    SetDeviceTransform(TransformKind::World, Transpose(world));
}
void SetView(const Mat4& view) {
    SetDeviceTransform(TransformKind::View, Transpose(view));
}
void SetProjection(const Mat4& projection) {
    SetDeviceTransform(TransformKind::Projection, projection);
}
Mat4 GetWorld() {
    return Transpose(DeviceTransform(TransformKind::World));
}
Mat4 GetView() {
    return Transpose(DeviceTransform(TransformKind::View));
}
Mat4 GetProjection() {
    return DeviceTransform(TransformKind::Projection);
}

void Set2D(int x, int y, int width, int height) {
    const auto left = static_cast<float>(x);
    const auto top = static_cast<float>(y);
    const auto across = static_cast<float>(std::max(width, 1));
    const auto down = static_cast<float>(std::max(height, 1));
    SetWorld(Identity());
    SetView(Identity());
    Mat4 projection = Identity();
    projection(0, 0) = 2.0F / across;
    projection(1, 1) = -2.0F / down;
    projection(2, 2) = -1.0F;
    projection(3, 0) = -(2.0F * left + across) / across;
    projection(3, 1) = (2.0F * top + down) / down;
    SetProjection(projection);
    SetViewport(x, y, width, height);
}

void Set2DWholeBackBuffer() {
    if (!DeviceOrNull()) return;
    Set2D(0, 0, static_cast<int>(GetSetup().width), static_cast<int>(GetSetup().height));
}

void UnbindShaders() {
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device) return;
    device->SetVertexShader(nullptr);
    device->SetFragmentShader(nullptr);
}

void UnbindTexture(unsigned stage) {
    if (platform::GraphicsDevice* device = DeviceOrNull()) device->SetTexture(stage, nullptr);
}

void ApplyDefaultStates() {
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device || IsDeviceLost()) return;
    using platform::StageOperation;
    SetDeviceState(RenderState::Clipping, 1);
    SetDeviceState(RenderState::Shade, Number(platform::ShadeMode::Gouraud));
    device->SetStageOperation(0, StageOperation::TextureTimesDiffuse, StageOperation::TextureTimesDiffuse);
    for (unsigned stage = 1; stage < stageCount; ++stage)
        device->SetStageOperation(stage, StageOperation::Disable, StageOperation::Disable);
    for (const State on : {depthTest, depthWrite, alphaBlend, alphaTest})
        SetState(on, true);
    for (const State off : {stencil, lighting, wireframe})
        SetState(off, false);
    SetState(colourWrite, true);
    SetCullMode(0);
    SetAlphaReference(0.0F);
    SetAlphaFunction(3);
    SetDepthFunction(5);
    SetBlend(4, 5);
    SetWorld(Identity());
    SetView(Identity());
    SetProjection(Identity());
    SetViewportToBackBuffer();
}

}  // namespace DXG
