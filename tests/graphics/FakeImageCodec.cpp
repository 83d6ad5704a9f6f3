#include "graphics/FakeImageCodec.h"

std::map<std::string, FakePicture>& FakePictures() {
    static std::map<std::string, FakePicture> pictures;
    return pictures;
}

FakePicture& AddPicture(const std::string& path, unsigned width, unsigned height, platform::ImageLayout layout,
                        std::uint32_t argb) {
    FakePicture& picture = FakePictures()[path];
    picture = FakePicture();
    picture.image.width = width;
    picture.image.height = height;
    picture.image.layout = layout;
    picture.image.argb.assign(std::size_t{width} * height, argb);
    if (layout == platform::ImageLayout::Indexed8) picture.image.indices.assign(picture.image.argb.size(), 7);
    return picture;
}

namespace platform {

ImageStatus DecodeImageFile(const std::string& path, ImagePixels& out) {
    const auto place = FakePictures().find(path);
    if (place == FakePictures().end()) return ImageStatus::CannotOpen;
    out = place->second.image;
    return place->second.status;
}

// The size can be read of pictures whose content is damaged.
ImageStatus ReadImageSize(const std::string& path, std::uint32_t& width, std::uint32_t& height) {
    const auto place = FakePictures().find(path);
    if (place == FakePictures().end()) return ImageStatus::CannotOpen;
    width = place->second.image.width;
    height = place->second.image.height;
    return ImageStatus::Ok;
}

}  // namespace platform
