#pragma once
// The examination of the hardware before a device is made, and the choice of the device's formats.

#include "graphics/device/DXGDevice.h"
#include "platform/GraphicsDevice.h"

namespace DXG {

struct DeviceFormats {
    platform::PixelFormat display = platform::PixelFormat::Unknown;  // kept from one start to the next as its fallback
    platform::PixelFormat depth = platform::PixelFormat::Unknown;
};

// Chooses display and depth format for `setup`, whose stencil wish is cleared when no format has a stencil. What cannot
// be found is reported and replaced by the likeliest.
void ChooseFormats(platform::GraphicsInterface& graphics, Setup& setup, DeviceFormats& formats);

// The capability results as they were before the first hardware check.
void ForgetCapabilities();

}  // namespace DXG
