#pragma once
// Textures: handles on shared records, loaded from image files or made in memory.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graphics/device/SharedResource_TCPP.h"
#include "graphics/device/TextureRecord.h"
#include "platform/GraphicsDevice.h"

class LoadedImage;

namespace DXG {

// CPU access to level 0; unlocks at its end. Empty when the lock failed. The texture outlives its lock.
class TextureLock {
  public:
    TextureLock() = default;
    ~TextureLock();
    TextureLock(TextureLock&& other) noexcept;
    TextureLock& operator=(TextureLock&& other) noexcept;
    TextureLock(const TextureLock&) = delete;
    TextureLock& operator=(const TextureLock&) = delete;

    explicit operator bool() const { return data[0] != nullptr; }
    void Unlock();
    // 0 outside the texture or without data; as 32 bits when the texture has 32 per texel, else as 16.
    [[nodiscard]] std::uint32_t ReadTexel(int x, int y) const;
    // Not implemented: says so for coordinates inside the texture and gives 0.
    [[nodiscard]] std::uint32_t ReadLinear(float x, float y) const;

    unsigned char* data[6] = {};  // one per face of a cube, else the first alone
    std::size_t rowPitch[6] = {};
    std::size_t slicePitch = 0;
    unsigned bitsPerTexel = 0;
    TextureRecord* record = nullptr;
};

// A handle. Making, loading, copying and releasing may come from any thread: they hold the graphics lock and then the
// texture registry's, in this order. Binding and locking are the drawing thread's.
class Texture : public SharedResource<TextureRecord> {
  public:
    Texture();
    ~Texture() override;
    Texture(const Texture& other);
    Texture& operator=(const Texture& other);

    // From an image file, or from a list of layer images (.t3d) as a volume; textures of one file name, without regard
    // to case, share one record. Sides are powers of two. On failure the handle is empty and the error log says why.
    bool Load(const std::string& fileName, TextureType type, bool mipmaps, bool smooth);
    // Pure black becomes transparent; as file, no mipmaps, no smoothing.
    bool LoadCC(const std::string& fileName);
    // Empty texels of undefined content. Sides and depth are powers of two; a cube is square, has depth 1 and a full
    // mipmap chain, everything else one level.
    bool Create(unsigned width, unsigned height, TextureType type, unsigned depth, bool mipmaps);

    // Binds the texture and sets the stage's sampler from the wrap flags and the filter.
    void Set(unsigned stage) const;
    TextureLock Lock(bool readOnly) const;
    void Release();

    // Of the record, so of every handle on it; seen at the next Set.
    void SetWrap(bool u, bool v, bool w);
    void SetFilter(unsigned filter);

    [[nodiscard]] bool IsLoaded() const { return Record() != nullptr; }
    [[nodiscard]] unsigned Width() const { return Record() ? Record()->width : 0; }
    [[nodiscard]] unsigned Height() const { return Record() ? Record()->height : 0; }
    [[nodiscard]] TextureType Type() const { return Record() ? Record()->type : TextureType::Free; }
    [[nodiscard]] std::string FileName() const { return Record() ? Record()->fileName : std::string(); }
    [[nodiscard]] bool IsSameAs(const Texture& other) const { return Record() == other.Record(); }

  private:
    struct LoadRequest;
    void ReleaseApi() override;
    bool LoadAny(const LoadRequest& request);
    bool LoadImageFile(const LoadRequest& request);
    bool LoadVolume(const LoadRequest& request);
    bool CopyLayers(const std::vector<std::unique_ptr<LoadedImage>>& layers);
    TextureRecord& Adopt(std::unique_ptr<platform::DeviceTexture> object, const platform::TextureRequest& made);
};

}  // namespace DXG
