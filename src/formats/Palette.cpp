#include "formats/Palette.h"

#include <cstddef>
#include <sstream>

#include "diag/LogFile.h"
#include "formats/CappedMessages.h"
#include "platform/Caps.h"
#include "platform/FileSystem.h"

Palette currentPalette;

namespace {

constexpr char colorsFile[] = "data\\colors\\colors.txt";

// In the order of BodyPart.
constexpr std::array<const char*, static_cast<std::size_t>(BodyPart::Count)> partFiles = {
    "data\\colors\\badge.txt", "data\\colors\\bracer.txt", "data\\colors\\boot.txt", "data\\colors\\cape.txt",
    "data\\colors\\eye.txt",   "data\\colors\\fur.txt",    "data\\colors\\hair.txt", "data\\colors\\marking.txt",
    "data\\colors\\pants.txt", "data\\colors\\vest.txt",
};

}  // namespace

ColorTable& GetColorTable(BodyPart part) {
    static std::array<ColorTable, static_cast<std::size_t>(BodyPart::Count)> tables;
    return tables[static_cast<std::size_t>(part)];
}

void LoadPcxPalette(const std::string& path) {
    std::array<std::uint8_t, 3 * 256> bytes{};
    platform::File file(path, platform::OpenMode::Read);
    if (!file.IsOpen()) {
        errorLog.Write("Failed to open file to read pcx palette (" + path + ")\n");
        return;
    }
    const std::uint64_t size = file.Size();
    if (size < bytes.size() || !file.Seek(size - bytes.size()) ||
        file.Read(bytes.data(), bytes.size()) < bytes.size()) {
        errorLog.Write("File is too short for a pcx palette (" + path + ")\n");
        return;
    }
    for (std::size_t i = 0; i < currentPalette.size(); ++i) {
        Color& color = currentPalette[i];
        color.red = bytes[3 * i];
        color.green = bytes[3 * i + 1];
        color.blue = bytes[3 * i + 2];
    }
}

// Words divided by white space: a name and three numbers each time, up to the word "End".
void LoadColorNames(ColorNames& names) {
    names.clear();
    std::string text;
    if (!platform::ReadFileText(colorsFile, text, caps::colourFileBytes)) {
        errorLog.Write("Failed to open data\\colors\\colors.txt to load color pairs.\n");
        return;
    }
    std::istringstream words(text);
    std::string name;
    while (words >> name && name != "End") {
        int red = 0;
        int green = 0;
        int blue = 0;
        if (!(words >> red >> green >> blue)) break;
        // Only the low 8 bits of each number count; a name given twice keeps its first color.
        names.emplace(name, Color{0, static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                                  static_cast<std::uint8_t>(blue)});
    }
    if (name != "End") errorLog.Write("Error in file data\\colors\\colors.txt, some colors may be wrong...\n");
}

// Words divided by white space: a color number and a color name each time, up to a negative number.
void LoadColorNumbers(const std::string& path, const ColorNames& names, ColorTable& table) {
    if (names.empty()) return;
    std::string text;
    if (!platform::ReadFileText(path, text, caps::colourFileBytes)) {
        errorLog.Write("Failed to open " + path + " to load color indices from.\n");
        return;
    }
    table.fill(Color{});
    std::istringstream words(text);
    CappedMessages messages(caps::repeatedMessages);
    int number = 0;
    std::string name;
    while (words >> number) {
        if (number < 0) return;
        if (!(words >> name)) break;
        if (static_cast<std::size_t>(number) >= table.size()) {
            messages.Add("Color index too high (" + std::to_string(number) + ") in file " + path +
                         "...  ignoring it.\n");
        } else if (const auto found = names.find(name); found != names.end()) {
            table[static_cast<std::size_t>(number)] = found->second;
        } else {
            std::erase(name, '\0');  // which would end the log's piece
            messages.Add("No such color (" + name + "), referanced in file " + path + "\n");
        }
    }
    messages.Flush();
    errorLog.Write("Error in file " + path + "\n");
}

void LoadCharacterColorTables() {
    ColorNames names;
    LoadColorNames(names);
    for (std::size_t i = 0; i < partFiles.size(); ++i)
        LoadColorNumbers(partFiles[i], names, GetColorTable(static_cast<BodyPart>(i)));
}
