#include "graphics/device/TexelFormats.h"

#include <algorithm>

#include "platform/PixelFormats.h"

namespace DXG {

namespace {

using platform::PixelFormat;

// Where a channel lies in a texel, low bit first; no bits: the format lacks it.
struct Channel {
    unsigned shift = 0;
    unsigned bits = 0;
};
struct TexelLayout {
    PixelFormat format;
    Channel alpha, red, green, blue;
};

// The names give the channels from the highest bit to the lowest; unused bits (X) are written as ones.
constexpr TexelLayout layouts[] = {
    {PixelFormat::A8R8G8B8, {24, 8}, {16, 8}, {8, 8}, {0, 8}},
    {PixelFormat::X8R8G8B8, {24, 8}, {16, 8}, {8, 8}, {0, 8}},
    {PixelFormat::A8B8G8R8, {24, 8}, {0, 8}, {8, 8}, {16, 8}},
    {PixelFormat::X8B8G8R8, {24, 8}, {0, 8}, {8, 8}, {16, 8}},
    {PixelFormat::R8G8B8, {}, {16, 8}, {8, 8}, {0, 8}},
    {PixelFormat::R5G6B5, {}, {11, 5}, {5, 6}, {0, 5}},
    {PixelFormat::X1R5G5B5, {15, 1}, {10, 5}, {5, 5}, {0, 5}},
    {PixelFormat::A1R5G5B5, {15, 1}, {10, 5}, {5, 5}, {0, 5}},
    {PixelFormat::A4R4G4B4, {12, 4}, {8, 4}, {4, 4}, {0, 4}},
    {PixelFormat::X4R4G4B4, {12, 4}, {8, 4}, {4, 4}, {0, 4}},
    {PixelFormat::R3G3B2, {}, {5, 3}, {2, 3}, {0, 2}},
    {PixelFormat::A8R3G3B2, {8, 8}, {5, 3}, {2, 3}, {0, 2}},
    {PixelFormat::A2R10G10B10, {30, 2}, {20, 10}, {10, 10}, {0, 10}},
    {PixelFormat::A2B10G10R10, {30, 2}, {0, 10}, {10, 10}, {20, 10}},
    {PixelFormat::A16B16G16R16, {48, 16}, {0, 16}, {16, 16}, {32, 16}},
    {PixelFormat::A8, {0, 8}, {}, {}, {}},
};

const TexelLayout* LayoutOf(PixelFormat format) {
    const auto* place = std::find_if(std::begin(layouts), std::end(layouts),
                                     [format](const TexelLayout& layout) { return layout.format == format; });
    return place == std::end(layouts) ? nullptr : place;
}

bool IsOpaque(PixelFormat format) {
    return format == PixelFormat::X8R8G8B8 || format == PixelFormat::X8B8G8R8 || format == PixelFormat::X1R5G5B5 ||
           format == PixelFormat::X4R4G4B4;
}

// Thresholds of a 4 x 4 ordered dither, 0 to 15.
constexpr unsigned thresholds[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};

// One 8-bit channel value in its place; `threshold` of 16 is added in the bits that go.
std::uint64_t Place(unsigned value, Channel channel, unsigned threshold) {
    if (channel.bits == 0) return 0;
    std::uint64_t scaled = 0;
    if (channel.bits <= 8) {
        const unsigned lost = 8 - channel.bits;
        scaled = std::min(value + ((threshold << lost) >> 4), 255U) >> lost;
    } else {
        scaled = std::uint64_t{value} * ((1U << channel.bits) - 1U) / 255U;
    }
    return scaled << channel.shift;
}

std::uint64_t Pack(std::uint32_t argb, const TexelLayout& layout, unsigned threshold) {
    const unsigned alpha = IsOpaque(layout.format) ? 255U : argb >> 24;
    return Place(alpha, layout.alpha, 0) | Place(argb >> 16 & 0xFF, layout.red, threshold) |
           Place(argb >> 8 & 0xFF, layout.green, threshold) | Place(argb & 0xFF, layout.blue, threshold);
}

}  // namespace

std::uint32_t BrightnessOf(std::uint32_t argb) {
    return (77 * (argb >> 16 & 0xFF) + 150 * (argb >> 8 & 0xFF) + 29 * (argb & 0xFF)) >> 8;
}

bool CanWriteFormat(platform::PixelFormat format) {
    return format == PixelFormat::L8 || LayoutOf(format);
}

bool WriteTexels(const PixelRectangle& from, platform::PixelFormat format, bool dither, unsigned char* out,
                 std::size_t rowPitch) {
    const TexelLayout* layout = LayoutOf(format);
    if (!CanWriteFormat(format)) return false;
    const std::size_t bytes = platform::BitsPerTexel(format) / 8;
    for (unsigned y = 0; y < from.height; ++y)
        for (unsigned x = 0; x < from.width; ++x) {
            const std::uint32_t argb = from.pixels[std::size_t{y} * from.width + x];
            std::uint64_t texel =
                layout ? Pack(argb, *layout, dither ? thresholds[y & 3][x & 3] : 0) : BrightnessOf(argb);
            unsigned char* place = out + y * rowPitch + x * bytes;
            for (std::size_t i = 0; i < bytes; ++i, texel >>= 8)
                place[i] = static_cast<unsigned char>(texel);
        }
    return true;
}

std::vector<std::uint32_t> HalfSize(const PixelRectangle& from, bool smooth) {
    const unsigned width = std::max(from.width / 2, 1U);
    const unsigned height = std::max(from.height / 2, 1U);
    std::vector<std::uint32_t> half(std::size_t{width} * height);
    const auto at = [&](unsigned x, unsigned y) {
        return from.pixels[std::size_t{std::min(y, from.height - 1)} * from.width + std::min(x, from.width - 1)];
    };
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x) {
            std::uint32_t& pixel = half[std::size_t{y} * width + x];
            pixel = at(2 * x, 2 * y);
            if (!smooth) continue;
            const std::uint32_t corners[] = {pixel, at(2 * x + 1, 2 * y), at(2 * x, 2 * y + 1),
                                             at(2 * x + 1, 2 * y + 1)};
            pixel = 0;
            for (unsigned shift = 0; shift < 32; shift += 8) {
                std::uint32_t sum = 2;  // rounds to the nearest
                for (const std::uint32_t corner : corners)
                    sum += corner >> shift & 0xFF;
                pixel |= sum / 4 << shift;
            }
        }
    return half;
}

}  // namespace DXG
