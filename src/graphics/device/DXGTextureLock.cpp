// CPU access to the texels of a texture.

#include <algorithm>
#include <cstring>
#include <utility>

#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "graphics/device/DXGTexture.h"
#include "platform/PixelFormats.h"

namespace DXG {

namespace {

constexpr unsigned cubeFaces = 6;
using platform::TextureKind;

// Fills one face of the lock.
bool LockFace(TextureRecord& record, unsigned face, bool readOnly, TextureLock& lock) {
    platform::LockedTexels texels;
    if (!record.api.object->Lock(0, face, readOnly, texels)) return false;
    lock.data[face] = static_cast<unsigned char*>(texels.data);
    lock.rowPitch[face] = texels.rowPitch;
    lock.slicePitch = texels.slicePitch;
    return lock.data[face] != nullptr;
}

const char* RefusalOf(TextureKind kind) {
    switch (kind) {
        case TextureKind::Cube:
            return "cube face failed to lock.\n";
        case TextureKind::Volume:
            return "Failed to lock volume for some reason...\n";
        default:
            return "Failed to lock texture for some reason...\n";
    }
}

}  // namespace

TextureLock Texture::Lock(bool readOnly) const {
    TextureRecord* locked = Record();
    if (!locked) {
        ReportWithStack("Error... attempt to lock a non-existant texture.\n");
        return {};
    }
    if (!locked->api.object) {
        errorLog.Write(locked->kind == TextureKind::Volume ? "Failed to get texture volume!? (LockTexture)\n"
                                                           : "Failed to get texture surface!? (LockTexture)\n");
        return {};
    }
    TextureLock lock;
    lock.record = locked;
    lock.bitsPerTexel = platform::BitsPerTexel(locked->api.format);
    const unsigned faces = locked->kind == TextureKind::Cube ? cubeFaces : 1;
    for (unsigned face = 0; face < faces; ++face) {
        if (LockFace(*locked, face, readOnly, lock)) continue;
        errorLog.Write(RefusalOf(locked->kind));
        return {};  // the faces locked so far are unlocked with `lock`
    }
    return lock;
}

TextureLock::~TextureLock() {
    Unlock();
}

TextureLock::TextureLock(TextureLock&& other) noexcept {
    *this = std::move(other);
}

TextureLock& TextureLock::operator=(TextureLock&& other) noexcept {
    if (this == &other) return *this;
    Unlock();
    std::copy(std::begin(other.data), std::end(other.data), data);
    std::copy(std::begin(other.rowPitch), std::end(other.rowPitch), rowPitch);
    std::fill(std::begin(other.data), std::end(other.data), nullptr);
    slicePitch = other.slicePitch;
    bitsPerTexel = other.bitsPerTexel;
    record = std::exchange(other.record, nullptr);
    return *this;
}

void TextureLock::Unlock() {
    for (unsigned face = 0; face < cubeFaces; ++face) {
        if (data[face] && record && record->api.object) record->api.object->Unlock(0, face);
        data[face] = nullptr;
    }
    record = nullptr;
}

std::uint32_t TextureLock::ReadTexel(int x, int y) const {
    if (!data[0] || !record || x < 0 || y < 0) return 0;
    const auto column = static_cast<std::size_t>(x);
    const auto row = static_cast<std::size_t>(y);
    if (column >= record->width || row >= record->height) return 0;
    const std::size_t texelBytes = bitsPerTexel / 8;
    // Texels are read as 32 or 16 bits, those of 8 bits as what they have.
    const std::size_t readBytes = bitsPerTexel == 32 ? 4 : std::min<std::size_t>(texelBytes, 2);
    std::uint32_t texel = 0;
    std::memcpy(&texel, data[0] + row * rowPitch[0] + column * texelBytes, readBytes);
    return texel;
}

std::uint32_t TextureLock::ReadLinear(float x, float y) const {
    if (!data[0] || !record) return 0;
    const bool inside =
        x >= 0.0F && y >= 0.0F && x < static_cast<float>(record->width) && y < static_cast<float>(record->height);
    if (inside) errorLog.Write("linear sample not implemented yet...\n");
    return 0;
}

}  // namespace DXG
