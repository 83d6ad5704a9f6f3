// Sprites into textures' texels, against pixman's bilinear transform of the same shapes.

#include <benchmark/benchmark.h>
#include <pixman.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

#include "formats/Palette.h"
#include "world/SpriteTexels.h"

namespace {

constexpr int floorCount = 750;
constexpr int wallCount = 400;

SpriteImage Sprite(unsigned width, unsigned height) {
    SpriteImage sprite;
    sprite.rows.assign(height, std::vector<std::uint8_t>(width));
    std::uint32_t state = width * 131 + height;
    for (auto& row : sprite.rows)
        for (auto& pixel : row)
            pixel = static_cast<std::uint8_t>((state = state * 1664525U + 1013904223U) >> 24);
    return sprite;
}

// Sprites as large as the game's: floor diamonds of 62 x 32, walls of 32 x 90.
void ConvertFloors() {
    static const SpriteImage sprite = Sprite(62, 32);
    std::vector<std::uint32_t> texels;
    SpriteConverter converter(64, 64);
    for (int i = 0; i < floorCount; ++i) {
        converter.Floor(sprite, texels);
        benchmark::DoNotOptimize(texels.data());
    }
}

void ConvertWalls() {
    static const SpriteImage sprite = Sprite(32, 90);
    std::vector<std::uint32_t> texels;
    SpriteConverter converter(64, 128);
    for (int i = 0; i < wallCount; ++i) {
        converter.Wall(sprite, i, texels);
        benchmark::DoNotOptimize(texels.data());
    }
}

// The same mapping from texels to sprite pixels as an affine transform of a 32-bit picture.
class PixmanTransform {
  public:
    PixmanTransform(int spriteWidth, int spriteHeight, int newWidth, int newHeight, const pixman_f_transform& mapping)
        : width(newWidth),
          height(newHeight),
          pixels(static_cast<std::size_t>(spriteWidth * spriteHeight), 0xFF336699U),
          texels(static_cast<std::size_t>(newWidth * newHeight)),
          source(pixman_image_create_bits(PIXMAN_a8r8g8b8, spriteWidth, spriteHeight, pixels.data(), spriteWidth * 4)),
          target(pixman_image_create_bits(PIXMAN_a8r8g8b8, newWidth, newHeight, texels.data(), newWidth * 4)) {
        pixman_transform_t fixed;
        pixman_transform_from_pixman_f_transform(&fixed, &mapping);
        pixman_image_set_transform(source, &fixed);
        pixman_image_set_filter(source, PIXMAN_FILTER_BILINEAR, nullptr, 0);
    }
    ~PixmanTransform() {
        pixman_image_unref(source);
        pixman_image_unref(target);
    }
    PixmanTransform(const PixmanTransform&) = delete;
    PixmanTransform& operator=(const PixmanTransform&) = delete;

    void Run() {
        pixman_image_composite32(PIXMAN_OP_SRC, source, nullptr, target, 0, 0, 0, 0, 0, 0, width, height);
        benchmark::DoNotOptimize(texels.data());
    }

  private:
    int width;
    int height;
    std::vector<std::uint32_t> pixels;
    std::vector<std::uint32_t> texels;
    pixman_image_t* source;
    pixman_image_t* target;
};

void PixmanFloors() {
    const double k = 0.70710678 / (1.41421356 * 1.025);
    const pixman_f_transform mapping = {
        {{k * 62 / 64, -k * 62 / 64, 31}, {k * 32 / 64, k * 32 / 64, 16 - k * 32}, {0, 0, 1}}};
    static PixmanTransform transform(62, 32, 64, 64, mapping);
    for (int i = 0; i < floorCount; ++i)
        transform.Run();
}

void PixmanWalls() {
    const pixman_f_transform mapping = {
        {{0.5 * 32 / 64, 0, 0}, {0.225 * 90 / 64, 0.9 * 90 / 128, -0.1 * 90}, {0, 0, 1}}};
    static PixmanTransform transform(32, 90, 64, 128, mapping);
    for (int i = 0; i < wallCount; ++i)
        transform.Run();
}

template <void (*work)()>
void Timed(benchmark::State& state) {
    for (auto step : state) {
        (void)step;
        work();
    }
}
BENCHMARK(Timed<ConvertFloors>)->Name("750 floors 64x64/SpriteConverter")->Unit(benchmark::kMillisecond);
BENCHMARK(Timed<PixmanFloors>)->Name("750 floors 64x64/pixman")->Unit(benchmark::kMillisecond);
BENCHMARK(Timed<ConvertWalls>)->Name("400 walls 64x128/SpriteConverter")->Unit(benchmark::kMillisecond);
BENCHMARK(Timed<PixmanWalls>)->Name("400 walls 64x128/pixman")->Unit(benchmark::kMillisecond);

// The best of several turns, taken in turns, so that both meet the same machine.
void PrintRatio(const char* name, void (*ours)(), void (*pixmans)()) {
    const auto seconds = [](void (*work)()) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    double best[2] = {1e9, 1e9};
    for (int turn = 0; turn < 15; ++turn) {
        best[0] = std::min(best[0], seconds(ours));
        best[1] = std::min(best[1], seconds(pixmans));
    }
    std::printf("%s: %.2f times the speed of pixman (%.2f ms against %.2f ms)\n", name, best[1] / best[0],
                best[0] * 1e3, best[1] * 1e3);
}

}  // namespace

int main(int argc, char** argv) {
    std::uint8_t level = 0;
    for (Color& color : currentPalette)
        color = {0, level++, 100, 200};
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    PrintRatio("750 floors 64x64", ConvertFloors, PixmanFloors);
    PrintRatio("400 walls 64x128", ConvertWalls, PixmanWalls);
}
