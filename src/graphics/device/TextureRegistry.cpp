#include "graphics/device/TextureRegistry.h"

#include <array>

#include "diag/CallStack.h"
#include "diag/LogFile.h"

namespace DXG {

namespace {

using platform::PixelFormat;

// What Set bound last; the device must not keep an object that goes.
std::array<platform::DeviceTexture*, textureStages> boundObjects{};

// Device objects must not outlive their device. The records stay with their handles, which are told off when they go.
void DropAllObjects() {
    const ScopedLock held(TextureRegistryLock());
    for (TextureRecord* record : SharedResource<TextureRecord>::Records()) {
        record->api.wentWithDevice = record->api.wentWithDevice || record->api.object;
        DropTextureObject(*record);
    }
}

}  // namespace

CriticalSection& TextureRegistryLock() {
    static CriticalSection* lock = new CriticalSection;  // outlives every static handle
    return *lock;
}

void BindTextureObject(unsigned stage, platform::DeviceTexture* object) {
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device || stage >= textureStages) return;
    boundObjects[stage] = object;
    device->SetTexture(stage, object);
}

void DropTextureObject(TextureRecord& record) {
    platform::GraphicsDevice* device = DeviceOrNull();
    for (unsigned stage = 0; stage < textureStages; ++stage) {
        if (!record.api.object || boundObjects[stage] != record.api.object.get()) continue;
        boundObjects[stage] = nullptr;
        if (device) device->SetTexture(stage, nullptr);
    }
    record.api.object.reset();
}

platform::DeviceResult MakeTextureObject(const platform::TextureRequest& request,
                                         std::unique_ptr<platform::DeviceTexture>& out) {
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device) return platform::DeviceResult::Failed;
    static const bool registered = (AddTeardownHook(DropAllObjects), true);
    (void)registered;
    const platform::DeviceResult result = device->CreateTexture(request, out);
    return result == platform::DeviceResult::Ok && !out ? platform::DeviceResult::Failed : result;
}

TextureType TypeOfFormat(PixelFormat format) {
    switch (format) {
        case PixelFormat::R8G8B8:
        case PixelFormat::X8R8G8B8:
        case PixelFormat::R5G6B5:
        case PixelFormat::X1R5G5B5:
        case PixelFormat::R3G3B2:
        case PixelFormat::X4R4G4B4:
        case PixelFormat::X8B8G8R8:
            return TextureType::Colour;
        case PixelFormat::A8R8G8B8:
        case PixelFormat::A1R5G5B5:
        case PixelFormat::A4R4G4B4:
        case PixelFormat::A8R3G3B2:
        case PixelFormat::A2B10G10R10:
        case PixelFormat::A8B8G8R8:
        case PixelFormat::A2R10G10B10:
        case PixelFormat::A16B16G16R16:
            return TextureType::ColourAlpha;
        case PixelFormat::A8:
        case PixelFormat::P8:
        case PixelFormat::L8:
            return TextureType::Alpha;
        default:
            break;
    }
    WriteReport(errorLog, "Internal DXG Error: unable to deduce texture type from d3d format\n", "  -stack:", false);
    return TextureType::ColourAlpha;
}

}  // namespace DXG
