#pragma once
// Texture formats: how OpenGL takes texels as Direct3D 9 lays them out.

#include <epoxy/gl.h>

#include <cstddef>

#include "platform/GraphicsDevice.h"

namespace platform::gl {

struct FormatInfo {
    PixelFormat format = PixelFormat::Unknown;
    unsigned bytes = 0;  // per texel
    GLenum internalFormat = 0;
    GLenum components = 0;
    GLenum type = 0;
    GLint swizzle[4] = {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA};
};

// Null when textures of the format cannot be made.
const FormatInfo* FindFormat(PixelFormat format);

// Bytes of a row of texels: rows begin at multiples of 4, as OpenGL takes them.
inline std::size_t RowPitch(const FormatInfo& info, unsigned width) {
    return (std::size_t(width) * info.bytes + 3) / 4 * 4;
}

}  // namespace platform::gl
