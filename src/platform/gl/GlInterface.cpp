// Examining the hardware and making devices.

#include <SDL.h>
#include <epoxy/gl.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "platform/GraphicsDevice.h"
#include "platform/Window.h"
#include "platform/gl/GlContext.h"
#include "platform/gl/GlDevice.h"
#include "platform/gl/GlFormats.h"
#include "platform/gl/OpenGl.h"

namespace platform {

namespace gl {

namespace {

std::string TextOf(GLenum what) {
    const GLubyte* text = glGetString(what);
    return text ? reinterpret_cast<const char*>(text) : "";
}

// PCI vendor numbers by the name that the driver gives, or of the first card that the kernel lists.
std::uint32_t VendorId(const std::string& vendor, const std::string& renderer) {
    const auto says = [&](const char* name) { return vendor.find(name) != std::string::npos; };
    if (says("NVIDIA") || says("nouveau")) return 0x10DE;
    if (says("ATI") || says("AMD") || says("Advanced Micro")) return 0x1002;
    if (says("Intel")) return 0x8086;
    const bool software =
        renderer.find("llvmpipe") != std::string::npos || renderer.find("softpipe") != std::string::npos;
    if (software) return 0;
    std::ifstream file("/sys/class/drm/card0/device/vendor");
    std::uint32_t id = 0;
    file >> std::hex >> id;
    return file ? id : 0;
}

// "4.5 (Core Profile) Mesa 22.3.6" or "4.6.0 NVIDIA 535.183.01": the driver's own version after its name. The numbers
// go where Direct3D 9 has product, version and sub-version, so every driver of this system counts as newer than those
// that it warns of; one whose version cannot be read counts as version 10.
void ReadDriverVersion(const std::string& version, AdapterIdentity& out) {
    out.driverVersionHigh = 10U << 16;
    out.driverVersionLow = 0;
    for (const char* name : {"Mesa ", "NVIDIA "}) {
        const std::size_t at = version.find(name);
        unsigned numbers[3] = {};
        if (at == std::string::npos) continue;
        if (std::sscanf(version.c_str() + at + std::strlen(name), "%u.%u.%u", &numbers[0], &numbers[1], &numbers[2]) <
            1)
            continue;
        for (unsigned& number : numbers)
            number = std::min(number, 0xFFFFU);
        out.driverVersionHigh = numbers[0] << 16 | numbers[1];
        out.driverVersionLow = numbers[2] << 16;
    }
}

unsigned Limit(GLenum what) {
    GLint value = 0;
    glGetIntegerv(what, &value);
    return static_cast<unsigned>(std::max(value, 0));
}

// The framebuffer's channels, red to alpha; the X formats take any alpha.
bool HasChannels(const FramebufferBits& bits, int red, int green, int blue, int alpha) {
    return bits.red == red && bits.green == green && bits.blue == blue && bits.alpha >= alpha;
}

}  // namespace

class Interface : public GraphicsInterface {
  public:
    explicit Interface(std::shared_ptr<Context> toAsk) : context(std::move(toAsk)) {}

    bool ReadIdentity(unsigned adapter, AdapterIdentity& out) override {
        if (!Asks(adapter)) return false;
        out.description = TextOf(GL_RENDERER);
        out.vendorId = VendorId(TextOf(GL_VENDOR), out.description);
        ReadDriverVersion(TextOf(GL_VERSION), out);
        return true;
    }

    bool ReadCapabilities(unsigned adapter, DeviceCapabilities& out) override {
        if (!Asks(adapter)) return false;
        out.hardwareTransform = true;
        // GLSL 3.30 does all of shader model 3.
        out.pixelShaderMajor = 3;
        out.vertexShaderMajor = 3;
        out.cubeMaps = true;
        out.maxTextureWidth = Limit(GL_MAX_TEXTURE_SIZE);
        out.maxTextureHeight = out.maxTextureWidth;
        out.volumeTextures = true;
        out.volumePowerOfTwoOnly = false;
        out.maxVolumeExtent = Limit(GL_MAX_3D_TEXTURE_SIZE);
        out.maxStreams = Limit(GL_MAX_VERTEX_ATTRIBS);
        out.vertexDeclarations = true;
        out.maxRenderTargets = Limit(GL_MAX_DRAW_BUFFERS);
        return true;
    }

    bool CheckDeviceType(unsigned adapter, PixelFormat display, PixelFormat backBuffer, bool windowed) override {
        if (!windowed || display != backBuffer || !Asks(adapter)) return false;
        const FramebufferBits& bits = context->Bits();
        switch (backBuffer) {
            case PixelFormat::A2R10G10B10:
                return HasChannels(bits, 10, 10, 10, 2);
            case PixelFormat::X8R8G8B8:
                return HasChannels(bits, 8, 8, 8, 0);
            case PixelFormat::R5G6B5:
                return HasChannels(bits, 5, 6, 5, 0);
            case PixelFormat::X1R5G5B5:
                return HasChannels(bits, 5, 5, 5, 0);
            default:
                return false;
        }
    }

    bool CheckDepthFormat(unsigned adapter, PixelFormat, PixelFormat depth) override {
        if (!Asks(adapter)) return false;
        const FramebufferBits& bits = context->Bits();
        switch (depth) {
            case PixelFormat::D16:
                return bits.depth >= 16;
            case PixelFormat::D24X8:
                return bits.depth >= 24;
            case PixelFormat::D24S8:
                return bits.depth >= 24 && bits.stencil >= 8;
            case PixelFormat::D32:
                return bits.depth >= 32;
            case PixelFormat::D15S1:
                return bits.depth >= 15 && bits.depth < 24 && bits.stencil >= 1;
            default:
                return false;
        }
    }

    bool CheckTextureFormat(unsigned adapter, PixelFormat, PixelFormat texture) override {
        // Loading threads ask too: without the context, which is the drawing thread's.
        return adapter == 0 && FindFormat(texture) != nullptr;
    }

    DeviceResult CreateDevice(unsigned adapter, Window& window, VertexProcessing, bool, PresentParameters& parameters,
                              std::unique_ptr<GraphicsDevice>& out) override {
        if (adapter != 0) return DeviceResult::InvalidCall;
        if (!parameters.windowed) return DeviceResult::NotAvailable;
        const std::shared_ptr<Context> own = Context::Of(static_cast<SDL_Window*>(window.NativeHandle()));
        if (!own || !own->MakeCurrent()) return DeviceResult::NotAvailable;
        FillIn(*own, parameters);
        out = std::make_unique<Device>(own, parameters);
        return DeviceResult::Ok;
    }

  private:
    bool Asks(unsigned adapter) { return adapter == 0 && context->MakeCurrent(); }

    // What the caller leaves open.
    static void FillIn(const Context& own, PresentParameters& parameters) {
        int width = 0;
        int height = 0;
        own.DrawableSize(width, height);
        if (parameters.backBufferWidth == 0) parameters.backBufferWidth = static_cast<unsigned>(std::max(width, 1));
        if (parameters.backBufferHeight == 0) parameters.backBufferHeight = static_cast<unsigned>(std::max(height, 1));
        parameters.backBufferCount = std::max(parameters.backBufferCount, 1U);
    }

    std::shared_ptr<Context> context;
};

namespace {

std::unique_ptr<GraphicsInterface> MakeInterface() {
    std::shared_ptr<Context> context = Context::ForQuestions();
    return context ? std::make_unique<Interface>(std::move(context)) : nullptr;
}

}  // namespace

}  // namespace gl

void UseOpenGl() {
    SetGraphicsInterfaceFactory(gl::MakeInterface);
}

}  // namespace platform
