#include "graphics/device/ImageLoader.h"

#include <algorithm>

#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "platform/ImageCodec.h"

LoadedImage::~LoadedImage() {
    Free();
}

void LoadedImage::Free() {
    if (pixels) delete2Array(pixels, "ImageLoader", __LINE__);
    if (indices) delete2Array(indices, "ImageLoader", __LINE__);
    pixels = nullptr;
    indices = nullptr;
    width = 0;
    height = 0;
    channels = 0;
}

namespace {

int ChannelsOf(platform::ImageLayout layout) {
    switch (layout) {
        case platform::ImageLayout::Indexed8:
            return 1;
        case platform::ImageLayout::Rgb24:
        case platform::ImageLayout::Rgb32:
            return 3;
        default:
            return 4;
    }
}

}  // namespace

bool LoadedImage::Load(const std::string& fileName) {
    Free();
    platform::ImagePixels image;
    const platform::ImageStatus status = platform::DecodeImageFile(fileName, image);
    const std::size_t count = std::size_t{image.width} * image.height;
    if (status != platform::ImageStatus::Ok || count == 0 || image.argb.size() != count) {
        ReportWithStack("Failed to load image: " + fileName + "\n");
        return false;
    }
    if (image.layout == platform::ImageLayout::Other)
        errorLog.Write("LoadedImage.Load warning: Exact pixel format not matched for purposes of channel count for: " +
                       fileName + "\n");
    pixels = new2Array<std::uint32_t>({"unsigned int", "unsigned int", "ImageLoader", __LINE__}, count);
    if (!pixels) return false;  // the allocator has said so
    std::copy(image.argb.begin(), image.argb.end(), pixels);
    channels = ChannelsOf(image.layout);
    if (channels == 1 && image.indices.size() == count) {
        indices = new2Array<std::uint8_t>({"unsigned char", "unsigned char", "ImageLoader", __LINE__}, count);
        if (indices) std::copy(image.indices.begin(), image.indices.end(), indices);
    } else if (channels == 1) {
        errorLog.Write("minor warning: thought we could use 8bpp... but it wouldn't work, for " + fileName +
                       ".  maybe a bug in ImageLoader.Load\n");
    }
    width = image.width;
    height = image.height;
    return true;
}
