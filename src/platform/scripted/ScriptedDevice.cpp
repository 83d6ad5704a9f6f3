#include "platform/scripted/ScriptedDevice.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <utility>

#include "platform/SystemQuery.h"

namespace platform {

namespace {

// One recorded line: the words divided by spaces.
template <typename... Words>
std::string Line(const Words&... words) {
    std::ostringstream line;
    const char* divider = "";
    ((line << divider << words, divider = " "), ...);
    return line.str();
}

bool Holds(const std::vector<PixelFormat>& formats, PixelFormat format) {
    return std::find(formats.begin(), formats.end(), format) != formats.end();
}

unsigned VerticesOf(Primitive primitive, unsigned primitiveCount) {
    switch (primitive) {
        case Primitive::Points:
            return primitiveCount;
        case Primitive::Lines:
            return 2 * primitiveCount;
        case Primitive::Triangles:
            return 3 * primitiveCount;
        case Primitive::TriangleFan:
            return primitiveCount + 2;
    }
    return 0;
}

std::unique_ptr<GraphicsInterface> MakeScriptedInterface() {
    ScriptedGraphics& graphics = ScriptedGraphics::Default();
    graphics.Record("CreateGraphicsInterface");
    if (!graphics.script.hasInterface) return nullptr;
    return std::make_unique<ScriptedInterface>(graphics);
}

unsigned ScriptedDesktopBits() {
    return ScriptedGraphics::Default().script.desktopBits;
}

template <typename Number>
Number Fetch(const std::vector<unsigned char>& bytes, std::size_t offset) {
    Number number{};
    if (offset + sizeof number <= bytes.size()) std::memcpy(&number, bytes.data() + offset, sizeof number);
    return number;
}

}  // namespace

DeviceScript::DeviceScript() {
    identity.description = "Scripted card";
    identity.driverVersionHigh = 0x0006000FU;
    capabilities.hardwareTransform = true;
    capabilities.pixelShaderMajor = 2;
    capabilities.vertexShaderMajor = 2;
    capabilities.cubeMaps = true;
    capabilities.maxTextureWidth = 4096;
    capabilities.maxTextureHeight = 2048;
    capabilities.volumeTextures = true;
    capabilities.maxVolumeExtent = 512;
    capabilities.maxStreams = 16;
    capabilities.vertexDeclarations = true;
    capabilities.maxRenderTargets = 4;
}

float ScriptedDraw::FloatAt(unsigned vertex, unsigned offset) const {
    return Fetch<float>(vertices, std::size_t{vertex} * stride + offset);
}
std::uint32_t ScriptedDraw::WordAt(unsigned vertex, unsigned offset) const {
    return Fetch<std::uint32_t>(vertices, std::size_t{vertex} * stride + offset);
}

ScriptedGraphics& ScriptedGraphics::Default() {
    static ScriptedGraphics* graphics = new ScriptedGraphics;  // outlives every static handle
    return *graphics;
}

ScriptedGraphics& ScriptedGraphics::Start() {
    ScriptedGraphics& graphics = Default();
    ScriptedDevice* live = graphics.device;
    const int objects = graphics.liveObjects;
    graphics = ScriptedGraphics();
    graphics.device = live;
    graphics.liveObjects = objects;
    SetGraphicsInterfaceFactory(MakeScriptedInterface);
    SetDesktopBitsPerPixelQuery(ScriptedDesktopBits);
    return graphics;
}

std::vector<std::string> ScriptedGraphics::CallsNamed(const std::string& name) const {
    std::vector<std::string> named;
    for (const std::string& call : calls)
        if (call == name || call.starts_with(name + " ")) named.push_back(call);
    return named;
}

bool ScriptedGraphics::Called(const std::string& line) const {
    return std::find(calls.begin(), calls.end(), line) != calls.end();
}

void ScriptedGraphics::ForgetCalls() {
    calls.clear();
    draws.clear();
}

DeviceResult ScriptedGraphics::Next(std::deque<DeviceResult>& queue) {
    if (queue.empty()) return DeviceResult::Ok;
    const DeviceResult answer = queue.front();
    queue.pop_front();
    return answer;
}

bool ScriptedWindow::TakeMessage(WindowMessage& out) {
    if (waiting.empty()) return false;
    out = waiting.front();
    waiting.pop_front();
    return true;
}

void ScriptedWindow::PostQuit(int code) {
    WindowMessage quit;
    quit.kind = MessageKind::Quit;
    quit.code = code;
    waiting.push_back(quit);
}

bool ScriptedInterface::ReadIdentity(unsigned, AdapterIdentity& out) {
    if (graphics.script.hasIdentity) out = graphics.script.identity;
    return graphics.script.hasIdentity;
}

bool ScriptedInterface::ReadCapabilities(unsigned, DeviceCapabilities& out) {
    if (graphics.script.hasCapabilities) out = graphics.script.capabilities;
    return graphics.script.hasCapabilities;
}

bool ScriptedInterface::CheckDeviceType(unsigned, PixelFormat display, PixelFormat backBuffer, bool windowed) {
    graphics.Record(Line("CheckDeviceType", NameOf(display), NameOf(backBuffer), windowed));
    return Holds(graphics.script.displayFormats, display);
}

bool ScriptedInterface::CheckDepthFormat(unsigned, PixelFormat display, PixelFormat depth) {
    graphics.Record(Line("CheckDepthFormat", NameOf(display), NameOf(depth)));
    return Holds(graphics.script.depthFormats, depth);
}

bool ScriptedInterface::CheckTextureFormat(unsigned, PixelFormat display, PixelFormat texture) {
    graphics.Record(Line("CheckTextureFormat", NameOf(display), NameOf(texture)));
    return Holds(graphics.script.textureFormats, texture);
}

DeviceResult ScriptedInterface::CreateDevice(unsigned adapter, Window&, VertexProcessing processing, bool multithreaded,
                                             PresentParameters& parameters, std::unique_ptr<GraphicsDevice>& out) {
    graphics.Record(Line("CreateDevice", adapter, static_cast<int>(processing), multithreaded,
                         NameOf(parameters.backBufferFormat), NameOf(parameters.depthFormat),
                         parameters.backBufferCount));
    graphics.lastParameters = parameters;
    graphics.lastProcessing = processing;
    const DeviceResult answer = ScriptedGraphics::Next(graphics.script.createDevice);
    if (answer == DeviceResult::Ok) out = std::make_unique<ScriptedDevice>(graphics, parameters);
    return answer;
}

ScriptedDevice::ScriptedDevice(ScriptedGraphics& recorder, const PresentParameters& parameters) : graphics(recorder) {
    if (graphics.device) graphics.Fault("second device made");
    graphics.device = this;
    current.viewport.width = parameters.backBufferWidth;
    current.viewport.height = parameters.backBufferHeight;
}

ScriptedDevice::~ScriptedDevice() {
    graphics.Record("DestroyDevice");
    if (!liveObjects.empty()) graphics.Fault(Line("device destroyed before", liveObjects.size(), "objects"));
    graphics.device = nullptr;
}

DeviceResult ScriptedDevice::TestCooperativeLevel() {
    return ScriptedGraphics::Next(graphics.script.cooperativeLevel);
}

DeviceResult ScriptedDevice::Reset(PresentParameters& parameters) {
    graphics.Record("Reset");
    graphics.lastParameters = parameters;
    return ScriptedGraphics::Next(graphics.script.reset);
}

DeviceResult ScriptedDevice::BeginScene() {
    graphics.Record("BeginScene");
    if (inScene) graphics.Fault("scene begun twice");
    const DeviceResult answer = ScriptedGraphics::Next(graphics.script.beginScene);
    inScene = answer == DeviceResult::Ok;
    return answer;
}

void ScriptedDevice::EndScene() {
    graphics.Record("EndScene");
    if (!inScene) graphics.Fault("scene ended outside one");
    inScene = false;
}

void ScriptedDevice::Present() {
    graphics.Record("Present");
}

void ScriptedDevice::Clear(bool target, bool depth, bool stencil, std::uint32_t colour, float depthValue,
                           std::uint32_t stencilValue) {
    graphics.Record(Line("Clear", target, depth, stencil, colour, depthValue, stencilValue));
}

void ScriptedDevice::SetRenderState(RenderState state, std::uint32_t value) {
    graphics.Record(Line("SetRenderState", NameOf(state), value));
    current.states.at(static_cast<std::size_t>(state)) = value;
}

std::uint32_t ScriptedDevice::GetRenderState(RenderState state) const {
    return current.State(state);
}

void ScriptedDevice::SetStageOperation(unsigned stage, StageOperation colour, StageOperation alpha) {
    graphics.Record(Line("SetStageOperation", stage, static_cast<int>(colour), static_cast<int>(alpha)));
    colourOperations.at(stage) = colour;
    alphaOperations.at(stage) = alpha;
}

void ScriptedDevice::SetSampler(unsigned stage, const SamplerState& state) {
    graphics.Record(Line("SetSampler", stage, static_cast<int>(state.minify), static_cast<int>(state.u),
                         static_cast<int>(state.v)));
    samplers.at(stage) = state;
}

void ScriptedDevice::SetTransform(TransformKind kind, const DeviceMatrix& matrix) {
    graphics.Record(Line("SetTransform", static_cast<int>(kind)));
    current.transforms.at(static_cast<std::size_t>(kind)) = matrix;
}

DeviceMatrix ScriptedDevice::GetTransform(TransformKind kind) const {
    return current.transforms.at(static_cast<std::size_t>(kind));
}

void ScriptedDevice::SetViewport(const Viewport& viewport) {
    graphics.Record(Line("SetViewport", viewport.x, viewport.y, viewport.width, viewport.height));
    current.viewport = viewport;
}

DeviceResult ScriptedDevice::CreateTexture(const TextureRequest& request, std::unique_ptr<DeviceTexture>& out) {
    graphics.Record(Line("CreateTexture", static_cast<int>(request.kind), request.width, request.height, request.depth,
                         request.levels, NameOf(request.format)));
    const DeviceResult answer = ScriptedGraphics::Next(graphics.script.createTexture);
    if (answer != DeviceResult::Ok) return answer;
    const PixelFormat given = graphics.script.textureFormatGiven;
    out = std::make_unique<ScriptedTexture>(this, request, given == PixelFormat::Unknown ? request.format : given);
    return answer;
}

DeviceResult ScriptedDevice::MakeBuffer(const char* call, std::deque<DeviceResult>& answers, std::size_t bytes,
                                        bool dynamic, bool writeOnly, std::unique_ptr<DeviceBuffer>& out) {
    graphics.Record(Line(call, bytes, dynamic, writeOnly));
    if (bytes == 0) return DeviceResult::InvalidCall;  // as real devices do
    const DeviceResult answer = ScriptedGraphics::Next(answers);
    if (answer == DeviceResult::Ok) out = std::make_unique<ScriptedBuffer>(this, bytes, dynamic, writeOnly);
    return answer;
}

DeviceResult ScriptedDevice::CreateVertexBuffer(std::size_t bytes, bool dynamic, bool writeOnly,
                                                std::unique_ptr<DeviceBuffer>& out) {
    return MakeBuffer("CreateVertexBuffer", graphics.script.createVertexBuffer, bytes, dynamic, writeOnly, out);
}

DeviceResult ScriptedDevice::CreateIndexBuffer(std::size_t bytes, bool dynamic, bool writeOnly,
                                               std::unique_ptr<DeviceBuffer>& out) {
    return MakeBuffer("CreateIndexBuffer", graphics.script.createIndexBuffer, bytes, dynamic, writeOnly, out);
}

std::unique_ptr<VertexLayout> ScriptedDevice::CreateVertexLayout(const std::vector<VertexElement>& elements) {
    graphics.Record(Line("CreateVertexLayout", elements.size()));
    if (!graphics.script.makesLayouts) return nullptr;
    return std::make_unique<ScriptedLayout>(this, elements);
}

std::unique_ptr<DeviceShader> ScriptedDevice::CreateShader(const CompiledShader& shader) {
    graphics.Record(Line("CreateShader", shader.profile));
    const std::vector<std::string>& refused = graphics.script.refusedProfiles;
    if (std::find(refused.begin(), refused.end(), shader.profile) != refused.end()) return nullptr;
    return std::make_unique<ScriptedShader>(this, shader);
}

void ScriptedDevice::SetTexture(unsigned stage, DeviceTexture* texture) {
    graphics.Record(Line("SetTexture", stage, texture ? "texture" : "none"));
    current.textures.at(stage) = texture;
}

void ScriptedDevice::SetVertexLayout(VertexLayout* toBind) {
    graphics.Record(Line("SetVertexLayout", toBind ? "layout" : "none"));
    layout = static_cast<ScriptedLayout*>(toBind);
    current.layout = layout ? layout->elements : std::vector<VertexElement>();
}

void ScriptedDevice::SetVertexBuffer(DeviceBuffer* buffer, unsigned stride) {
    graphics.Record(Line("SetVertexBuffer", buffer ? "buffer" : "none", stride));
    vertexBuffer = static_cast<ScriptedBuffer*>(buffer);
    current.stride = stride;
}

void ScriptedDevice::SetIndexBuffer(DeviceBuffer* buffer) {
    graphics.Record(Line("SetIndexBuffer", buffer ? "buffer" : "none"));
    indexBuffer = static_cast<ScriptedBuffer*>(buffer);
}

void ScriptedDevice::SetVertexShader(DeviceShader* shader) {
    graphics.Record(Line("SetVertexShader", shader ? "shader" : "none"));
    current.vertexShader = shader;
}

void ScriptedDevice::SetFragmentShader(DeviceShader* shader) {
    graphics.Record(Line("SetFragmentShader", shader ? "shader" : "none"));
    current.fragmentShader = shader;
}

void ScriptedDevice::RecordDraw(ScriptedDraw draw) {
    if (!inScene) graphics.Fault("draw outside a scene");
    if (!draw.fromMemory && vertexBuffer) draw.vertices = vertexBuffer->bytes;
    if (!draw.fromMemory && !vertexBuffer) graphics.Fault("draw without a vertex buffer");
    if (draw.indexed && !indexBuffer) graphics.Fault("draw without an index buffer");
    graphics.draws.push_back(std::move(draw));
}

void ScriptedDevice::Draw(Primitive primitive, unsigned firstVertex, unsigned primitiveCount) {
    graphics.Record(Line("Draw", NameOf(primitive), firstVertex, primitiveCount));
    ScriptedDraw draw = current;
    draw.primitive = primitive;
    draw.firstVertex = firstVertex;
    draw.primitiveCount = primitiveCount;
    RecordDraw(std::move(draw));
}

void ScriptedDevice::DrawIndexed(Primitive primitive, unsigned vertexCount, unsigned firstIndex,
                                 unsigned primitiveCount) {
    graphics.Record(Line("DrawIndexed", NameOf(primitive), vertexCount, firstIndex, primitiveCount));
    ScriptedDraw draw = current;
    draw.primitive = primitive;
    draw.indexed = true;
    draw.vertexCount = vertexCount;
    draw.firstIndex = firstIndex;
    draw.primitiveCount = primitiveCount;
    RecordDraw(std::move(draw));
}

void ScriptedDevice::DrawFromMemory(Primitive primitive, unsigned primitiveCount, const void* vertices,
                                    unsigned stride) {
    graphics.Record(Line("DrawFromMemory", NameOf(primitive), primitiveCount, stride));
    ScriptedDraw draw = current;
    draw.primitive = primitive;
    draw.fromMemory = true;
    draw.vertexCount = VerticesOf(primitive, primitiveCount);
    draw.primitiveCount = primitiveCount;
    draw.stride = stride;
    const auto* bytes = static_cast<const unsigned char*>(vertices);
    draw.vertices.assign(bytes, bytes + std::size_t{draw.vertexCount} * stride);
    RecordDraw(std::move(draw));
}

bool ScriptedDevice::ReadBackBuffer(std::vector<std::uint32_t>& argb, unsigned& width, unsigned& height) {
    width = graphics.lastParameters.backBufferWidth;
    height = graphics.lastParameters.backBufferHeight;
    argb.assign(std::size_t{width} * height, 0xFF000000U);
    return true;
}

void ScriptedDevice::ProvokeLoss(unsigned tests) {
    graphics.script.cooperativeLevel.assign(tests, DeviceResult::DeviceLost);
    graphics.script.cooperativeLevel.push_back(DeviceResult::DeviceNotReset);
}

}  // namespace platform
