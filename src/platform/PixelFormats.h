#pragma once
// Sizes of the pixel formats, for every back end.

#include "platform/GraphicsDevice.h"

namespace platform {

// Bits of one texel in memory; 0 for Unknown.
constexpr unsigned BitsPerTexel(PixelFormat format) {
    switch (format) {
        case PixelFormat::Unknown:
            return 0;
        case PixelFormat::R3G3B2:
        case PixelFormat::A8:
        case PixelFormat::P8:
        case PixelFormat::L8:
            return 8;
        case PixelFormat::R5G6B5:
        case PixelFormat::X1R5G5B5:
        case PixelFormat::A1R5G5B5:
        case PixelFormat::A4R4G4B4:
        case PixelFormat::X4R4G4B4:
        case PixelFormat::A8R3G3B2:
        case PixelFormat::D16:
        case PixelFormat::D15S1:
            return 16;
        case PixelFormat::R8G8B8:
            return 24;
        case PixelFormat::A16B16G16R16:
            return 64;
        default:
            return 32;
    }
}

}  // namespace platform
