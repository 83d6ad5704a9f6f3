#include "demo/install/ColourFiles.h"

#include <cmath>

#include "demo/art/Canvas.h"

namespace demo {

namespace {

struct Hue {
    const char* name;
    unsigned code;
};

// Sixteen hues in four depths make the 64 colour numbers.
constexpr Hue hues[] = {{"white", 0xF2F2EC},  {"grey", 0x8A8F94},   {"brown", 0x8A5A2B},  {"red", 0xD9342B},
                        {"orange", 0xEE7F22}, {"amber", 0xF2B632},  {"yellow", 0xF5E04A}, {"lime", 0x9BCB3C},
                        {"green", 0x3E9B45},  {"teal", 0x2A9D8F},   {"cyan", 0x45C4DE},   {"blue", 0x3B6FD1},
                        {"indigo", 0x4B3FA0}, {"violet", 0x8E4CC2}, {"pink", 0xE77FB3},   {"black", 0x2A2A30}};
constexpr const char* depths[] = {"", "bright", "deep", "pale"};

Shade Deepen(Shade shade, std::size_t depth) {
    switch (depth) {
        case 1:
            return Mix(shade, {1.0, 1.0, 1.0}, 0.3);
        case 2:
            return shade * 0.6;
        case 3:
            return Mix(shade, {1.0, 1.0, 1.0}, 0.6);
        default:
            return shade;
    }
}

std::string Byte(double value) {
    return std::to_string(std::lround(value * 255.0));
}

}  // namespace

std::map<std::string, std::string> ColourFiles() {
    std::string names;
    std::string numbers;
    int number = 0;
    for (std::size_t depth = 0; depth < std::size(depths); ++depth)
        for (const Hue& hue : hues) {
            const std::string name = std::string(depths[depth]) + hue.name;
            const Shade shade = Deepen(Hex(hue.code), depth);
            names += name + " " + Byte(shade.red) + " " + Byte(shade.green) + " " + Byte(shade.blue) + "\n";
            numbers += std::to_string(number++) + " " + name + "\n";
        }
    std::map<std::string, std::string> files = {{"data/colors/colors.txt", names + "End\n"}};
    for (const char* part : {"badge", "bracer", "boot", "cape", "eye", "fur", "hair", "marking", "pants", "vest"})
        files[std::string("data/colors/") + part + ".txt"] = numbers + "-1\n";
    return files;
}

}  // namespace demo
