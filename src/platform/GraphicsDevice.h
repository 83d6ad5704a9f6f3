#pragma once
// The graphics card as the program sees it: an interface that examines adapters and creates devices, a device with
// plain states, and the objects made by it.
//
// Conventions, settled inside each back end: pixels are A8R8G8B8 words (alpha in bits 24-31); the depth range is 0 to
// 1; y points down on screen with row 0 at the top, in textures too; a face is front when its corners run clockwise on
// screen; a vertex at a whole pixel position lies on that pixel's top left corner minus half a pixel, as Direct3D 9 has
// it; matrices are 16 floats in row-vector layout (translation in elements 12 to 14). All calls come from one thread at
// a time.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/ShaderCompiler.h"

namespace platform {

class Window;

enum class PixelFormat {
    Unknown,
    R8G8B8,
    A8R8G8B8,
    X8R8G8B8,
    R5G6B5,
    X1R5G5B5,
    A1R5G5B5,
    A4R4G4B4,
    R3G3B2,
    A8,
    A8R3G3B2,
    X4R4G4B4,
    A2B10G10R10,
    A8B8G8R8,
    X8B8G8R8,
    A2R10G10B10,
    A16B16G16R16,
    P8,
    L8,
    D16,
    D32,
    D15S1,
    D24S8,
    D24X8,
};

enum class DeviceResult {
    Ok,
    InvalidCall,
    NotAvailable,
    OutOfVideoMemory,
    OutOfMemory,
    InvalidData,
    DeviceLost,
    DeviceNotReset,
    DriverInternalError,
    Failed,
};

struct AdapterIdentity {
    std::string description;
    std::uint32_t vendorId = 0;
    std::uint32_t driverVersionHigh = 0;  // product in the high half, version in the low half
    std::uint32_t driverVersionLow = 0;   // sub-version, build
};

struct DeviceCapabilities {
    bool hardwareTransform = false;
    unsigned pixelShaderMajor = 0;
    unsigned vertexShaderMajor = 0;
    bool cubeMaps = false;
    unsigned maxTextureWidth = 0;
    unsigned maxTextureHeight = 0;
    bool volumeTextures = false;
    bool volumePowerOfTwoOnly = false;
    unsigned maxVolumeExtent = 0;
    unsigned maxStreams = 0;
    bool vertexDeclarations = false;
    unsigned maxRenderTargets = 0;
};

enum class VertexProcessing { Software, Mixed, Hardware };

struct PresentParameters {
    unsigned backBufferWidth = 0;
    unsigned backBufferHeight = 0;
    PixelFormat backBufferFormat = PixelFormat::Unknown;
    unsigned backBufferCount = 1;
    bool windowed = true;
    PixelFormat depthFormat = PixelFormat::Unknown;
    bool waitForRetrace = false;
};

enum class CompareFunction { Never, Always, Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual };
enum class BlendFactor {
    Zero,
    One,
    SourceColour,
    InverseSourceColour,
    SourceAlpha,
    InverseSourceAlpha,
    DestinationAlpha,
    InverseDestinationAlpha,
    DestinationColour,
    InverseDestinationColour,
    SourceAlphaSaturated,
};
enum class CullMode { None, Clockwise, CounterClockwise };  // which faces are dropped
enum class DepthMode { Off, On, UseW };
enum class FillMode { Point, Wireframe, Solid };
enum class ShadeMode { Flat, Gouraud };

// Device states; the value of each is its enumeration's number, a bool as 0 or 1, or as said.
enum class RenderState {
    DepthTest,  // DepthMode
    DepthWrite,
    AlphaBlend,
    AlphaTest,
    Stencil,
    Lighting,
    Fill,         // FillMode
    ColourWrite,  // bits 0-3: red, green, blue, alpha
    TwoSidedStencil,
    Clipping,
    Shade,           // ShadeMode
    Cull,            // CullMode
    AlphaReference,  // 0-255
    AlphaFunction,
    DepthFunction,  // CompareFunction
    BlendSource,
    BlendDestination,  // BlendFactor
    Count,
};

// Operation of a texture stage when no fragment shader is bound.
enum class StageOperation { Disable, TextureTimesDiffuse };

enum class TextureFilter { None, Point, Linear, Anisotropic };
enum class TextureAddress { Wrap, Clamp };
struct SamplerState {
    TextureFilter minify = TextureFilter::Point;
    TextureFilter magnify = TextureFilter::Point;
    TextureFilter mipmap = TextureFilter::Point;
    TextureAddress u = TextureAddress::Wrap;
    TextureAddress v = TextureAddress::Wrap;
    TextureAddress w = TextureAddress::Wrap;
};

enum class TransformKind { World, View, Projection };
using DeviceMatrix = std::array<float, 16>;

struct Viewport {
    unsigned x = 0;
    unsigned y = 0;
    unsigned width = 0;
    unsigned height = 0;
    float minDepth = 0.0F;
    float maxDepth = 1.0F;
};

enum class TextureKind { Plain, Cube, Volume };
struct TextureRequest {
    TextureKind kind = TextureKind::Plain;
    unsigned width = 0;
    unsigned height = 0;
    unsigned depth = 1;
    unsigned levels = 1;  // 0: the full chain
    PixelFormat format = PixelFormat::Unknown;
};

struct LockedTexels {
    void* data = nullptr;  // row 0 first
    std::size_t rowPitch = 0;
    std::size_t slicePitch = 0;
};

class DeviceTexture {
  public:
    virtual ~DeviceTexture() = default;
    [[nodiscard]] virtual PixelFormat Format() const = 0;  // what the device really gave
    [[nodiscard]] virtual unsigned Levels() const = 0;
    [[nodiscard]] virtual unsigned Width(unsigned level) const = 0;
    [[nodiscard]] virtual unsigned Height(unsigned level) const = 0;
    // CPU access to one level of one face (0 for plain and volume textures). A write lock's texels reach the device at
    // Unlock.
    virtual bool Lock(unsigned level, unsigned face, bool readOnly, LockedTexels& out) = 0;
    virtual void Unlock(unsigned level, unsigned face) = 0;
};

// A vertex or index buffer.
class DeviceBuffer {
  public:
    virtual ~DeviceBuffer() = default;
    // The whole buffer; null on failure. Discard lets a dynamic buffer forget its contents.
    virtual void* Lock(bool discard) = 0;
    virtual void Unlock() = 0;
};

enum class VertexType { Float1, Float2, Float3, Float4, PackedColour };
enum class VertexUse { Position, Normal, Colour, TextureCoordinates };
struct VertexElement {
    unsigned offset = 0;
    VertexType type = VertexType::Float1;
    VertexUse use = VertexUse::Position;
};
class VertexLayout {
  public:
    virtual ~VertexLayout() = default;
};

// One compiled stage with its constants. Handles are at least 0 and stay valid for the object's life; values are kept
// by the stage and reach the card with the next draw.
class DeviceShader {
  public:
    virtual ~DeviceShader() = default;
    // -1 when there is none of that name. "Name[0]" finds the array or matrix "Name" too.
    [[nodiscard]] virtual int FindConstant(const std::string& name) const = 0;
    virtual void SetFloats(int constant, const float* values, std::size_t count) = 0;
    virtual void SetVectors(int constant, const float (*values)[4], std::size_t count) = 0;
    // Plain: the shader's M[r][c] is values[4r + c]. Transposed: it is values[4c + r]. M[r] is a row in the source's
    // own terms, whatever the packing.
    virtual void SetMatrix(int constant, const float values[16], bool transpose) = 0;
};

enum class Primitive { Points, Lines, Triangles, TriangleFan };

class GraphicsDevice {
  public:
    virtual ~GraphicsDevice() = default;

    // Ok, DeviceLost (cannot be reset yet), DeviceNotReset (can be), or a failure.
    virtual DeviceResult TestCooperativeLevel() = 0;
    virtual DeviceResult Reset(PresentParameters& parameters) = 0;
    virtual DeviceResult BeginScene() = 0;
    virtual void EndScene() = 0;
    virtual void Present() = 0;
    // Of the whole render target. Colour A8R8G8B8.
    virtual void Clear(bool target, bool depth, bool stencil, std::uint32_t colour, float depthValue,
                       std::uint32_t stencilValue) = 0;
    [[nodiscard]] virtual bool RenderTargetHasStencil() const = 0;

    virtual void SetRenderState(RenderState state, std::uint32_t value) = 0;
    [[nodiscard]] virtual std::uint32_t GetRenderState(RenderState state) const = 0;
    virtual void SetStageOperation(unsigned stage, StageOperation colour, StageOperation alpha) = 0;
    virtual void SetSampler(unsigned stage, const SamplerState& state) = 0;
    virtual void SetTransform(TransformKind kind, const DeviceMatrix& matrix) = 0;
    [[nodiscard]] virtual DeviceMatrix GetTransform(TransformKind kind) const = 0;
    virtual void SetViewport(const Viewport& viewport) = 0;
    [[nodiscard]] virtual Viewport GetViewport() const = 0;

    [[nodiscard]] virtual std::uint64_t FreeTextureMemory() = 0;  // bytes, an estimate
    [[nodiscard]] virtual bool SupportsOcclusionQuery() = 0;
    [[nodiscard]] virtual std::string VertexProfile() const = 0;  // highest, such as "vs_3_0"
    [[nodiscard]] virtual std::string PixelProfile() const = 0;

    virtual DeviceResult CreateTexture(const TextureRequest& request, std::unique_ptr<DeviceTexture>& out) = 0;
    virtual DeviceResult CreateVertexBuffer(std::size_t bytes, bool dynamic, bool writeOnly,
                                            std::unique_ptr<DeviceBuffer>& out) = 0;
    virtual DeviceResult CreateIndexBuffer(std::size_t bytes, bool dynamic, bool writeOnly,
                                           std::unique_ptr<DeviceBuffer>& out) = 0;
    virtual std::unique_ptr<VertexLayout> CreateVertexLayout(const std::vector<VertexElement>& elements) = 0;
    // Null when the device cannot run it.
    virtual std::unique_ptr<DeviceShader> CreateShader(const CompiledShader& shader) = 0;

    virtual void SetTexture(unsigned stage, DeviceTexture* texture) = 0;
    virtual void SetVertexLayout(VertexLayout* layout) = 0;
    virtual void SetVertexBuffer(DeviceBuffer* buffer, unsigned stride) = 0;
    virtual void SetIndexBuffer(DeviceBuffer* buffer) = 0;
    virtual void SetVertexShader(DeviceShader* shader) = 0;  // null: fixed function
    virtual void SetFragmentShader(DeviceShader* shader) = 0;

    virtual void Draw(Primitive primitive, unsigned firstVertex, unsigned primitiveCount) = 0;
    // 16-bit indices from `firstIndex`, all below `vertexCount`.
    virtual void DrawIndexed(Primitive primitive, unsigned vertexCount, unsigned firstIndex,
                             unsigned primitiveCount) = 0;
    virtual void DrawFromMemory(Primitive primitive, unsigned primitiveCount, const void* vertices,
                                unsigned stride) = 0;

    // The back buffer as A8R8G8B8, row 0 at the top; false when it cannot be read.
    virtual bool ReadBackBuffer(std::vector<std::uint32_t>& argb, unsigned& width, unsigned& height) = 0;

    // Makes the device behave as lost for `tests` calls of TestCooperativeLevel, then as one that can be reset.
    virtual void ProvokeLoss(unsigned tests) = 0;
};

class GraphicsInterface {
  public:
    virtual ~GraphicsInterface() = default;
    virtual bool ReadIdentity(unsigned adapter, AdapterIdentity& out) = 0;
    virtual bool ReadCapabilities(unsigned adapter, DeviceCapabilities& out) = 0;
    virtual bool CheckDeviceType(unsigned adapter, PixelFormat display, PixelFormat backBuffer, bool windowed) = 0;
    virtual bool CheckDepthFormat(unsigned adapter, PixelFormat display, PixelFormat depth) = 0;
    virtual bool CheckTextureFormat(unsigned adapter, PixelFormat display, PixelFormat texture) = 0;
    // May adjust `parameters` to what it gave or could give.
    virtual DeviceResult CreateDevice(unsigned adapter, Window& window, VertexProcessing processing, bool multithreaded,
                                      PresentParameters& parameters, std::unique_ptr<GraphicsDevice>& out) = 0;
};

using GraphicsInterfaceFactory = std::unique_ptr<GraphicsInterface> (*)();
// Of the back end that was registered; null when there is none or its graphics library cannot be had.
std::unique_ptr<GraphicsInterface> CreateGraphicsInterface();
// Registers the back end (done by its program or a test); returns the one before.
GraphicsInterfaceFactory SetGraphicsInterfaceFactory(GraphicsInterfaceFactory factory);

// The native handle of the main window, set by whoever made it (null when it is gone). An interface asks its questions
// on it and hands what it made there to the device, instead of making a second window; without one it makes a hidden
// window for a while.
void SetMainNativeWindow(void* handle);
void* MainNativeWindow();

}  // namespace platform
