#include "graphics/device/DXGTexture.h"

#include <bit>

#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "graphics/device/DXGHardware.h"
#include "graphics/device/TextureRegistry.h"

namespace DXG {

namespace {

using platform::PixelFormat;
using platform::TextureKind;

// Creation asks for no device support; Unknown for a type that cannot be created.
PixelFormat CreationFormatOf(TextureType type) {
    switch (type) {
        case TextureType::Alpha:
            return PixelFormat::A8;
        case TextureType::Colour:
            return Uses32BitColour() ? PixelFormat::X8R8G8B8 : PixelFormat::R5G6B5;
        case TextureType::ColourAlpha:
        case TextureType::CubeMap:
            return Uses32BitColour() ? PixelFormat::A8R8G8B8 : PixelFormat::A4R4G4B4;
        default:
            return PixelFormat::Unknown;
    }
}

const char* CreationFailureOf(TextureKind kind) {
    switch (kind) {
        case TextureKind::Cube:
            return "pD3DDev->CreateCubeTexture failed.\n  -call stack: ";
        case TextureKind::Volume:
            return "pD3DDev->CreateVolumeTexture failed.\n  -call stack: ";
        default:
            return "pD3DDev->CreateTexture failed.\n  -call stack:";
    }
}

platform::TextureFilter FilterOf(unsigned code) {
    switch (code) {
        case 0:
            return platform::TextureFilter::None;
        case 1:
            return platform::TextureFilter::Point;
        case 2:
            return platform::TextureFilter::Linear;
        default:
            return platform::TextureFilter::Anisotropic;
    }
}

// Between levels a texture is sampled as smoothly as within one, as far as there are levels.
platform::TextureFilter MipmapFilterOf(unsigned code, unsigned levels) {
    if (levels <= 1 || code == 0) return platform::TextureFilter::None;
    return code == 1 ? platform::TextureFilter::Point : platform::TextureFilter::Linear;
}

platform::TextureAddress AddressOf(bool wrap) {
    return wrap ? platform::TextureAddress::Wrap : platform::TextureAddress::Clamp;
}

}  // namespace

Texture::Texture() {
    if (!IsInitialized()) ReportWithStack("Bad: texture created, but graphics is not inited.\n");
}

Texture::~Texture() {
    const TextureScope held;
    if (Record() && !IsInitialized() && (Record()->api.object || Record()->api.wentWithDevice)) {
        ReportWithStack(
            "Bad: texture being destructed, but graphics is not inited.\n"
            "  -AND it still thinks it has d3d resources.\n");
        errorLog.Write("Foolish globals are likely at fault.\n");
    }
    SRFree();
}

Texture::Texture(const Texture& other) : Texture() {
    const TextureScope held;
    CopyFrom(other);
}

Texture& Texture::operator=(const Texture& other) {
    const TextureScope held;
    CopyFrom(other);
    return *this;
}

void Texture::Release() {
    const TextureScope held;
    SRFree();
}

void Texture::ReleaseApi() {
    DropTextureObject(*Record());
}

TextureRecord& Texture::Adopt(std::unique_ptr<platform::DeviceTexture> object, const platform::TextureRequest& made) {
    TextureRecord& record = AllocateRecord();
    record.api.object = std::move(object);
    record.api.format = record.api.object->Format();
    record.type = TypeOfFormat(record.api.format);
    record.kind = made.kind;
    record.imageWidth = record.width = made.width;
    record.imageHeight = record.height = made.height;
    record.depth = made.depth;
    return record;
}

bool Texture::Create(unsigned width, unsigned height, TextureType type, unsigned depth, bool mipmaps) {
    if (!IsInitialized()) ReportWithStack(NotInitializedMessage("DXG::Texture::Create"));
    const TextureScope held;
    SRFree();
    if (!std::has_single_bit(width) || !std::has_single_bit(height) || !std::has_single_bit(depth)) {
        ReportWithStack("Cannot create texture:\n  -dimensions must be powers of 2\n");
        return false;
    }
    const bool cube = type == TextureType::CubeMap;
    if (cube && depth != 1) {
        errorLog.Write("Cube Maps can't be 3D...\n");
        return false;
    }
    if (cube && width != height) {
        errorLog.Write("Cube maps can't have non-square sides...\n");
        return false;
    }
    if (depth > 1 && mipmaps)
        errorLog.Write("warning: 3D textures can't be mipmapped, but was requested (no plans to implement).\n");
    if (depth > 1 && !HasVolumeTextures()) return false;
    platform::TextureRequest request;
    request.kind = cube ? TextureKind::Cube : depth > 1 ? TextureKind::Volume : TextureKind::Plain;
    request.width = width;
    request.height = height;
    request.depth = depth;
    request.levels = cube ? 0 : 1;
    request.format = CreationFormatOf(type);
    if (request.format == PixelFormat::Unknown) {
        errorLog.Write("unsupported or unimplemented format in (DirectX)Texture::Create.\n");
        return false;
    }
    std::unique_ptr<platform::DeviceTexture> object;
    if (MakeTextureObject(request, object) != platform::DeviceResult::Ok) {
        WriteReport(errorLog, CreationFailureOf(request.kind), "", false);
        return false;
    }
    Adopt(std::move(object), request);
    return true;
}

void Texture::Set(unsigned stage) const {
    const TextureRecord* record = Record();
    if (!record) return ReportWithStack("Set called on a non-loaded texture.\n");
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device || stage >= textureStages) return;
    const STex_API_Data& api = record->api;
    BindTextureObject(stage, api.object.get());
    if (!api.object) return;
    platform::SamplerState sampler;
    sampler.minify = sampler.magnify = FilterOf(api.filter);
    sampler.mipmap = MipmapFilterOf(api.filter, api.object->Levels());
    sampler.u = AddressOf(api.wrapU);
    sampler.v = AddressOf(api.wrapV);
    if (record->kind == TextureKind::Volume) sampler.w = AddressOf(api.wrapW);
    device->SetSampler(stage, sampler);
}

void Texture::SetWrap(bool u, bool v, bool w) {
    if (!Record()) return;
    Record()->api.wrapU = u;
    Record()->api.wrapV = v;
    Record()->api.wrapW = w;
}

void Texture::SetFilter(unsigned filter) {
    if (Record()) Record()->api.filter = filter;
}

}  // namespace DXG
