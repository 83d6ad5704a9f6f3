// Draws the client's own pictures and the placeholder model: kelvane-make-data FOLDER, where FOLDER is data/ of the
// source tree.
//
// All sides are powers of two, because the client makes textures of them.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <numbers>
#include <string>
#include <vector>

#include "demo/art/Canvas.h"
#include "demo/art/PngFile.h"
#include "demo/formats/ByteWriter.h"
#include "demo/formats/ModelWriter.h"

namespace {

using demo::Hex;
using demo::Mix;
using demo::Shade;
using demo::Smooth;

struct Tone {
    Shade shade;
    double alpha = 1.0;
};

using Paint = std::function<Tone(double x, double y)>;

std::uint32_t Byte(double value) {
    return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255.0));
}

// Each pixel is the mean of sixteen places within it.
std::vector<std::uint32_t> Render(unsigned width, unsigned height, const Paint& paint) {
    constexpr int fine = 4;
    std::vector<std::uint32_t> argb;
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x) {
            Shade sum;
            double alpha = 0.0;
            for (int i = 0; i < fine * fine; ++i) {
                const int row = i / fine;
                const Tone tone = paint(x + (i % fine + 0.5) / fine, y + (row + 0.5) / fine);
                sum = sum + tone.shade * tone.alpha;
                alpha += tone.alpha;
            }
            const Shade mean = alpha > 0.0 ? sum * (1.0 / alpha) : Shade{};
            argb.push_back(Byte(alpha / (fine * fine)) << 24 | Byte(mean.red) << 16 | Byte(mean.green) << 8 |
                           Byte(mean.blue));
        }
    return argb;
}

// A 24-bit BMP, rows from the bottom; see the Windows bitmap header BITMAPINFOHEADER. Sides are multiples of four, so
// rows need no padding.
std::string Bmp(unsigned width, unsigned height, const std::vector<std::uint32_t>& argb) {
    const std::uint32_t pixelBytes = width * height * 3;
    demo::ByteWriter file;
    file.Bytes("BM").U32(54 + pixelBytes).U32(0).U32(54);
    file.U32(40).U32(width).U32(height).U16(1).U16(24).U32(0).U32(pixelBytes).U32(2835).U32(2835).U32(0).U32(0);
    for (unsigned y = height; y-- > 0;)
        for (unsigned x = 0; x < width; ++x) {
            const std::uint32_t pixel = argb[y * width + x];
            file.U8(pixel & 255).U8(pixel >> 8 & 255).U8(pixel >> 16 & 255);
        }
    return file.Str();
}

// Distance to a rectangle with round corners around the middle (cx, cy); negative inside.
double RoundBox(double x, double y, double cx, double cy, double halfWidth, double halfHeight, double radius) {
    const double dx = std::max(std::abs(x - cx) - halfWidth + radius, 0.0);
    const double dy = std::max(std::abs(y - cy) - halfHeight + radius, 0.0);
    return std::hypot(dx, dy) - radius;
}

// A brass pointer to the right. Pure black is the transparent colour, so every edge is hard and the outline is brown.
std::vector<std::uint32_t> Pointer() {
    std::vector<std::uint32_t> argb = Render(32, 32, [](double x, double y) {
        const double off = std::abs(y - 20.0);  // level with the line of text beside it
        const bool head = x > 14.0 && x < 30.0 && off < (30.0 - x) * 0.7;
        const bool shaft = x >= 3.0 && x <= 14.5 && off < 3.6 + 1.2 * std::sin(x * 0.9);
        if (!head && !shaft) return Tone{{}, 0.0};
        const double rim = head ? std::min((30.0 - x) * 0.7 - off, x - 14.0) : std::min({3.6 - off, x - 3.0});
        if (rim < 1.1 && !(shaft && x > 13.0)) return Tone{Hex(0x4A2E0E), 1.0};
        return Tone{Mix(Hex(0xF8DE8A), Hex(0xA8701E), (y - 9.0) / 22.0), 1.0};
    });
    for (std::uint32_t& pixel : argb)
        if (pixel >> 24 < 128) pixel = 0;
    return argb;
}

// The track: a groove in a dark frame; 23 pixels of the width are what the mouse can grasp.
Tone Track(double x, double y) {
    const double frame = RoundBox(x, y, 12.0, 128.0, 11.0, 127.0, 9.0);
    if (frame > 0.0) return {{}, 0.0};
    const double groove = RoundBox(x, y, 12.0, 128.0, 6.0, 121.0, 6.0);
    if (groove < 0.0) return {Mix(Hex(0x11141A), Hex(0x343C48), (x - 6.0) / 12.0), 0.9};
    if (frame > -1.5) return {Hex(0xD8B46A), 1.0};
    return {Mix(Hex(0x6A737F), Hex(0x3A424D), (x - 1.0) / 22.0), 0.85};
}

Tone Thumb(double x, double y) {
    const double box = RoundBox(x, y, 12.0, 16.0, 10.5, 15.0, 8.0);
    if (box > 0.0) return {{}, 0.0};
    if (box > -1.5) return {Hex(0x5A3B12), 1.0};
    const double ridge = std::abs(std::remainder(y - 16.0, 5.0));
    const double light = std::abs(y - 16.0) < 8.0 && ridge < 1.0 && std::abs(x - 12.0) < 6.0 ? 0.55 : 1.0;
    return {Mix(Hex(0xFBE7A8), Hex(0xC08A32), (x + y * 0.4 - 4.0) / 28.0) * light, 1.0};
}

// Squared stones, four courses to the picture, repeating both ways.
Tone Stone(double x, double y) {
    const double u = x / 128.0;
    const double v = y / 128.0;
    const int course = static_cast<int>(v * 5.0);
    const double along = u * 2.0 + 0.5 * (course % 2) + 0.13 * course;
    const double fx = along - std::floor(along);
    const double fy = v * 5.0 - course;
    const double rough = 0.05 * (demo::Clouds(u, v, 8, 3, 41) - 0.5);
    const double border = std::min({fx * 2.5, (1.0 - fx) * 2.5, fy, 1.0 - fy}) + rough;
    const double bevel = 0.16 * (Smooth(0.25, 0.06, fy) - Smooth(0.25, 0.06, 1.0 - fy));
    const double pick = demo::Noise(std::floor(std::fmod(along, 2.0)) / 2.0, course / 5.0, 10, 7);
    const Shade face = Mix(Hex(0x706A66), Hex(0xA9A092), pick) * (0.82 + bevel + 0.36 * demo::Clouds(u, v, 8, 4, 43));
    return {Mix(Hex(0x46423D), face, Smooth(0.03, 0.09, border)), 1.0};
}

// Light that rises in strands and fades upward; goes around the pillar without a seam.
Tone Pillar(double x, double y) {
    const double u = x / 128.0;
    const double v = y / 128.0;
    const double sway = 0.05 * std::sin(2.0 * std::numbers::pi * (v * 1.5 + u));
    const double strand = 0.5 + 0.5 * std::sin(2.0 * std::numbers::pi * (6.0 * (u + sway)) + 3.0 * v);
    const double mist = demo::Clouds(u + sway, v, 4, 4, 61);
    const demo::Pebble mote = demo::Pebbles(u, v, 9, 67);
    const double spark = mote.pick > 0.55 ? Smooth(0.12, 0.03, mote.nearest) : 0.0;
    const double rise = Smooth(0.0, 0.9, v);
    const double alpha = rise * (0.14 + 0.75 * strand * mist + 0.5 * spark) + 0.45 * Smooth(0.9, 1.0, v);
    return {Mix(Hex(0x58A8F0), Hex(0xF4FBFF), std::clamp(strand * mist + spark + 0.4 * Smooth(0.85, 1.0, v), 0.0, 1.0)),
            std::clamp(alpha, 0.0, 0.9)};
}

// How far (x, y) is from a stretch of a line.
double FromLine(double x, double y, double fromX, double fromY, double toX, double toY) {
    const double alongX = toX - fromX;
    const double alongY = toY - fromY;
    const double along = ((x - fromX) * alongX + (y - fromY) * alongY) / (alongX * alongX + alongY * alongY);
    const double nearest = std::clamp(along, 0.0, 1.0);
    return std::hypot(x - fromX - nearest * alongX, y - fromY - nearest * alongY);
}

// Strokes of a question mark around the middle of 128 x 128; negative inside.
double QuestionMark(double x, double y) {
    const double dx = x - 64.0;
    const double dy = y - 48.0;
    const bool leftOut = dx < 0.0 && dy > 0.0;  // the bow is open at the lower left
    const double bow = leftOut ? 1e9 : std::abs(std::hypot(dx, dy) - 18.0);
    const double stem = FromLine(x, y, 64.0, 66.0, 64.0, 78.0);
    return std::min({bow - 5.0, stem - 5.0, std::hypot(dx, y - 96.0) - 6.5});
}

// One side of a crate: planks in a frame with nails, and a question mark burnt in.
Tone Crate(double x, double y) {
    const double u = x / 128.0;
    const double v = y / 128.0;
    const double rim = std::min({x, y, 128.0 - x, 128.0 - y});
    const bool framed = rim < 14.0;
    const bool upright = std::min(x, 128.0 - x) < std::min(y, 128.0 - y);
    const double across = framed && upright ? x : y;
    const int plank = static_cast<int>(std::floor(y / 20.0));
    const double grain = upright && framed ? demo::Clouds(u * 3.0, v * 0.4, 12, 3, 87)
                                           : demo::Clouds(u * 0.4, v * 3.0 + 0.17 * plank, 12, 3, 83);
    Shade wood = Mix(Hex(0x9A6A34), Hex(0xD8A866), grain);
    if (!framed) wood = wood * (0.80 + 0.07 * (plank % 2) - 0.35 * Smooth(1.6, 0.2, std::fmod(across, 20.0)));
    if (framed) wood = wood * (1.02 - 0.4 * Smooth(2.5, 0.0, rim) - 0.25 * Smooth(12.8, 14.0, rim));
    if (!framed) wood = wood * (1.0 - 0.45 * Smooth(19.0, 14.0, rim));  // the frame's shadow
    const double nail = std::hypot(std::min(x, 128.0 - x) - 7.0, std::min(y, 128.0 - y) - 7.0);
    wood = Mix(wood, Hex(0x4A4038), Smooth(2.8, 1.8, nail));
    return {Mix(wood, Hex(0x3A2412), 0.85 * Smooth(0.9, -0.9, QuestionMark(x, y))), 1.0};
}

// What stands for objects without a model: a crate.
std::string Placeholder() {
    demo::ModelChunk chunk;
    chunk.textures.push_back({0, "placeholder.png"});
    chunk.AddBox({-0.34F, -0.34F, 0.0F}, {0.34F, 0.34F, 0.68F});
    demo::ModelDrawing model;
    model.meshes.push_back({"crate", {chunk}});
    model.bones.push_back({"root", "crate"});
    return demo::WriteModel(model);
}

bool WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
    std::ofstream file(path, std::ios::binary);
    file << bytes << std::flush;
    return file.good();
}

bool WritePictures(const std::filesystem::path& folder) {
    return WriteBytes(folder / "pickINI.bmp", Bmp(32, 32, Pointer())) &&
           WriteBytes(folder / "walls/stone1.bmp", Bmp(128, 128, Render(128, 128, Stone))) &&
           WriteBytes(folder / "items/placeholder.mbm", Placeholder()) &&
           demo::WritePngFile((folder / "items/placeholder.png").string(), 128, 128, Render(128, 128, Crate)) &&
           demo::WritePngFile((folder / "ui/sbar0.png").string(), 32, 256, Render(32, 256, Track)) &&
           demo::WritePngFile((folder / "ui/sbar1.png").string(), 32, 32, Render(32, 32, Thumb)) &&
           demo::WritePngFile((folder / "misc/dream0.png").string(), 128, 128, Render(128, 128, Pillar));
}

}  // namespace

int main(int count, char** words) {
    if (count != 2) {
        std::cerr << "usage: kelvane-make-data FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = words[1];
    std::error_code ignored;
    for (const char* part : {"ui", "misc", "walls", "items"})
        std::filesystem::create_directories(folder / part, ignored);
    if (WritePictures(folder)) return 0;
    std::cerr << "kelvane-make-data: a picture cannot be written\n";
    return 1;
}
