#include "platform/gl/GlTexture.h"

#include <algorithm>
#include <bit>
#include <new>

#include "platform/Caps.h"
#include "platform/gl/GlCheck.h"

namespace platform::gl {

namespace {

bool MakesSense(const TextureRequest& request, const TextureLimits& limits) {
    const unsigned side = std::max(request.width, request.height);
    if (request.width == 0 || request.height == 0 || request.depth == 0) return false;
    switch (request.kind) {
        case TextureKind::Plain:
            return side <= limits.plain && request.depth == 1;
        case TextureKind::Cube:
            return side <= limits.cube && request.depth == 1 && request.width == request.height;
        case TextureKind::Volume:
            return std::max(side, request.depth) <= limits.volume;
    }
    return false;
}

std::size_t BytesOf(const TextureRequest& request, const FormatInfo& info) {
    const std::size_t faces = request.kind == TextureKind::Cube ? 6 : 1;
    return RowPitch(info, request.width) * request.height * request.depth * faces;
}

}  // namespace

DeviceResult Texture::Make(std::shared_ptr<SharedState> shared, const TextureLimits& limits,
                           const TextureRequest& request, std::unique_ptr<DeviceTexture>& out) {
    if (!MakesSense(request, limits)) return DeviceResult::InvalidCall;
    const FormatInfo* info = FindFormat(request.format);
    if (!info) return DeviceResult::NotAvailable;
    const unsigned longest = std::max({request.width, request.height, request.depth});
    const auto chain = static_cast<unsigned>(std::bit_width(longest));
    if (request.levels > chain) return DeviceResult::InvalidCall;
    if (BytesOf(request, *info) > caps::textureBytes) return DeviceResult::OutOfVideoMemory;
    try {
        out.reset(new Texture(std::move(shared), request, *info, request.levels == 0 ? chain : request.levels));
    } catch (const std::bad_alloc&) {
        return DeviceResult::OutOfMemory;
    }
    return DeviceResult::Ok;
}

Texture::Texture(std::shared_ptr<SharedState> state, const TextureRequest& request, const FormatInfo& formatInfo,
                 unsigned count)
    : shared(std::move(state)), info(formatInfo), id(shared->NextId()) {
    if (request.kind == TextureKind::Cube) {
        target = GL_TEXTURE_CUBE_MAP;
        faces = 6;
    } else if (request.kind == TextureKind::Volume) {
        target = GL_TEXTURE_3D;
    }
    std::size_t bytes = 0;
    for (unsigned at = 0; at < count; ++at) {
        Level level;
        level.width = std::max(request.width >> at, 1U);
        level.height = std::max(request.height >> at, 1U);
        level.depth = std::max(request.depth >> at, 1U);
        level.rowPitch = RowPitch(info, level.width);
        level.slicePitch = level.rowPitch * level.height;
        level.offset = bytes;
        bytes += level.slicePitch * level.depth * faces;
        levels.push_back(level);
    }
    texels.resize(bytes);
    pieces.resize(std::size_t(count) * faces);
    shared->AddTextureBytes(static_cast<std::int64_t>(bytes));
}

Texture::~Texture() {
    for (Texture*& bound : shared->bindings.textures)
        if (bound == this) bound = nullptr;
    shared->Discard(SharedState::Kind::Texture, name, generation);
    shared->AddTextureBytes(-static_cast<std::int64_t>(texels.size()));
}

unsigned Texture::Width(unsigned level) const {
    return level < levels.size() ? levels[level].width : 0;
}
unsigned Texture::Height(unsigned level) const {
    return level < levels.size() ? levels[level].height : 0;
}

std::size_t Texture::OffsetOf(unsigned level, unsigned face) const {
    const Level& at = levels[level];
    return at.offset + at.slicePitch * at.depth * face;
}

bool Texture::Lock(unsigned level, unsigned face, bool readOnly, LockedTexels& out) {
    if (level >= levels.size() || face >= faces) return false;
    Piece& piece = PieceAt(level, face);
    ++piece.locks;
    piece.writing = piece.writing || !readOnly;
    out = {texels.data() + OffsetOf(level, face), levels[level].rowPitch, levels[level].slicePitch};
    return true;
}

void Texture::Unlock(unsigned level, unsigned face) {
    if (level >= levels.size() || face >= faces) return;
    Piece& piece = PieceAt(level, face);
    if (piece.locks == 0 || --piece.locks > 0 || !piece.writing) return;
    piece.writing = false;
    piece.stale = true;
    stale = true;
}

bool Texture::NeedsRefresh() const {
    return stale || generation != shared->Generation();
}

void Texture::Bind() {
    const bool fresh = generation == shared->Generation();
    if (!fresh) {
        glGenTextures(1, &name);
        generation = shared->Generation();
    }
    glBindTexture(target, name);
    if (!fresh) Create();
    if (!stale) return;
    for (unsigned level = 0; level < levels.size(); ++level)
        for (unsigned face = 0; face < faces; ++face)
            Refresh(level, face);
    stale = false;
    CheckErrors("filling a texture");
}

void Texture::Create() {
    glTexParameteri(target, GL_TEXTURE_BASE_LEVEL, 0);
    glTexParameteri(target, GL_TEXTURE_MAX_LEVEL, static_cast<GLint>(levels.size()) - 1);
    glTexParameteriv(target, GL_TEXTURE_SWIZZLE_RGBA, info.swizzle);
    for (unsigned level = 0; level < levels.size(); ++level)
        for (unsigned face = 0; face < faces; ++face) {
            Define(level, face);
            PieceAt(level, face).stale = false;
        }
    stale = false;
    CheckErrors("making a texture");
}

void Texture::Define(unsigned level, unsigned face) {
    const Level& at = levels[level];
    const std::uint8_t* data = texels.data() + OffsetOf(level, face);
    const auto number = static_cast<GLint>(level);
    const auto internal = static_cast<GLint>(info.internalFormat);
    const auto width = static_cast<GLsizei>(at.width);
    const auto height = static_cast<GLsizei>(at.height);
    if (target == GL_TEXTURE_3D)
        glTexImage3D(target, number, internal, width, height, static_cast<GLsizei>(at.depth), 0, info.components,
                     info.type, data);
    else
        glTexImage2D(target == GL_TEXTURE_2D ? target : GL_TEXTURE_CUBE_MAP_POSITIVE_X + face, number, internal, width,
                     height, 0, info.components, info.type, data);
}

void Texture::Refresh(unsigned level, unsigned face) {
    Piece& piece = PieceAt(level, face);
    if (!piece.stale) return;
    piece.stale = false;
    const Level& at = levels[level];
    const std::uint8_t* data = texels.data() + OffsetOf(level, face);
    const auto number = static_cast<GLint>(level);
    const auto width = static_cast<GLsizei>(at.width);
    const auto height = static_cast<GLsizei>(at.height);
    if (target == GL_TEXTURE_3D)
        glTexSubImage3D(target, number, 0, 0, 0, width, height, static_cast<GLsizei>(at.depth), info.components,
                        info.type, data);
    else
        glTexSubImage2D(target == GL_TEXTURE_2D ? target : GL_TEXTURE_CUBE_MAP_POSITIVE_X + face, number, 0, 0, width,
                        height, info.components, info.type, data);
}

}  // namespace platform::gl
