#include "platform/ImageCodec.h"

#include <SDL.h>
#include <SDL_image.h>

#include <memory>
#include <mutex>
#include <new>
#include <string_view>

#include "platform/Caps.h"
#include "platform/FileSystem.h"
#include "platform/images/ImageHeader.h"

namespace platform {

using namespace std::string_view_literals;

namespace {

struct SurfaceFreer {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using Surface = std::unique_ptr<SDL_Surface, SurfaceFreer>;

// SDL_image's start of its decoders counts without a lock.
std::mutex& CodecLock() {
    static std::mutex lock;
    return lock;
}

// Reads and examines a file; the status is Ok when it can be decoded.
ImageStatus Examine(const std::string& path, std::string& bytes, ImageHeader& header) {
    if (FileLength(path) > caps::imageFileBytes) return ImageStatus::TooLarge;
    if (!ReadFileBytes(path, bytes, caps::imageFileBytes)) return ImageStatus::CannotOpen;
    header = ReadImageHeader(bytes, path);
    if (!header.decoder || header.width == 0 || header.height == 0) return ImageStatus::InvalidData;
    return header.width > caps::imageSide || header.height > caps::imageSide ? ImageStatus::TooLarge : ImageStatus::Ok;
}

Surface Decode(const std::string& bytes, const char* decoder) {
    const std::scoped_lock guard(CodecLock());
    SDL_RWops* source = SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
    return source ? Surface(IMG_LoadTyped_RW(source, 1, decoder)) : nullptr;
}

const std::uint8_t* RowOf(const SDL_Surface& surface, std::uint32_t row) {
    return static_cast<const std::uint8_t*>(surface.pixels) +
           std::size_t(row) * static_cast<std::size_t>(surface.pitch);
}

// The palette as A8R8G8B8, filled up to 256 with opaque black: an index may lie beyond the palette's end.
std::vector<std::uint32_t> PaletteOf(SDL_Surface& surface) {
    std::vector<std::uint32_t> colours(256, 0xFF000000);
    const SDL_Palette* palette = surface.format->palette;
    for (int at = 0; palette && at < palette->ncolors && at < 256; ++at) {
        const SDL_Color& colour = palette->colors[at];
        colours[static_cast<std::size_t>(at)] =
            std::uint32_t(colour.a) << 24 | std::uint32_t(colour.r) << 16 | std::uint32_t(colour.g) << 8 | colour.b;
    }
    Uint32 transparent = 0;
    if (SDL_GetColorKey(&surface, &transparent) == 0 && transparent < 256) colours[transparent] &= 0x00FFFFFF;
    return colours;
}

void TakeIndexed(SDL_Surface& surface, ImagePixels& out) {
    const std::vector<std::uint32_t> palette = PaletteOf(surface);
    for (std::uint32_t y = 0; y < out.height; ++y) {
        const std::uint8_t* row = RowOf(surface, y);
        for (std::uint32_t x = 0; x < out.width; ++x)
            out.argb.push_back(palette[row[x]]);
        if (out.layout == ImageLayout::Indexed8) out.indices.insert(out.indices.end(), row, row + out.width);
    }
}

bool TakeColours(SDL_Surface& surface, ImagePixels& out) {
    const Surface converted(SDL_ConvertSurfaceFormat(&surface, SDL_PIXELFORMAT_ARGB8888, 0));
    if (!converted) return false;
    // A fourth byte that the file does not call alpha is of no account.
    const std::uint32_t opaque = out.layout == ImageLayout::Rgb32 || out.layout == ImageLayout::Rgb24 ? 0xFF000000 : 0;
    for (std::uint32_t y = 0; y < out.height; ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(RowOf(*converted, y));
        for (std::uint32_t x = 0; x < out.width; ++x)
            out.argb.push_back(row[x] | opaque);
    }
    return true;
}

}  // namespace

ImageStatus DecodeImageFile(const std::string& path, ImagePixels& out) try {
    out = {};
    std::string bytes;
    ImageHeader header;
    if (const ImageStatus status = Examine(path, bytes, header); status != ImageStatus::Ok) return status;
    // From a PNG that is cut short SDL_image reads the last bytes over and over, for ever when they are a chunk that
    // is passed over.
    if (header.decoder == "PNG"sv && !HasPngEnd(bytes)) return ImageStatus::InvalidData;
    const Surface surface = Decode(bytes, header.decoder);
    if (!surface || surface->w <= 0 || surface->h <= 0) return ImageStatus::InvalidData;
    ImagePixels made;
    made.width = static_cast<std::uint32_t>(surface->w);
    made.height = static_cast<std::uint32_t>(surface->h);
    if (made.width > caps::imageSide || made.height > caps::imageSide) return ImageStatus::TooLarge;
    made.layout = header.layout;
    made.argb.reserve(std::size_t(made.width) * made.height);
    if (surface->format->format == SDL_PIXELFORMAT_INDEX8)
        TakeIndexed(*surface, made);
    else if (!TakeColours(*surface, made))
        return ImageStatus::InvalidData;
    out = std::move(made);
    return ImageStatus::Ok;
} catch (const std::bad_alloc&) {
    return ImageStatus::TooLarge;
}

ImageStatus ReadImageSize(const std::string& path, std::uint32_t& width, std::uint32_t& height) {
    width = 0;
    height = 0;
    std::string bytes;
    ImageHeader header;
    const ImageStatus status = Examine(path, bytes, header);
    if (status == ImageStatus::Ok) {
        width = header.width;
        height = header.height;
    }
    return status;
}

bool WritePng(const std::string& path, const std::uint32_t* argb, std::uint32_t width, std::uint32_t height) {
    if (!argb || width == 0 || height == 0 || width > caps::imageSide || height > caps::imageSide) return false;
    // SDL does not write to the pixels of a surface that it only saves.
    auto* pixels = const_cast<std::uint32_t*>(argb);
    const Surface surface(SDL_CreateRGBSurfaceWithFormatFrom(pixels, static_cast<int>(width), static_cast<int>(height),
                                                             32, static_cast<int>(width * 4),
                                                             SDL_PIXELFORMAT_ARGB8888));
    const std::scoped_lock guard(CodecLock());
    return surface && IMG_SavePNG(surface.get(), ResolvePath(path).c_str()) == 0;
}

}  // namespace platform
