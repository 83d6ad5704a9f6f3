#pragma once
// A texture: its texels in memory as the caller laid them out, and the card's copy.

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/GraphicsDevice.h"
#include "platform/gl/GlFormats.h"
#include "platform/gl/GlSharedState.h"

namespace platform::gl {

// What the card allows, in texels a side.
struct TextureLimits {
    unsigned plain = 0;
    unsigned cube = 0;
    unsigned volume = 0;
};

class Texture : public DeviceTexture {
  public:
    // InvalidCall for sizes that make no sense or are above the limits, NotAvailable for a format, OutOfMemory.
    static DeviceResult Make(std::shared_ptr<SharedState> shared, const TextureLimits& limits,
                             const TextureRequest& request, std::unique_ptr<DeviceTexture>& out);
    ~Texture() override;

    [[nodiscard]] PixelFormat Format() const override { return info.format; }
    [[nodiscard]] unsigned Levels() const override { return static_cast<unsigned>(levels.size()); }
    [[nodiscard]] unsigned Width(unsigned level) const override;
    [[nodiscard]] unsigned Height(unsigned level) const override;
    bool Lock(unsigned level, unsigned face, bool readOnly, LockedTexels& out) override;
    void Unlock(unsigned level, unsigned face) override;

    [[nodiscard]] GLenum Target() const { return target; }
    [[nodiscard]] std::uint64_t Id() const { return id; }
    // Whether the card's copy is missing or old.
    [[nodiscard]] bool NeedsRefresh() const;
    // Binds the card's copy to the active unit, making or refreshing it first.
    void Bind();

  private:
    struct Level {
        unsigned width = 1;
        unsigned height = 1;
        unsigned depth = 1;
        std::size_t rowPitch = 0;
        std::size_t slicePitch = 0;
        std::size_t offset = 0;  // of face 0 in `texels`
    };
    struct Piece {  // one level of one face
        bool stale = true;
        bool writing = false;
        unsigned locks = 0;
    };

    Texture(std::shared_ptr<SharedState> state, const TextureRequest& request, const FormatInfo& formatInfo,
            unsigned count);
    Piece& PieceAt(unsigned level, unsigned face) { return pieces[level * faces + face]; }
    [[nodiscard]] std::size_t OffsetOf(unsigned level, unsigned face) const;
    void Create();
    void Define(unsigned level, unsigned face);
    void Refresh(unsigned level, unsigned face);

    std::shared_ptr<SharedState> shared;
    FormatInfo info;
    GLenum target = GL_TEXTURE_2D;
    unsigned faces = 1;
    std::uint64_t id = 0;
    std::vector<Level> levels;
    std::vector<Piece> pieces;
    std::vector<std::uint8_t> texels;
    bool stale = true;
    GLuint name = 0;
    unsigned generation = 0;
};

}  // namespace platform::gl
