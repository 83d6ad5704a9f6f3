#pragma once
// Stands in for the image codec in programs that link this file: pictures come from a table instead of files.

#include <map>
#include <string>

#include "platform/ImageCodec.h"

struct FakePicture {
    platform::ImageStatus status = platform::ImageStatus::Ok;
    platform::ImagePixels image;
};

// By path, letter for letter.
std::map<std::string, FakePicture>& FakePictures();

// A picture of one colour; its pixels may be changed in place.
FakePicture& AddPicture(const std::string& path, unsigned width, unsigned height, platform::ImageLayout layout,
                        std::uint32_t argb = 0xFF808080U);
