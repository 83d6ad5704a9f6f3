#pragma once
// What the files of the texture module share.

#include <memory>

#include "diag/CThread.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/device/DXGTexture.h"

namespace DXG {

CriticalSection& TextureRegistryLock();

// Holds the graphics lock and then the texture registry's.
class TextureScope {
    ScopedLock graphics{GraphicsLock()};
    ScopedLock registry{TextureRegistryLock()};
};

// Makes the device's object; Failed while the foundation is down.
platform::DeviceResult MakeTextureObject(const platform::TextureRequest& request,
                                         std::unique_ptr<platform::DeviceTexture>& out);

// Type code of the format that a device gave.
TextureType TypeOfFormat(platform::PixelFormat format);

}  // namespace DXG
