#pragma once
// A graphics interface and device without a card: they answer what a test tells them and record each call.
//
//     platform::ScriptedGraphics& scripted = platform::ScriptedGraphics::Start();  // fresh, and registered as back end
//     scripted.script.createDevice = {platform::DeviceResult::NotAvailable};        // the first attempt fails
//     platform::ScriptedWindow window;
//     ... DXG::Init(&window, &setup) ...
//     EXPECT_EQ(scripted.CallsNamed("CreateDevice").size(), 2U);
//
// Single-threaded, as the real devices are.

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "platform/GraphicsDevice.h"
#include "platform/Window.h"

namespace platform {

class ScriptedDevice;
class ScriptedTexture;
class ScriptedBuffer;
class ScriptedLayout;
class ScriptedShader;

// What the interface and its devices answer. Queues are used up from the front; an empty queue answers Ok.
struct DeviceScript {
    bool hasInterface = true;
    bool hasIdentity = true;
    bool hasCapabilities = true;
    AdapterIdentity identity;
    DeviceCapabilities capabilities;  // of a capable card
    std::vector<PixelFormat> displayFormats{PixelFormat::X8R8G8B8, PixelFormat::R5G6B5};
    std::vector<PixelFormat> depthFormats{PixelFormat::D24S8, PixelFormat::D24X8, PixelFormat::D16};
    std::vector<PixelFormat> textureFormats{PixelFormat::A8R8G8B8, PixelFormat::X8R8G8B8, PixelFormat::R5G6B5,
                                            PixelFormat::A4R4G4B4, PixelFormat::A8};
    unsigned desktopBits = 32;

    std::deque<DeviceResult> createDevice;
    std::deque<DeviceResult> cooperativeLevel;
    std::deque<DeviceResult> reset;
    std::deque<DeviceResult> beginScene;
    std::deque<DeviceResult> createTexture;
    std::deque<DeviceResult> createVertexBuffer;
    std::deque<DeviceResult> createIndexBuffer;

    std::uint64_t freeTextureMemory = 256ULL << 20;
    bool occlusionQueries = true;
    bool hasStencil = true;  // the render target
    std::string vertexProfile = "vs_2_0";
    std::string pixelProfile = "ps_2_0";

    PixelFormat textureFormatGiven = PixelFormat::Unknown;  // instead of the one asked for
    bool texturesLock = true;
    int refusedFace = -1;  // of cube locks
    bool buffersLock = true;
    bool makesLayouts = true;
    std::vector<std::string> refusedProfiles;  // CreateShader gives none for these

    DeviceScript();
};

// One draw with what it was drawn with.
struct ScriptedDraw {
    Primitive primitive = Primitive::Triangles;
    bool indexed = false;
    bool fromMemory = false;
    unsigned firstVertex = 0;
    unsigned vertexCount = 0;  // of indexed draws: the count given; of draws from memory: the vertices read
    unsigned firstIndex = 0;
    unsigned primitiveCount = 0;
    unsigned stride = 0;
    std::vector<unsigned char> vertices;  // the bytes read from memory or held by the bound vertex buffer
    std::vector<VertexElement> layout;
    std::array<const DeviceTexture*, 8> textures{};
    const DeviceShader* vertexShader = nullptr;
    const DeviceShader* fragmentShader = nullptr;
    std::array<std::uint32_t, static_cast<std::size_t>(RenderState::Count)> states{};
    std::array<DeviceMatrix, 3> transforms{};  // by TransformKind
    Viewport viewport;

    [[nodiscard]] std::uint32_t State(RenderState state) const { return states[static_cast<std::size_t>(state)]; }
    // One float of the vertex data.
    [[nodiscard]] float FloatAt(unsigned vertex, unsigned offset) const;
    [[nodiscard]] std::uint32_t WordAt(unsigned vertex, unsigned offset) const;
};

// Every recorded thing of the process. Faults are uses that a real device would not survive: objects that outlive their
// device or are destroyed while bound, unlocks without a lock, draws outside a scene.
class ScriptedGraphics {
  public:
    static ScriptedGraphics& Default();
    // Forgets everything, registers the factory and the desktop's depth, and returns the default.
    static ScriptedGraphics& Start();

    // Lines such as "SetRenderState AlphaBlend 1".
    std::vector<std::string> calls;
    std::vector<ScriptedDraw> draws;
    std::vector<std::string> faults;
    DeviceScript script;
    ScriptedDevice* device = nullptr;  // the live one, or null
    int liveObjects = 0;               // textures, buffers, layouts, shaders
    PresentParameters lastParameters;
    VertexProcessing lastProcessing = VertexProcessing::Software;

    // The calls whose first word is `name`.
    [[nodiscard]] std::vector<std::string> CallsNamed(const std::string& name) const;
    [[nodiscard]] bool Called(const std::string& line) const;
    void ForgetCalls();

    void Record(std::string line) { calls.push_back(std::move(line)); }
    void Fault(std::string line) { faults.push_back(std::move(line)); }
    static DeviceResult Next(std::deque<DeviceResult>& queue);
};

class ScriptedWindow : public Window {
  public:
    void Show() override {}
    bool TakeMessage(WindowMessage& out) override;
    void DefaultProcedure(const WindowMessage& message) override { left.push_back(message); }
    void PostQuit(int code) override;
    [[nodiscard]] bool CloseWanted() const override { return closeWanted; }
    [[nodiscard]] bool DisplayLost() const override { return false; }
    void ShowCursor(bool show) override { cursorShown = show; }
    [[nodiscard]] void* NativeHandle() override { return nullptr; }

    std::deque<WindowMessage> waiting;
    std::vector<WindowMessage> left;  // to the default procedure
    bool closeWanted = false;
    bool cursorShown = true;
};

class ScriptedTexture : public DeviceTexture {
  public:
    ScriptedTexture(ScriptedDevice* maker, const TextureRequest& asked, PixelFormat given);
    ~ScriptedTexture() override;
    [[nodiscard]] PixelFormat Format() const override { return request.format; }
    [[nodiscard]] unsigned Levels() const override { return request.levels; }
    [[nodiscard]] unsigned Width(unsigned level) const override;
    [[nodiscard]] unsigned Height(unsigned level) const override;
    bool Lock(unsigned level, unsigned face, bool readOnly, LockedTexels& out) override;
    void Unlock(unsigned level, unsigned face) override;

    // The texels of one level of one face, packed without gaps between slices; rows are padded by 4 bytes.
    [[nodiscard]] std::vector<unsigned char>& Texels(unsigned level, unsigned face);
    [[nodiscard]] std::size_t RowPitch(unsigned level) const;
    // Little-endian number of a texel's bytes.
    [[nodiscard]] std::uint32_t TexelAt(unsigned level, unsigned x, unsigned y, unsigned slice = 0);

    TextureRequest request;  // with the format given and the real number of levels
    bool lastLockReadOnly = false;
    int openLocks = 0;

  private:
    ScriptedDevice* device;
    std::vector<std::vector<unsigned char>> images;  // face by face, level by level
};

class ScriptedBuffer : public DeviceBuffer {
  public:
    ScriptedBuffer(ScriptedDevice* maker, std::size_t byteCount, bool dynamicUse, bool writeOnlyUse);
    ~ScriptedBuffer() override;
    void* Lock(bool discard) override;
    void Unlock() override;

    std::vector<unsigned char> bytes;
    bool dynamic;
    bool writeOnly;
    int discards = 0;
    int openLocks = 0;

  private:
    ScriptedDevice* device;
};

class ScriptedLayout : public VertexLayout {
  public:
    ScriptedLayout(ScriptedDevice* maker, std::vector<VertexElement> list);
    ~ScriptedLayout() override;
    std::vector<VertexElement> elements;

  private:
    ScriptedDevice* device;
};

class ScriptedShader : public DeviceShader {
  public:
    struct Value {
        std::vector<float> floats;
        bool transposed = false;
        int writes = 0;
    };
    ScriptedShader(ScriptedDevice* maker, const CompiledShader& from);
    ~ScriptedShader() override;
    [[nodiscard]] int FindConstant(const std::string& name) const override;
    void SetFloats(int constant, const float* values, std::size_t count) override;
    void SetVectors(int constant, const float (*values)[4], std::size_t count) override;
    void SetMatrix(int constant, const float values[16], bool transpose) override;

    CompiledShader compiled;
    std::map<std::string, Value> values;  // by constant name

  private:
    Value& Write(int constant, const float* first, std::size_t count);
    ScriptedDevice* device;
};

class ScriptedDevice : public GraphicsDevice {
  public:
    ScriptedDevice(ScriptedGraphics& recorder, const PresentParameters& parameters);
    ~ScriptedDevice() override;
    DeviceResult TestCooperativeLevel() override;
    DeviceResult Reset(PresentParameters& parameters) override;
    DeviceResult BeginScene() override;
    void EndScene() override;
    void Present() override;
    void Clear(bool target, bool depth, bool stencil, std::uint32_t colour, float depthValue,
               std::uint32_t stencilValue) override;
    [[nodiscard]] bool RenderTargetHasStencil() const override { return graphics.script.hasStencil; }

    void SetRenderState(RenderState state, std::uint32_t value) override;
    [[nodiscard]] std::uint32_t GetRenderState(RenderState state) const override;
    void SetStageOperation(unsigned stage, StageOperation colour, StageOperation alpha) override;
    void SetSampler(unsigned stage, const SamplerState& state) override;
    void SetTransform(TransformKind kind, const DeviceMatrix& matrix) override;
    [[nodiscard]] DeviceMatrix GetTransform(TransformKind kind) const override;
    void SetViewport(const Viewport& viewport) override;
    [[nodiscard]] Viewport GetViewport() const override { return current.viewport; }

    [[nodiscard]] std::uint64_t FreeTextureMemory() override { return graphics.script.freeTextureMemory; }
    [[nodiscard]] bool SupportsOcclusionQuery() override { return graphics.script.occlusionQueries; }
    [[nodiscard]] std::string VertexProfile() const override { return graphics.script.vertexProfile; }
    [[nodiscard]] std::string PixelProfile() const override { return graphics.script.pixelProfile; }

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
    // Black, of the back buffer's size.
    bool ReadBackBuffer(std::vector<std::uint32_t>& argb, unsigned& width, unsigned& height) override;
    void ProvokeLoss(unsigned tests) override;

    ScriptedGraphics& graphics;
    ScriptedDraw current;  // everything bound now
    std::array<SamplerState, 8> samplers{};
    std::array<StageOperation, 8> colourOperations{};
    std::array<StageOperation, 8> alphaOperations{};
    const ScriptedLayout* layout = nullptr;
    const ScriptedBuffer* vertexBuffer = nullptr;
    const ScriptedBuffer* indexBuffer = nullptr;
    bool inScene = false;
    std::vector<const void*> liveObjects;

  private:
    DeviceResult MakeBuffer(const char* call, std::deque<DeviceResult>& answers, std::size_t bytes, bool dynamic,
                            bool writeOnly, std::unique_ptr<DeviceBuffer>& out);
    void RecordDraw(ScriptedDraw draw);
};

class ScriptedInterface : public GraphicsInterface {
  public:
    explicit ScriptedInterface(ScriptedGraphics& recorder) : graphics(recorder) {}
    bool ReadIdentity(unsigned adapter, AdapterIdentity& out) override;
    bool ReadCapabilities(unsigned adapter, DeviceCapabilities& out) override;
    bool CheckDeviceType(unsigned adapter, PixelFormat display, PixelFormat backBuffer, bool windowed) override;
    bool CheckDepthFormat(unsigned adapter, PixelFormat display, PixelFormat depth) override;
    bool CheckTextureFormat(unsigned adapter, PixelFormat display, PixelFormat texture) override;
    DeviceResult CreateDevice(unsigned adapter, Window& window, VertexProcessing processing, bool multithreaded,
                              PresentParameters& parameters, std::unique_ptr<GraphicsDevice>& out) override;

  private:
    ScriptedGraphics& graphics;
};

// The enumeration's own word, as the recorded calls show it.
const char* NameOf(PixelFormat format);
const char* NameOf(RenderState state);
const char* NameOf(Primitive primitive);

}  // namespace platform
