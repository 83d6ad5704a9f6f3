#pragma once
// The game's archives, filled with the demo world's pictures.

#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "demo/art/Sprites.h"
#include "demo/world/Place.h"

namespace demo {

class Archives {
  public:
    // Paints everything and chooses the palette; takes a second or so.
    Archives();

    // File contents by path below the installation folder, slashes between.
    [[nodiscard]] std::map<std::string, std::string> GameFiles();
    // A picture of the palette with these entries.
    [[nodiscard]] static std::string PaletteFile(const RgbPalette& entries);
    [[nodiscard]] static std::string MapFile(const WorldMap& map);
    // Small, with every kind of entry.
    [[nodiscard]] std::string TideGarden(const Place& dream);
    // Large: sprites of the greatest size, mostly stored as they are.
    [[nodiscard]] std::string StarLibrary(const Place& dream);

  private:
    using Numbered = std::vector<std::pair<unsigned, IndexedImage>>;

    // The two images of a wall, numbered for the archive whose first image serves the wall list's position
    // `firstPosition`.
    void AddWall(Numbered& images, int wall, int firstPosition);
    [[nodiscard]] Numbered FloorImages(std::initializer_list<int> numbers, unsigned side);
    [[nodiscard]] Numbered Mosaics();
    [[nodiscard]] std::string OldFloors();
    [[nodiscard]] std::string OldWalls();

    std::map<int, Canvas> floors;
    std::map<int, Canvas> extraFloors;
    std::map<int, Canvas> walls;
    RgbPalette palette{};
    SpriteMaker sprites;
};

}  // namespace demo
