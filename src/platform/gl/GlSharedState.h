#pragma once
// What a device and the objects made by it share. Objects may be made, filled and destroyed on any thread (one at a
// time) and may outlive the device, so they touch OpenGL only when the device binds them: their contents live in
// memory, the card's copy is made or refreshed at the next draw, and the names of destroyed objects wait here until the
// device deletes them.

#include <array>
#include <cstdint>
#include <mutex>
#include <vector>

namespace platform::gl {

class Texture;
class Buffer;
class Layout;
class Shader;

inline constexpr unsigned stageCount = 16;

// What is bound now; an object that is destroyed leaves it.
struct Bindings {
    std::array<Texture*, stageCount> textures{};
    Layout* layout = nullptr;
    Buffer* vertexBuffer = nullptr;
    unsigned stride = 0;
    Buffer* indexBuffer = nullptr;
    Shader* vertexShader = nullptr;
    Shader* fragmentShader = nullptr;
};

class SharedState {
  public:
    enum class Kind { Texture, Buffer, VertexArray, Shader, Program };

    Bindings bindings;

    // Numbers never used twice, so that caches can tell a new object from an old one at the same place.
    std::uint64_t NextId();

    // A name made under `generation` may be deleted.
    void Discard(Kind kind, unsigned name, unsigned generation);
    // Deletes what waits; with the context current.
    void DeleteDiscarded();
    // The context has gone and every name with it.
    void ContextLost();
    // Counts contexts; a name is good only under the generation in which it was made.
    [[nodiscard]] unsigned Generation() const { return generation; }

    // A programmed stage has gone; the programs linked with it are dropped at the next draw.
    void ForgetShader(std::uint64_t id);
    [[nodiscard]] std::vector<std::uint64_t> TakeForgottenShaders();
    [[nodiscard]] bool HasForgottenShaders() const { return !forgottenShaders.empty(); }

    void AddTextureBytes(std::int64_t bytes);
    [[nodiscard]] std::int64_t TextureBytes() const;

  private:
    struct Name {
        Kind kind;
        unsigned name;
    };
    mutable std::mutex lock;
    std::vector<Name> discarded;
    std::vector<std::uint64_t> forgottenShaders;
    unsigned generation = 1;
    std::uint64_t lastId = 0;
    std::int64_t textureBytes = 0;
};

}  // namespace platform::gl
