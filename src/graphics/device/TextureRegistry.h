#pragma once
// What the files of the texture module share.

#include <memory>

#include "diag/CThread.h"
#include "graphics/device/DXGFoundation.h"
#include "graphics/device/TextureRecord.h"

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

inline constexpr unsigned textureStages = 8;
// Binds an object to a stage; nothing for other stages or while the foundation is down.
void BindTextureObject(unsigned stage, platform::DeviceTexture* object);
// Unbinds and destroys the record's object, if any.
void DropTextureObject(TextureRecord& record);

// Type code of the format that a device gave.
TextureType TypeOfFormat(platform::PixelFormat format);

}  // namespace DXG
