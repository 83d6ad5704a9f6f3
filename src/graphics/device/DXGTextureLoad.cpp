// Textures from image files and from lists of layers.

#include <algorithm>
#include <bit>
#include <string_view>

#include "diag/PathFiles.h"
#include "graphics/device/DXGTexture.h"
#include "graphics/device/ImageLoader.h"
#include "graphics/device/TexelFormats.h"
#include "graphics/device/TextureRegistry.h"
#include "platform/Caps.h"
#include "platform/ImageCodec.h"

namespace DXG {

struct Texture::LoadRequest {
    const std::string& fileName;
    bool colourKey = false;
    TextureType type = TextureType::AsFile;
    bool mipmaps = false;
    bool smooth = false;
};

namespace {

using platform::DeviceResult;
using platform::PixelFormat;

constexpr std::uint32_t opaqueBlack = 0xFF000000U;

struct ImageDescription {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    platform::TextureKind kind = platform::TextureKind::Plain;  // the image files known hold one picture each
};

bool ReadDescription(const std::string& fileName, ImageDescription& out) {
    return platform::ReadImageSize(fileName, out.width, out.height) == platform::ImageStatus::Ok;
}

bool CanSample(PixelFormat format) {
    return CanSampleFormat(static_cast<int>(format));
}

// The layout of the file as a texture format that every device has.
PixelFormat FileFormatOf(const platform::ImagePixels& image, bool colourKey) {
    const auto translucent = [](std::uint32_t pixel) { return pixel < opaqueBlack; };
    const bool alpha = colourKey || image.layout == platform::ImageLayout::Argb32 ||
                       std::any_of(image.argb.begin(), image.argb.end(), translucent);
    return alpha ? PixelFormat::A8R8G8B8 : PixelFormat::X8R8G8B8;
}

// Unknown for a type that is not loaded.
PixelFormat LoadFormatOf(TextureType type, const platform::ImagePixels& image, bool colourKey) {
    switch (type) {
        case TextureType::AsFile:
            return FileFormatOf(image, colourKey);
        case TextureType::Alpha:
            return PixelFormat::A8;
        case TextureType::Colour:
            return !Uses32BitColour() && CanSample(PixelFormat::R5G6B5) ? PixelFormat::R5G6B5 : PixelFormat::X8R8G8B8;
        case TextureType::ColourAlpha:
            if (Uses32BitColour()) return PixelFormat::A8R8G8B8;
            return CanSample(PixelFormat::A4R4G4B4) ? PixelFormat::A4R4G4B4 : PixelFormat::A1R5G5B5;
        default:
            return PixelFormat::Unknown;
    }
}

// The chain of a loaded texture ends two steps before its smaller side is one texel.
unsigned LevelsOf(const ImageDescription& image, bool mipmaps) {
    const unsigned highestBit = std::bit_width(std::min(image.width, image.height)) - 1U;
    return mipmaps && highestBit > 3 ? highestBit - 2 : 1;
}

const char* ReasonOf(DeviceResult result) {
    switch (result) {
        case DeviceResult::OutOfVideoMemory:
            return "  -graphics device out of memory\n";
        case DeviceResult::NotAvailable:
            return "  -graphics device doesn't support requested type\n";
        case DeviceResult::InvalidData:
            return "  -file contains invalid data\n";
        default:
            return "";
    }
}

bool ReportLoadFailure(const std::string& fileName, const char* reason) {
    ReportWithStack("Failed to load image \"" + fileName + "\"\n" + reason);
    return false;
}

bool ReportUnable(const std::string& fileName, const char* reason) {
    ReportWithStack("Unable to load image \"" + fileName + "\"\n" + reason);
    return false;
}

// Writes the image and its smaller copies into the levels of the object.
DeviceResult FillLevels(platform::DeviceTexture& object, std::vector<std::uint32_t> pixels, unsigned width,
                        unsigned height, bool smooth) {
    for (unsigned level = 0; level < object.Levels(); ++level) {
        const PixelRectangle rectangle{pixels.data(), width, height};
        platform::LockedTexels texels;
        if (!object.Lock(level, 0, false, texels)) return DeviceResult::Failed;
        const bool written =
            WriteTexels(rectangle, object.Format(), smooth, static_cast<unsigned char*>(texels.data), texels.rowPitch);
        object.Unlock(level, 0);
        if (!written) return DeviceResult::NotAvailable;
        if (level + 1 == object.Levels()) break;
        pixels = HalfSize(rectangle, smooth);
        width = std::max(width / 2, 1U);
        height = std::max(height / 2, 1U);
    }
    return DeviceResult::Ok;
}

void WarnOfAspect(const std::string& fileName, const ImageDescription& image) {
    constexpr unsigned warnedRatio = 9;
    if (image.width / image.height < warnedRatio && image.height / image.width < warnedRatio) return;
    ReportWithStack("warning: image \"" + fileName +
                    "\" loaded successfully, but aspect ratio is greater than 8\n"
                    "  -aspect ratio more than 8 not recommended for best compatability with older hardware\n");
}

bool ReportLayer(const std::string& fileName, const std::string& layer, const char* what) {
    errorLog.Write("Error loading 3d texture(" + fileName + what);
    errorLog.Write("  - " + layer + " doesn't match the first layer in the list.\n");
    return false;
}

// Every layer of a list, all of one form; false with the reason in the error log.
bool LoadLayers(const std::string& fileName, const std::vector<std::string>& names,
                std::vector<std::unique_ptr<LoadedImage>>& layers) {
    std::uint64_t pixels = 0;
    for (const std::string& name : names) {
        const std::string path = ContainedPath(DirectoryOf(fileName), name);
        ImageDescription description;
        (void)ReadDescription(path, description);  // what cannot be read is told of below
        pixels += std::uint64_t{description.width} * description.height;
        layers.push_back(std::make_unique<LoadedImage>());
        if (!path.empty() && pixels <= caps::volumePixels && layers.back()->Load(path)) continue;
        errorLog.Write("A layer of 3D texture \"" + fileName + "\" failed to load... 3d texture load failed.\n");
        return false;
    }
    for (std::size_t i = 1; i < layers.size(); ++i) {
        const LoadedImage& first = *layers[0];
        const LoadedImage& layer = *layers[i];
        if (layer.channels != first.channels)
            return ReportLayer(fileName, names[i], ")... format of all files must be the same.\n");
        if (layer.width != first.width || layer.height != first.height)
            return ReportLayer(fileName, names[i], ")... dimensions of all files must be the same.\n");
    }
    return true;
}

}  // namespace

bool Texture::Load(const std::string& fileName, TextureType type, bool mipmaps, bool smooth) {
    if (!IsInitialized()) ReportWithStack(NotInitializedMessage("DXG::Texture::Load"));
    return LoadAny({fileName, false, type, mipmaps, smooth});
}

bool Texture::LoadCC(const std::string& fileName) {
    if (!IsInitialized()) ReportWithStack(NotInitializedMessage("DXG::Texture::LoadCC"));
    return LoadAny({fileName, true, TextureType::AsFile, false, false});
}

bool Texture::LoadAny(const LoadRequest& request) {
    const TextureScope held;
    const auto matches = [&](const TextureRecord& known) {
        return known.api.object && !known.fileName.empty() && EqualsIgnoringCase(known.fileName, request.fileName);
    };
    if (Record() && matches(*Record())) return true;
    SRFree();
    if (request.type == TextureType::Free) {
        ReportWithStack("Error: attempt to load texture of type FREE\n");
        return false;
    }
    if (TextureRecord* known = FindRecord(matches)) {
        ShareRecord(known);
        return true;
    }
    return EqualsIgnoringCase(ExtensionOf(request.fileName), "t3d") ? LoadVolume(request) : LoadImageFile(request);
}

bool Texture::LoadImageFile(const LoadRequest& request) {
    const std::string& fileName = request.fileName;
    const bool dds = EqualsIgnoringCase(ExtensionOf(fileName), "dds") && FileSize(fileName) > 0;
    ImageDescription description;
    if (!dds && !ReadDescription(fileName, description)) return ReportLoadFailure(fileName, "");
    if (dds) {
        errorLog.Write("Error: .dds file(" + fileName +
                       ") being loaded.  This format is depreciated for compatability reasons. Failing.\n");
        return false;
    }
    if (!std::has_single_bit(description.width) || !std::has_single_bit(description.height))
        return ReportUnable(fileName, "  -dimensions must be powers of 2\n");
    if (description.kind != platform::TextureKind::Plain)
        return ReportUnable(fileName, "  -image type must be either a surface or a texture\n");

    platform::ImagePixels image;
    const platform::ImageStatus status = platform::DecodeImageFile(fileName, image);
    if (status == platform::ImageStatus::InvalidData)
        return ReportLoadFailure(fileName, ReasonOf(DeviceResult::InvalidData));
    const bool whole = image.width == description.width && image.height == description.height &&
                       image.argb.size() == std::size_t{image.width} * image.height;
    if (status != platform::ImageStatus::Ok || !whole) return ReportLoadFailure(fileName, "");

    platform::TextureRequest wanted;
    wanted.width = image.width;
    wanted.height = image.height;
    wanted.levels = LevelsOf(description, request.mipmaps);
    wanted.format = LoadFormatOf(request.type, image, request.colourKey);
    if (wanted.format == PixelFormat::Unknown) return ReportLoadFailure(fileName, ReasonOf(DeviceResult::NotAvailable));
    if (request.colourKey) std::replace(image.argb.begin(), image.argb.end(), opaqueBlack, 0U);
    std::unique_ptr<platform::DeviceTexture> object;
    DeviceResult result = MakeTextureObject(wanted, object);
    if (result == DeviceResult::Ok)
        result = FillLevels(*object, std::move(image.argb), image.width, image.height, request.smooth);
    if (result != DeviceResult::Ok) return ReportLoadFailure(fileName, ReasonOf(result));

    TextureRecord& record = Adopt(std::move(object), wanted);
    record.fileName = fileName;
    record.mipmapped = request.mipmaps;
    record.width = record.api.object->Width(0);
    record.height = record.api.object->Height(0);
    WarnOfAspect(fileName, description);
    return true;
}

bool Texture::LoadVolume(const LoadRequest& request) {
    const std::string& fileName = request.fileName;
    if (request.mipmaps)
        errorLog.Write("warning: 3D textures can't be mipmapped, but was requested (no plans to implement).\n");
    if (request.colourKey) {
        errorLog.Write("Color key not supported on 3d textures.\n");
        return false;
    }
    const std::vector<std::string> names =
        SplitTokens(ReadWholeFile(fileName, false, caps::volumeListBytes), " \t\r\n\v\f");
    if (names.empty() || names.size() > caps::volumeLayers) {
        // A list that cannot be read lists nothing either.
        const char* reason = names.empty() ? "  -no textures listed?\n" : "";
        ReportWithStack("There was a problem loading 3D texture file: " + fileName + "\n" + reason);
        return false;
    }
    std::vector<std::unique_ptr<LoadedImage>> layers;
    if (!LoadLayers(fileName, names, layers)) return false;
    const LoadedImage& first = *layers[0];
    const TextureType type = first.channels == 1 ? TextureType::Alpha : TextureType::ColourAlpha;
    if (!Create(first.width, first.height, type, static_cast<unsigned>(layers.size()), false)) return false;
    if (!CopyLayers(layers)) {
        SRFree();
        return false;
    }
    Record()->fileName = fileName;
    return true;
}

bool Texture::CopyLayers(const std::vector<std::unique_ptr<LoadedImage>>& layers) {
    const TextureLock lock = Lock(false);
    if (!lock) {
        ReportWithStack("Unable to lock 3d texture to load it... not good to have this happen obviously.\n");
        return false;
    }
    for (std::size_t slice = 0; slice < layers.size(); ++slice) {
        const LoadedImage& layer = *layers[slice];
        std::vector<std::uint32_t> pixels(layer.pixels, layer.pixels + std::size_t{layer.width} * layer.height);
        // The one channel of an indexed layer is its brightness.
        if (layer.channels == 1)
            for (std::uint32_t& pixel : pixels)
                pixel = BrightnessOf(pixel) << 24;
        const PixelRectangle rectangle{pixels.data(), layer.width, layer.height};
        if (WriteTexels(rectangle, Record()->api.format, false, lock.data[0] + slice * lock.slicePitch,
                        lock.rowPitch[0]))
            continue;
        errorLog.Write("Internal error on how I load 8 bit textures... bad.\n");
        return true;
    }
    return true;
}

}  // namespace DXG
