#pragma once
// The current palette and the colour tables of the body parts.

#include <array>
#include <cstdint>
#include <map>
#include <string>

struct Color {
    std::uint8_t lead = 0;  // always 0
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

using Palette = std::array<Color, 256>;
using ColorTable = std::array<Color, 64>;
using ColorNames = std::map<std::string, Color>;

extern Palette currentPalette;  // black until the first palette is loaded

// In the order in which their files are loaded.
enum class BodyPart { Badge, Bracer, Boot, Cape, Eye, Fur, Hair, Marking, Pants, Vest, Count };
ColorTable& GetColorTable(BodyPart part);

// The last 768 bytes of a PCX file. A file that cannot be opened or is shorter leaves the palette alone, with a
// message.
void LoadPcxPalette(const std::string& path);
void LoadColorNames(ColorNames& names);
void LoadColorNumbers(const std::string& path, const ColorNames& names, ColorTable& table);
void LoadCharacterColorTables();
