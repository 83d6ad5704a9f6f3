#pragma once
// Vertex formats, vertex and index buffers, indexed drawing.

#include <cstdint>
#include <memory>
#include <vector>

#include "graphics/device/SharedResource_TCPP.h"
#include "platform/GraphicsDevice.h"

namespace DXG {

// Type: 0-3 one to four floats, 4 packed colour. Use: 0 position, 1 normal, 2 colour, 3 texture coordinates.
struct VertexFormatElement {
    std::uint32_t type = 0;
    std::uint32_t use = 0;
    bool operator==(const VertexFormatElement&) const = default;
};
using VertexFormat = std::vector<VertexFormatElement>;

// Bytes of one vertex; unknown types count as nothing.
unsigned StrideOf(const VertexFormat& format);
// The declaration of a format, made once and kept; null, with a report, when there can be none.
platform::VertexLayout* DeclarationOf(const VertexFormat& format);

struct SVB_API_Data {  // NOLINT(readability-identifier-naming): the given name of this record
    std::unique_ptr<platform::DeviceBuffer> buffer;
    platform::VertexLayout* declaration = nullptr;  // of the declaration cache
    bool wentWithDevice = false;                    // the foundation was shut down while a handle still held the buffer
};
struct VertexBufferRecord : ResType {
    unsigned count = 0;
    unsigned stride = 0;
    VertexFormat format;
    bool dynamic = false;
    bool writeOnly = false;
    bool lockedOnce = false;
    SVB_API_Data api;
};
struct SIB_API_Data {  // NOLINT(readability-identifier-naming): the given name of this record
    std::unique_ptr<platform::DeviceBuffer> buffer;
    bool wentWithDevice = false;
};
struct IndexBufferRecord : ResType {
    unsigned count = 0;
    bool dynamic = false;
    bool writeOnly = false;
    bool lockedOnce = false;
    SIB_API_Data api;
};

// The locked bytes of a buffer; unlocks at its end. Null data when the lock failed. The buffer outlives its lock.
class BufferLock {
  public:
    BufferLock() = default;
    explicit BufferLock(platform::DeviceBuffer* toLock, bool discard);
    ~BufferLock();
    BufferLock(BufferLock&& other) noexcept;
    BufferLock& operator=(BufferLock&& other) noexcept;
    BufferLock(const BufferLock&) = delete;
    BufferLock& operator=(const BufferLock&) = delete;
    [[nodiscard]] void* Data() const { return data; }
    explicit operator bool() const { return data != nullptr; }
    void Unlock();

  private:
    platform::DeviceBuffer* buffer = nullptr;
    void* data = nullptr;
};

class VertexBuffer : public SharedResource<VertexBufferRecord> {
  public:
    VertexBuffer() = default;
    ~VertexBuffer() override;
    VertexBuffer(const VertexBuffer& other);
    VertexBuffer& operator=(const VertexBuffer& other);
    // `count` vertices of `stride` bytes, at least StrideOf(format). On failure the handle is empty and the error log
    // says why.
    bool Create(unsigned count, const VertexFormat& format, unsigned stride, bool dynamic, bool writeOnly);
    // The whole buffer; `discard` lets a dynamic one forget its contents.
    BufferLock Lock(bool discard) const;
    // Binds the buffer and its declaration. Warns when nothing was ever written into it.
    void Set() const;
    void Release();
    [[nodiscard]] bool IsCreated() const { return Record() != nullptr; }
    [[nodiscard]] unsigned Count() const { return Record() ? Record()->count : 0; }

  private:
    void ReleaseApi() override;
};

class IndexBuffer : public SharedResource<IndexBufferRecord> {
  public:
    IndexBuffer() = default;
    ~IndexBuffer() override;
    IndexBuffer(const IndexBuffer& other);
    IndexBuffer& operator=(const IndexBuffer& other);
    // 16-bit indices. On failure the handle is empty and the error log says why.
    bool Create(unsigned count, bool dynamic, bool writeOnly);
    BufferLock Lock() const;
    void Set() const;
    void Release();
    [[nodiscard]] bool IsCreated() const { return Record() != nullptr; }
    [[nodiscard]] unsigned Count() const { return Record() ? Record()->count & 0xFFFFU : 0; }

  private:
    void ReleaseApi() override;
};

// Triangles of the bound vertex buffer, from vertex `firstVertex`; never more than the buffer holds.
void DrawTriangles(unsigned firstVertex, unsigned triangleCount);
// Indexed triangles of the bound buffers, from index 0; never more than the index buffer holds. The indices themselves
// are not checked.
void DrawIndexed(unsigned triangleCount);

}  // namespace DXG
