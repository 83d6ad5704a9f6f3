#pragma once
// What the handles on a texture share.

#include <memory>
#include <string>

#include "graphics/device/SharedResource_TCPP.h"
#include "platform/GraphicsDevice.h"

namespace DXG {

// What a caller asks for; after creation worked out again from the format that the device really gave.
enum class TextureType : unsigned { Free = 0, AsFile = 1, Alpha = 2, Colour = 3, ColourAlpha = 4, CubeMap = 5 };

struct STex_API_Data {  // NOLINT(readability-identifier-naming): the given name of this record
    std::unique_ptr<platform::DeviceTexture> object;
    platform::PixelFormat format = platform::PixelFormat::Unknown;
    bool wentWithDevice = false;  // the foundation was shut down while a handle still held the object
    bool wrapU = true;            // true repeats, false clamps
    bool wrapV = true;
    bool wrapW = true;
    unsigned filter = 2;  // 1 point, 2 linear, other non-zero anisotropic, 0 none
};

struct TextureRecord : ResType {
    TextureType type = TextureType::Free;
    std::string fileName;  // empty for created textures
    unsigned imageWidth = 0;
    unsigned imageHeight = 0;
    unsigned width = 0;
    unsigned height = 0;
    unsigned depth = 1;
    platform::TextureKind kind = platform::TextureKind::Plain;
    bool mipmapped = false;
    STex_API_Data api;
};

}  // namespace DXG
