#include "graphics/device/DXGVert.h"

#include <algorithm>
#include <utility>

#include "diag/CThread.h"
#include "graphics/device/DXGFoundation.h"

namespace DXG {

namespace {

constexpr unsigned indexBytes = 2;

struct Declaration {
    VertexFormat format;
    std::unique_ptr<platform::VertexLayout> layout;
    unsigned stride = 0;
};

// The process-wide buffer state; it outlives every static handle.
struct Buffers {
    std::vector<Declaration> declarations;
    const VertexBufferRecord* boundVertices = nullptr;
    const IndexBufferRecord* boundIndices = nullptr;
    bool teardownRegistered = false;
    bool vertexHooksRegistered = false;
    bool indexHooksRegistered = false;
};

Buffers& TheBuffers() {
    static Buffers* buffers = new Buffers;
    return *buffers;
}

unsigned SizeOfType(std::uint32_t type) {
    constexpr unsigned sizes[] = {4, 8, 12, 16, 4};
    return type < std::size(sizes) ? sizes[type] : 0;
}

// The codes are in the order of platform::VertexType and platform::VertexUse. False, with a report, for others.
bool ElementsOf(const VertexFormat& format, std::vector<platform::VertexElement>& elements) {
    unsigned offset = 0;
    for (const VertexFormatElement& element : format) {
        if (element.type > static_cast<std::uint32_t>(platform::VertexType::PackedColour)) {
            WriteReport(errorLog, "Bad type found in vertex format.\n  -call stack:\n", "", false);
            return false;
        }
        if (element.use > static_cast<std::uint32_t>(platform::VertexUse::TextureCoordinates)) {
            WriteReport(errorLog, "Bad use found in vertex format.\n  -call stack:\n", "", false);
            return false;
        }
        elements.push_back(
            {offset, static_cast<platform::VertexType>(element.type), static_cast<platform::VertexUse>(element.use)});
        offset += SizeOfType(element.type);
    }
    return true;
}

void DropVertices(VertexBufferRecord& record) {
    if (TheBuffers().boundVertices == &record) {
        TheBuffers().boundVertices = nullptr;
        if (platform::GraphicsDevice* device = DeviceOrNull()) device->SetVertexBuffer(nullptr, 0);
    }
    record.api.buffer.reset();
    record.api.declaration = nullptr;
}

void DropIndices(IndexBufferRecord& record) {
    if (TheBuffers().boundIndices == &record) {
        TheBuffers().boundIndices = nullptr;
        if (platform::GraphicsDevice* device = DeviceOrNull()) device->SetIndexBuffer(nullptr);
    }
    record.api.buffer.reset();
}

// Device objects must not outlive their device. The records stay with their handles, which are told off when they go.
void DropAllObjects() {
    for (VertexBufferRecord* record : VertexBuffer::Records()) {
        record->api.wentWithDevice = record->api.wentWithDevice || record->api.buffer;
        DropVertices(*record);
    }
    for (IndexBufferRecord* record : IndexBuffer::Records()) {
        record->api.wentWithDevice = record->api.wentWithDevice || record->api.buffer;
        DropIndices(*record);
    }
    if (platform::GraphicsDevice* device = DeviceOrNull()) device->SetVertexLayout(nullptr);
    TheBuffers().declarations.clear();
}

void RegisterTeardown() {
    if (!TheBuffers().teardownRegistered) AddTeardownHook(DropAllObjects);
    TheBuffers().teardownRegistered = true;
}

void ReportVerticesLost() {
    errorLog.Write("Vertex Buffer Manager: handling device lost not done yet...\n");
}
void ReportVerticesRestored() {
    errorLog.Write("Vertex Buffer Manager: handling device restore not done yet...\n");
}
void ReportIndicesLost() {
    errorLog.Write("IndexBuffer::HandleDeviceLost not implemented yet...\n");
}
void ReportIndicesRestored() {
    errorLog.Write("IndexBuffer::HandleDeviceRestored not implemented yet...\n");
}

void RegisterHooks(bool& registered, void (*lost)(), void (*restored)()) {
    RegisterTeardown();
    if (registered) return;
    registered = true;
    AddReleaseHook(lost);
    AddRestoreHook(restored);
}

const char* VertexFailureOf(platform::DeviceResult result) {
    if (result == platform::DeviceResult::OutOfVideoMemory) return " (out of video memory)";
    if (result == platform::DeviceResult::OutOfMemory) return " (not enough system memory)";
    return "";
}

void ReportLateDestruction(const char* message) {
    ReportWithStack(std::string(message) + "  -AND it still thinks it has d3d resources.\n");
    errorLog.Write("Foolish globals are likely at fault.\n");
}

}  // namespace

unsigned StrideOf(const VertexFormat& format) {
    unsigned stride = 0;
    for (const VertexFormatElement& element : format)
        stride += SizeOfType(element.type);
    return stride;
}

platform::VertexLayout* DeclarationOf(const VertexFormat& format) {
    const ScopedLock held(GraphicsLock());
    for (const Declaration& known : TheBuffers().declarations)
        if (known.format == format) return known.layout.get();
    std::vector<platform::VertexElement> elements;
    if (!ElementsOf(format, elements)) return nullptr;
    platform::GraphicsDevice* device = DeviceOrNull();
    std::unique_ptr<platform::VertexLayout> layout = device ? device->CreateVertexLayout(elements) : nullptr;
    if (!layout) {
        WriteReport(errorLog, "Failed to create d3d vertex declaration.", "  -call stack:\n", false);
        return nullptr;
    }
    RegisterTeardown();
    TheBuffers().declarations.push_back({format, std::move(layout), StrideOf(format)});
    return TheBuffers().declarations.back().layout.get();
}

BufferLock::BufferLock(platform::DeviceBuffer* toLock, bool discard) : buffer(toLock) {
    const ScopedLock held(GraphicsLock());
    data = buffer ? buffer->Lock(discard) : nullptr;
}

BufferLock::~BufferLock() {
    Unlock();
}

BufferLock::BufferLock(BufferLock&& other) noexcept
    : buffer(std::exchange(other.buffer, nullptr)), data(std::exchange(other.data, nullptr)) {}

BufferLock& BufferLock::operator=(BufferLock&& other) noexcept {
    if (this == &other) return *this;
    Unlock();
    buffer = std::exchange(other.buffer, nullptr);
    data = std::exchange(other.data, nullptr);
    return *this;
}

void BufferLock::Unlock() {
    if (!data) return;
    const ScopedLock held(GraphicsLock());
    buffer->Unlock();
    data = nullptr;
    buffer = nullptr;
}

VertexBuffer::~VertexBuffer() {
    const ScopedLock held(GraphicsLock());
    if (Record() && !IsInitialized() && Record()->api.wentWithDevice)
        ReportLateDestruction("Bad: vertex buffer being destructed, but graphics is not inited.\n");
    SRFree();
}

VertexBuffer::VertexBuffer(const VertexBuffer& other) : SharedResource() {
    const ScopedLock held(GraphicsLock());
    CopyFrom(other);
}

VertexBuffer& VertexBuffer::operator=(const VertexBuffer& other) {
    const ScopedLock held(GraphicsLock());
    CopyFrom(other);
    return *this;
}

void VertexBuffer::Release() {
    const ScopedLock held(GraphicsLock());
    SRFree();
}

void VertexBuffer::ReleaseApi() {
    DropVertices(*Record());
}

bool VertexBuffer::Create(unsigned count, const VertexFormat& format, unsigned stride, bool dynamic, bool writeOnly) {
    const ScopedLock held(GraphicsLock());
    SRFree();
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device) {
        ReportMisuse(NotInitializedMessage("DXG::VertexBuffer::Create"));
        return false;
    }
    platform::VertexLayout* declaration = DeclarationOf(format);
    if (!declaration) return false;
    std::unique_ptr<platform::DeviceBuffer> buffer;
    const platform::DeviceResult result =
        device->CreateVertexBuffer(std::size_t{count} * stride, dynamic, writeOnly, buffer);
    if (result != platform::DeviceResult::Ok || !buffer) {
        WriteReport(errorLog, std::string("Failed to create vertex buffer") + VertexFailureOf(result),
                    "\n  -call made from:\n", true);
        return false;
    }
    RegisterHooks(TheBuffers().vertexHooksRegistered, ReportVerticesLost, ReportVerticesRestored);
    VertexBufferRecord& made = AllocateRecord();
    made.count = count;
    made.stride = stride;
    made.format = format;
    made.dynamic = dynamic;
    made.writeOnly = writeOnly;
    made.api.buffer = std::move(buffer);
    made.api.declaration = declaration;
    return true;
}

BufferLock VertexBuffer::Lock(bool discard) const {
    if (!Record()) {
        ReportMisuse("Warning: attempt to lock a non-allocated vertex buffer.\n");
        return {};
    }
    BufferLock lock(Record()->api.buffer.get(), discard && Record()->dynamic);
    if (lock) Record()->lockedOnce = true;
    return lock;
}

void VertexBuffer::Set() const {
    const VertexBufferRecord* toBind = Record();
    if (!toBind) return ReportWithStack("Warning: attempt to set a non-allocated vertex buffer as a stream source.\n");
    if (!toBind->lockedOnce)
        ReportWithStack("Warning: Vertex buffer set, but has never been locked before.  Data in it is invalid.\n");
    const ScopedLock held(GraphicsLock());
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device || !toBind->api.buffer) return;
    TheBuffers().boundVertices = toBind;
    device->SetVertexBuffer(toBind->api.buffer.get(), toBind->stride);
    device->SetVertexLayout(toBind->api.declaration);
}

IndexBuffer::~IndexBuffer() {
    const ScopedLock held(GraphicsLock());
    if (Record() && !IsInitialized() && Record()->api.wentWithDevice)
        ReportLateDestruction("Bad: index buffer being destructed, but graphics is not inited.\n");
    SRFree();
}

IndexBuffer::IndexBuffer(const IndexBuffer& other) : SharedResource() {
    const ScopedLock held(GraphicsLock());
    CopyFrom(other);
}

IndexBuffer& IndexBuffer::operator=(const IndexBuffer& other) {
    const ScopedLock held(GraphicsLock());
    CopyFrom(other);
    return *this;
}

void IndexBuffer::Release() {
    const ScopedLock held(GraphicsLock());
    SRFree();
}

void IndexBuffer::ReleaseApi() {
    DropIndices(*Record());
}

bool IndexBuffer::Create(unsigned count, bool dynamic, bool writeOnly) {
    const ScopedLock held(GraphicsLock());
    SRFree();
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device) {
        ReportMisuse(NotInitializedMessage("DXG::IndexBuffer::Create"));
        return false;
    }
    std::unique_ptr<platform::DeviceBuffer> buffer;
    if (device->CreateIndexBuffer(std::size_t{count} * indexBytes, dynamic, writeOnly, buffer) !=
            platform::DeviceResult::Ok ||
        !buffer) {
        WriteReport(errorLog, "Failed to create index buffer.\n  -call stack:\n", "", false);
        return false;
    }
    RegisterHooks(TheBuffers().indexHooksRegistered, ReportIndicesLost, ReportIndicesRestored);
    IndexBufferRecord& made = AllocateRecord();
    made.count = count;
    made.dynamic = dynamic;
    made.writeOnly = writeOnly;
    made.api.buffer = std::move(buffer);
    return true;
}

BufferLock IndexBuffer::Lock() const {
    if (!Record()) {
        ReportMisuse("Warning: attempt to lock a non-allocated index buffer.\n");
        return {};
    }
    BufferLock lock(Record()->api.buffer.get(), false);
    if (lock) Record()->lockedOnce = true;
    return lock;
}

void IndexBuffer::Set() const {
    const IndexBufferRecord* toBind = Record();
    if (!toBind) return ReportWithStack("Warning: attempt to set a non-allocated index buffer\n");
    if (!toBind->lockedOnce)
        ReportWithStack("Warning: Index buffer set, but has never been locked before.  Data in it is invalid.\n");
    const ScopedLock held(GraphicsLock());
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device || !toBind->api.buffer) return;
    TheBuffers().boundIndices = toBind;
    device->SetIndexBuffer(toBind->api.buffer.get());
}

void DrawTriangles(unsigned firstVertex, unsigned triangleCount) {
    const VertexBufferRecord* vertices = TheBuffers().boundVertices;
    if (!vertices) return ReportWithStack("Bad: Attempt to render primitives with 'No vertex buffer set'\n");
    platform::GraphicsDevice* device = DeviceOrNull();
    const unsigned held = vertices->count - std::min(firstVertex, vertices->count);
    const unsigned count = std::min(triangleCount, held / 3);
    if (device && count > 0) device->Draw(platform::Primitive::Triangles, firstVertex, count);
}

void DrawIndexed(unsigned triangleCount) {
    const VertexBufferRecord* vertices = TheBuffers().boundVertices;
    const IndexBufferRecord* indices = TheBuffers().boundIndices;
    if (!vertices || !indices) {
        std::string message = "Bad: Attempt to render indexed primitives with ";
        if (!vertices) message += "'No vertex buffer set'";
        if (!indices) message += "'No index buffer set'";
        return ReportWithStack(message + "\n");
    }
    platform::GraphicsDevice* device = DeviceOrNull();
    const unsigned count = std::min(triangleCount, indices->count / 3);
    if (device && count > 0) device->DrawIndexed(platform::Primitive::Triangles, vertices->count, 0, count);
}

}  // namespace DXG
