#pragma once
// A vertex or index buffer: its bytes in memory and the card's copy; and the layout of vertices.

#include <epoxy/gl.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "platform/GraphicsDevice.h"
#include "platform/gl/GlSharedState.h"

namespace platform::gl {

// Attributes have fixed places in every program; what a layout leaves out reads as (0, 0, 0, 1), a colour as white.
inline constexpr unsigned attributeCount = 4;
inline constexpr std::array<const char*, attributeCount> attributeSemantics{"POSITION0", "NORMAL0", "COLOR0",
                                                                            "TEXCOORD0"};

// A vertex array object and what it holds: the attributes and the index buffer that go with one vertex buffer, so that
// drawing from another one is a single call. Ids are those of the objects, 0 for none.
struct VertexArray {
    GLuint name = 0;
    unsigned generation = 0;
    std::uint64_t layout = 0;
    unsigned stride = 0;
    std::uint64_t indexBuffer = 0;
    std::array<bool, attributeCount> enabled{};
};

class Buffer : public DeviceBuffer {
  public:
    // Filled with zeros. Throws std::bad_alloc.
    Buffer(std::shared_ptr<SharedState> state, std::size_t count, bool isDynamic);
    ~Buffer() override;

    void* Lock(bool discard) override;
    void Unlock() override;

    [[nodiscard]] std::uint64_t Id() const { return id; }
    [[nodiscard]] std::size_t Size() const { return size; }
    [[nodiscard]] bool NeedsRefresh() const { return stale || generation != shared->Generation(); }
    // Binds the card's copy, making or refreshing it first.
    void Bind(GLenum target);
    // For drawing vertices of this buffer.
    [[nodiscard]] VertexArray& Array() { return array; }

  private:
    std::shared_ptr<SharedState> shared;
    struct Free {
        void operator()(std::uint8_t* memory) const { std::free(memory); }
    };
    // From calloc, which has the zeros of a large buffer from the system instead of writing them.
    std::unique_ptr<std::uint8_t[], Free> bytes;
    std::size_t size = 0;
    bool dynamic = false;
    bool stale = true;
    std::uint64_t id = 0;
    GLuint name = 0;
    unsigned generation = 0;
    VertexArray array;
};

class Layout : public VertexLayout {
  public:
    Layout(std::shared_ptr<SharedState> state, const std::vector<VertexElement>& elements);
    ~Layout() override;

    [[nodiscard]] std::uint64_t Id() const { return id; }
    // Points the attributes of the bound array into the bound buffer.
    void Apply(unsigned stride, VertexArray& array) const;

  private:
    struct Attribute {
        bool used = false;
        bool packedColour = false;
        GLint components = 0;
        unsigned offset = 0;
    };
    std::shared_ptr<SharedState> shared;
    std::array<Attribute, attributeCount> attributes;
    std::uint64_t id = 0;
};

}  // namespace platform::gl
