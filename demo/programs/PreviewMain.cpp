// Draws what the client makes of an installation's files, without a graphics card: every texture on a sheet, or a view
// of a map as the client's camera has it. Characters, markers and items are left out.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "demo/art/PngFile.h"
#include "formats/DreamArchive.h"
#include "formats/Palette.h"
#include "formats/SpriteArchive.h"
#include "formats/TolvMap.h"
#include "world/SpriteTexels.h"

namespace {

constexpr const char* usage =
    "usage: kelvane-demo-preview FOLDER PICTURE.png [--palette NAME.pcx] [--dream NAME] [--at GX,GY] [--turn DEGREES]\n"
    "  Without --at a sheet of all textures.\n";

constexpr unsigned wallHeight = 128;
constexpr unsigned side = 64;
using Texels = std::vector<std::uint32_t>;

struct Vector {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

struct Textures {
    std::vector<Texels> floors;
    std::vector<Texels> walls;
};

struct Arguments {
    std::string folder;
    std::string picture;
    std::string palette = "day.pcx";
    std::string dream;
    int gx = 0;
    int gy = 0;
    bool view = false;
    double turn = 45.0;
};

bool Parse(int count, char** words, Arguments& arguments) {
    if (count < 3) return false;
    arguments.folder = words[1];
    arguments.picture = std::filesystem::absolute(words[2]).string();
    for (int i = 3; i + 1 < count; i += 2) {
        const std::string word = words[i];
        const std::string value = words[i + 1];
        if (word == "--palette")
            arguments.palette = value;
        else if (word == "--dream")
            arguments.dream = value;
        else if (word == "--turn")
            arguments.turn = std::atof(value.c_str());
        else if (word == "--at" && value.find(',') != std::string::npos) {
            arguments.view = true;
            arguments.gx = std::atoi(value.c_str());
            arguments.gy = std::atoi(value.c_str() + value.find(',') + 1);
        } else
            return false;
    }
    return count % 2 == 1;
}

void AddWall(Textures& textures, const SpriteImage* image) {
    const int index = static_cast<int>(textures.walls.size());
    textures.walls.emplace_back();
    if (image) (void)WallTexels(*image, index, side, wallHeight, textures.walls.back());
}

// The wall list as the client numbers it, up to wall_1.ts2.
Textures LoadTextures(const std::string& folder) {
    Textures textures;
    SpriteArchive floors;
    (void)LoadSpriteArchive(floors, folder + "floors.ts2");
    (void)LoadTs2(floors, folder + "floore.ts2", 500);
    for (const auto& image : floors.images) {
        textures.floors.emplace_back();
        if (image) (void)FloorTexels(*image, side, side, textures.floors.back());
    }
    AddWall(textures, nullptr);
    SpriteArchive junctions;
    (void)LoadSpriteArchive(junctions, "junction.ts2");
    for (const std::size_t number : {9U, 6U, 8U, 4U, 9U, 6U})
        AddWall(textures, number < junctions.images.size() ? junctions.images[number].get() : nullptr);
    for (const char* name : {"wall.ts2", "wall_1.ts2"}) {
        SpriteArchive archive;
        (void)LoadSpriteArchive(archive, folder + name);
        for (const auto& image : archive.images)
            AddWall(textures, image.get());
    }
    return textures;
}

std::uint32_t TexelAt(const Texels& texels, unsigned height, double u, double v) {
    const auto x = std::min(static_cast<unsigned>(u * side), side - 1);
    const auto y = std::min(static_cast<unsigned>(v * height), height - 1);
    return texels[y * side + x];
}

const Texels* Find(const std::vector<Texels>& list, int number) {
    const bool there = number >= 0 && static_cast<std::size_t>(number) < list.size();
    return there && !list[static_cast<std::size_t>(number)].empty() ? &list[static_cast<std::size_t>(number)] : nullptr;
}

// The first thing that a ray meets: walls stand on the planes between cells.
std::uint32_t Trace(const Textures& textures, Vector eye, Vector direction) {
    const TolvMap& map = TolvMap::Current();
    const double floorAt = -eye.z / direction.z;
    double nextX = (std::floor(eye.x + 0.5) + (direction.x > 0 ? 0.5 : -0.5) - eye.x) / direction.x;
    double nextY = (std::floor(eye.y + 0.5) + (direction.y > 0 ? 0.5 : -0.5) - eye.y) / direction.y;
    while (std::min(nextX, nextY) < floorAt) {
        const bool crossX = nextX < nextY;
        const double t = crossX ? nextX : nextY;
        (crossX ? nextX : nextY) += std::abs(1.0 / (crossX ? direction.x : direction.y));
        const Vector p{eye.x + t * direction.x, eye.y + t * direction.y, eye.z + t * direction.z};
        if (p.z > 2.0) continue;
        const int gx = static_cast<int>(std::floor(p.x + (crossX ? 0.75 : 0.5)));
        const int gy = static_cast<int>(std::floor(p.y + (crossX ? 0.5 : 0.75)));
        const int wall = crossX ? map.GetLowXWall(gx, gy) : map.GetLowYWall(gx, gy);
        const Texels* texels = wall > 0 ? Find(textures.walls, crossX ? 2 * wall : 2 * wall - 1) : nullptr;
        if (!texels) continue;
        const double u = crossX ? p.y - gy + 0.5 : p.x - gx + 0.5;
        const std::uint32_t texel = TexelAt(*texels, wallHeight, u, 1.0 - p.z / 2.0);
        if (texel >> 24 != 0) return texel;
    }
    const double x = eye.x + floorAt * direction.x + 0.5;
    const double y = eye.y + floorAt * direction.y + 0.5;
    const int floor = map.GetFloor(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)));
    const Texels* texels = Find(textures.floors, floor);
    return texels ? TexelAt(*texels, side, x - std::floor(x), y - std::floor(y)) : 0xFF000000U;
}

bool DrawView(const Arguments& arguments, const Textures& textures) {
    constexpr int width = 800;
    constexpr int height = 600;
    constexpr int fine = 2;  // rays per pixel each way
    const double angle = arguments.turn * 3.14159265 / 180.0;
    const Vector eye{arguments.gx + 6.8 * std::cos(angle), arguments.gy + 6.8 * std::sin(angle), 7.9};
    const double length = std::hypot(6.8, 7.9);
    const Vector forward{-6.8 * std::cos(angle) / length, -6.8 * std::sin(angle) / length, -7.9 / length};
    const Vector right{std::sin(angle), -std::cos(angle), 0.0};
    const Vector up{forward.y * right.z - forward.z * right.y, forward.z * right.x - forward.x * right.z,
                    forward.x * right.y - forward.y * right.x};
    const double half = std::tan(3.14159265 / 8.0);
    Texels picture;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            unsigned sums[3] = {};
            for (int ray = 0; ray < fine * fine; ++ray) {
                const int row = ray / fine;
                const double sx = ((x + (ray % fine + 0.5) / fine) / width * 2.0 - 1.0) * half * width / height;
                const double sy = ((y + (row + 0.5) / fine) / height * 2.0 - 1.0) * half;
                const double flip = up.z > 0 ? -sy : sy;
                const std::uint32_t texel =
                    Trace(textures, eye,
                          {forward.x + sx * right.x + flip * up.x, forward.y + sx * right.y + flip * up.y,
                           forward.z + sx * right.z + flip * up.z});
                for (unsigned channel = 0; channel < 3; ++channel)
                    sums[channel] += texel >> (8 * channel) & 255U;
            }
            picture.push_back(0xFF000000U | sums[2] / 4 << 16 | sums[1] / 4 << 8 | sums[0] / 4);
        }
    return demo::WritePngFile(arguments.picture, width, height, picture);
}

void Put(Texels& sheet, unsigned sheetWidth, unsigned left, unsigned top, const Texels& texels, unsigned height) {
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < side; ++x)
            if (texels[y * side + x] >> 24) sheet[(top + y) * sheetWidth + left + x] = texels[y * side + x];
}

bool DrawSheet(const Arguments& arguments, const Textures& textures) {
    constexpr unsigned columns = 16;
    constexpr unsigned width = columns * (side + 4);
    std::vector<const Texels*> floors;
    std::vector<const Texels*> walls;
    for (const Texels& texels : textures.floors)
        if (!texels.empty()) floors.push_back(&texels);
    for (const Texels& texels : textures.walls)
        if (!texels.empty()) walls.push_back(&texels);
    const unsigned floorRows = (static_cast<unsigned>(floors.size()) + columns - 1) / columns;
    const unsigned wallRows = (static_cast<unsigned>(walls.size()) + columns - 1) / columns;
    const unsigned height = floorRows * (side + 4) + wallRows * (wallHeight + 4);
    Texels sheet(std::size_t{width} * height, 0xFF30343AU);
    for (unsigned i = 0; i < floors.size(); ++i)
        Put(sheet, width, i % columns * (side + 4), i / columns * (side + 4), *floors[i], side);
    for (unsigned i = 0; i < walls.size(); ++i)
        Put(sheet, width, i % columns * (side + 4), floorRows * (side + 4) + i / columns * (wallHeight + 4), *walls[i],
            wallHeight);
    return demo::WritePngFile(arguments.picture, width, height, sheet);
}

int Run(const Arguments& arguments) {
    std::filesystem::current_path(arguments.folder);
    LoadPcxPalette("patches\\default\\" + arguments.palette);
    std::string graphics = "patches\\default\\";
    std::string map = "maps\\default.map";
    if (!arguments.dream.empty()) {
        graphics = "dreams\\";
        map = "dreams\\default.map";
        if (!UnpackDreamArchive("dreams\\" + arguments.dream + ".dream")) return 1;
    }
    if (!TolvMap::Current().LoadMap(map)) return 1;
    const Textures textures = LoadTextures(graphics);
    return (arguments.view ? DrawView(arguments, textures) : DrawSheet(arguments, textures)) ? 0 : 1;
}

}  // namespace

int main(int count, char** words) {
    Arguments arguments;
    if (!Parse(count, words, arguments)) {
        std::cerr << usage;
        return 2;
    }
    try {
        return Run(arguments);
    } catch (const std::exception& failure) {
        std::cerr << "kelvane-demo-preview: " << failure.what() << "\n";
        return 1;
    }
}
