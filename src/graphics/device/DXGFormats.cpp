#include "graphics/device/DXGFormats.h"

#include <initializer_list>

#include "diag/LogFile.h"

namespace DXG {

namespace {

using platform::PixelFormat;

PixelFormat ChooseDisplay(platform::GraphicsInterface& graphics, const Setup& setup, PixelFormat before) {
    const std::initializer_list<PixelFormat> deep{PixelFormat::A2R10G10B10, PixelFormat::X8R8G8B8};
    const std::initializer_list<PixelFormat> shallow{PixelFormat::R5G6B5, PixelFormat::X1R5G5B5};
    for (const PixelFormat format : setup.colour32 ? deep : shallow)
        if (graphics.CheckDeviceType(setup.adapter, format, format, !setup.fullscreen)) return format;
    if (before != PixelFormat::Unknown) return before;
    errorLog.Write("No valid display formats available\n");
    errorLog.Write("Probably going to die... but never give up!  I'll just try a common 32 bit format anyways.\n");
    return PixelFormat::X8R8G8B8;
}

PixelFormat ChooseDepth(platform::GraphicsInterface& graphics, Setup& setup, PixelFormat display) {
    const auto firstOf = [&](std::initializer_list<PixelFormat> formats) {
        for (const PixelFormat format : formats)
            if (graphics.CheckDepthFormat(setup.adapter, display, format)) return format;
        return PixelFormat::Unknown;
    };
    if (setup.stencil) {
        const PixelFormat withStencil = firstOf({PixelFormat::D24S8, PixelFormat::D15S1});
        if (withStencil != PixelFormat::Unknown) return withStencil;
        setup.stencil = false;
        errorLog.Write(
            "Warning: Couldn't find compatible stencil buffer format... reverting to plain depth buffer formats.\n");
    }
    const PixelFormat plain = firstOf({PixelFormat::D32, PixelFormat::D24X8, PixelFormat::D24S8, PixelFormat::D16});
    if (plain != PixelFormat::Unknown) return plain;
    errorLog.Write("No valid z buffer formats available\n");
    errorLog.Write("This is bad... but never give up! I'll just pick somethething and try it anyways.\n");
    return PixelFormat::D16;
}

}  // namespace

void ChooseFormats(platform::GraphicsInterface& graphics, Setup& setup, DeviceFormats& formats) {
    formats.display = ChooseDisplay(graphics, setup, formats.display);
    formats.depth = ChooseDepth(graphics, setup, formats.display);
}

}  // namespace DXG
