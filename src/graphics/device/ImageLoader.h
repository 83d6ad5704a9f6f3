#pragma once
// Image files decoded into plain pixels, for code that needs the pixels themselves.

#include <cstdint>
#include <string>

// The buffers come from the checked allocator.
class LoadedImage {
  public:
    LoadedImage() = default;
    ~LoadedImage();
    LoadedImage(const LoadedImage&) = delete;
    LoadedImage& operator=(const LoadedImage&) = delete;

    bool Load(const std::string& fileName);
    void Free();

    std::uint32_t* pixels = nullptr;  // width x height, row by row from the top, A8R8G8B8
    std::uint8_t* indices = nullptr;  // width x height palette indices of an 8-bit image, else null
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    int channels = 0;  // 1 indexed, 3 without alpha, 4 with
};
