// The words for enumeration values in recorded calls.

#include <array>

#include "platform/scripted/ScriptedDevice.h"

namespace platform {

const char* NameOf(PixelFormat format) {
    static constexpr std::array names{
        "Unknown",      "R8G8B8", "A8R8G8B8", "X8R8G8B8", "R5G6B5",      "X1R5G5B5", "A1R5G5B5", "A4R4G4B4",
        "R3G3B2",       "A8",     "A8R3G3B2", "X4R4G4B4", "A2B10G10R10", "A8B8G8R8", "X8B8G8R8", "A2R10G10B10",
        "A16B16G16R16", "P8",     "L8",       "D16",      "D32",         "D15S1",    "D24S8",    "D24X8",
    };
    static_assert(names.size() == static_cast<std::size_t>(PixelFormat::D24X8) + 1);
    return names.at(static_cast<std::size_t>(format));
}

const char* NameOf(RenderState state) {
    static constexpr std::array names{
        "DepthTest",        "DepthWrite",    "AlphaBlend",    "AlphaTest",
        "Stencil",          "Lighting",      "Fill",          "ColourWrite",
        "TwoSidedStencil",  "Clipping",      "Shade",         "Cull",
        "AlphaReference",   "AlphaFunction", "DepthFunction", "BlendSource",
        "BlendDestination",
    };
    static_assert(names.size() == static_cast<std::size_t>(RenderState::Count));
    return names.at(static_cast<std::size_t>(state));
}

const char* NameOf(Primitive primitive) {
    static constexpr std::array names{"Points", "Lines", "Triangles", "TriangleFan"};
    return names.at(static_cast<std::size_t>(primitive));
}

}  // namespace platform
