#include "platform/gl/GlFormats.h"

namespace platform::gl {

namespace {

// Colour formats of 8 bits or less share one format of the card: each further one would cost the driver new variants of
// every program.
constexpr FormatInfo formats[] = {
    {PixelFormat::A8R8G8B8, 4, GL_RGBA8, GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV},
    {PixelFormat::X8R8G8B8, 4, GL_RGBA8, GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV, {GL_RED, GL_GREEN, GL_BLUE, GL_ONE}},
    {PixelFormat::A8B8G8R8, 4, GL_RGBA8, GL_RGBA, GL_UNSIGNED_INT_8_8_8_8_REV},
    {PixelFormat::X8B8G8R8, 4, GL_RGBA8, GL_RGBA, GL_UNSIGNED_INT_8_8_8_8_REV, {GL_RED, GL_GREEN, GL_BLUE, GL_ONE}},
    {PixelFormat::R8G8B8, 3, GL_RGBA8, GL_BGR, GL_UNSIGNED_BYTE},
    {PixelFormat::R5G6B5, 2, GL_RGBA8, GL_RGB, GL_UNSIGNED_SHORT_5_6_5},
    {PixelFormat::A1R5G5B5, 2, GL_RGBA8, GL_BGRA, GL_UNSIGNED_SHORT_1_5_5_5_REV},
    {PixelFormat::X1R5G5B5, 2, GL_RGBA8, GL_BGRA, GL_UNSIGNED_SHORT_1_5_5_5_REV, {GL_RED, GL_GREEN, GL_BLUE, GL_ONE}},
    {PixelFormat::A4R4G4B4, 2, GL_RGBA8, GL_BGRA, GL_UNSIGNED_SHORT_4_4_4_4_REV},
    {PixelFormat::X4R4G4B4, 2, GL_RGBA8, GL_BGRA, GL_UNSIGNED_SHORT_4_4_4_4_REV, {GL_RED, GL_GREEN, GL_BLUE, GL_ONE}},
    {PixelFormat::R3G3B2, 1, GL_RGBA8, GL_RGB, GL_UNSIGNED_BYTE_3_3_2},
    {PixelFormat::A2R10G10B10, 4, GL_RGB10_A2, GL_BGRA, GL_UNSIGNED_INT_2_10_10_10_REV},
    {PixelFormat::A2B10G10R10, 4, GL_RGB10_A2, GL_RGBA, GL_UNSIGNED_INT_2_10_10_10_REV},
    {PixelFormat::A16B16G16R16, 8, GL_RGBA16, GL_RGBA, GL_UNSIGNED_SHORT},
    {PixelFormat::A8, 1, GL_R8, GL_RED, GL_UNSIGNED_BYTE, {GL_ZERO, GL_ZERO, GL_ZERO, GL_RED}},
    {PixelFormat::L8, 1, GL_R8, GL_RED, GL_UNSIGNED_BYTE, {GL_RED, GL_RED, GL_RED, GL_ONE}},
};

}  // namespace

const FormatInfo* FindFormat(PixelFormat format) {
    for (const FormatInfo& info : formats)
        if (info.format == format) return &info;
    return nullptr;
}

}  // namespace platform::gl
