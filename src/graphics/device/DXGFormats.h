#pragma once
// The choice of the device's display and depth formats.

#include "graphics/device/DXGSetup.h"
#include "platform/GraphicsDevice.h"

namespace DXG {

struct DeviceFormats {
    platform::PixelFormat display = platform::PixelFormat::Unknown;  // kept from one start to the next as its fallback
    platform::PixelFormat depth = platform::PixelFormat::Unknown;
};

// Chooses display and depth format for `setup`, whose stencil wish is cleared when no format has a stencil. What cannot
// be found is reported and replaced by the likeliest.
void ChooseFormats(platform::GraphicsInterface& graphics, Setup& setup, DeviceFormats& formats);

}  // namespace DXG
