#include "demo/install/Archives.h"

#include "demo/art/FloorArt.h"
#include "demo/art/Palettes.h"
#include "demo/art/WallArt.h"
#include "demo/formats/ArchiveWriter.h"
#include "demo/formats/MapWriter.h"
#include "demo/world/Catalogue.h"

namespace demo {

namespace {

constexpr unsigned floorSide = 112;
constexpr unsigned fineFloorSide = 255;
// Positions of the client's wall list that the first image of an archive serves.
constexpr int wallPosition = 7;
constexpr int castlePosition = 55;
constexpr unsigned oldWallImages = 48;
constexpr int firstBorderFloor = floors::GrassOverSand;

RgbPalette PaletteFor(std::initializer_list<const std::map<int, Canvas>*> collections) {
    std::vector<const Canvas*> pictures;
    for (const auto* collection : collections)
        for (const auto& [number, canvas] : *collection)
            pictures.push_back(&canvas);
    return ChoosePalette(pictures);
}

// What stands where an old archive, which cannot leave numbers out, has nothing: too small to be drawn.
IndexedImage NoImage() {
    return {1, 1, {0}};
}

std::string AboutText(const char* title) {
    std::string text = std::string(title) + "\n\n";
    for (int line = 0; line < 12; ++line)
        text += "A dream of the island of Tessaly, made for the demonstration.\n";
    return text;
}

}  // namespace

Archives::Archives()
    : floors(PaintFloors()),
      extraFloors(PaintExtraFloors()),
      walls(PaintWalls()),
      palette(PaletteFor({&floors, &extraFloors, &walls})),
      sprites(palette) {}

void Archives::AddWall(Numbered& images, int wall, int firstPosition) {
    for (const int position : {2 * wall - 1, 2 * wall})
        images.emplace_back(static_cast<unsigned>(position - firstPosition),
                            sprites.WallSprite(walls.at(wall), position));
}

Archives::Numbered Archives::FloorImages(std::initializer_list<int> numbers, unsigned side) {
    Numbered images;
    for (const int number : numbers)
        images.emplace_back(static_cast<unsigned>(number), sprites.FloorSprite(floors.at(number), side));
    return images;
}

Archives::Numbered Archives::Mosaics() {
    Numbered images;
    for (const int number : {1, 2})
        images.emplace_back(static_cast<unsigned>(number), sprites.FloorSprite(extraFloors.at(number), floorSide));
    return images;
}

std::string Archives::OldFloors() {
    std::vector<IndexedImage> images(floors::Outside + 1, NoImage());
    for (const auto& [number, canvas] : floors)
        if (number < firstBorderFloor || number == floors::Outside)
            images[static_cast<std::size_t>(number)] = sprites.FloorSprite(canvas, floorSide);
    return WriteTsh(images);
}

std::string Archives::OldWalls() {
    std::vector<IndexedImage> images(oldWallImages, NoImage());
    Numbered numbered;
    for (const auto& [wall, canvas] : walls)
        if (wall >= walls::Stone && wall <= walls::LastOfFirstArchive) AddWall(numbered, wall, wallPosition);
    for (auto& [number, image] : numbered)
        images[number] = std::move(image);
    return WriteTsh(images);
}

std::map<std::string, std::string> Archives::GameFiles() {
    std::map<std::string, std::string> files;
    const std::string folder = "patches/default/";
    files[folder + "floors.tsh"] = OldFloors();
    Numbered borders = FloorImages({floors::Sundial, floors::Portal}, floorSide);
    for (const auto& [number, canvas] : floors)
        if (number >= firstBorderFloor && number != floors::Outside)
            borders.emplace_back(static_cast<unsigned>(number), sprites.FloorSprite(canvas, floorSide));
    files[folder + "floors.ts2"] = WriteTs2(borders);
    files[folder + "floore.ts2"] = WriteTs2(Mosaics());

    files[folder + "wall.tsh"] = OldWalls();
    Numbered windows;
    AddWall(windows, walls::TimberWindow, wallPosition);
    AddWall(windows, walls::BrickWindow, wallPosition);
    files[folder + "wall.ts2"] = WriteTs2(windows);
    Numbered castle;
    AddWall(castle, walls::Castle, castlePosition);
    AddWall(castle, walls::CastleBanner, castlePosition);
    files[folder + "wall_1.ts2"] = WriteTs2(castle);

    // Of the ten junction images the client shows four: 9 and 6 for walls 1 and 3, 8 and 4 for wall 2.
    const Canvas& doorway = walls.at(walls::Doorway);
    const Canvas& arch = walls.at(walls::RoseArch);
    std::vector<IndexedImage> junctions;
    junctions.reserve(10);
    for (int image = 0; image < 10; ++image)
        junctions.push_back(sprites.WallSprite(doorway, image == 9 ? 1 : 2));
    files[folder + "junction.tsh"] = WriteTsh(junctions);
    files["junction.ts2"] = WriteTs2({{8, sprites.WallSprite(arch, 3)}, {4, sprites.WallSprite(arch, 4)}});

    for (const Mood& mood : Moods())
        files[folder + mood.fileName] = PaletteFile(Lit(palette, mood));
    return files;
}

std::string Archives::PaletteFile(const RgbPalette& entries) {
    constexpr unsigned side = 128;
    std::vector<std::uint8_t> swatches;
    for (unsigned y = 0; y < side; ++y)
        for (unsigned x = 0; x < side; ++x)
            swatches.push_back(static_cast<std::uint8_t>(y / 8 * 16 + x / 8));
    return WritePcx(side, side, swatches, entries);
}

std::string Archives::MapFile(const WorldMap& map) {
    MapDrawing drawing(map.FileWidth(), map.FileHeight());
    for (std::size_t i = 0; i < map.Cells().size(); ++i) {
        const CellContent& cell = map.Cells()[i];
        drawing.floors[i] = cell.floor;
        drawing.objects[i] = cell.object;
        drawing.lowXWalls[i] = cell.lowXWall;
        drawing.lowYWalls[i] = cell.lowYWall;
    }
    return WriteMap(drawing);
}

std::string Archives::TideGarden(const Place& dream) {
    Numbered reef;
    AddWall(reef, walls::Reef, wallPosition);
    const Numbered ground = FloorImages({floors::Coral, floors::Coral + 1, floors::Water}, floorSide);
    return WriteArchive({
        {"default.map", ArchiveMethod::Lzw, MapFile(dream.map)},
        {"floors.ts2", ArchiveMethod::Bzip2, WriteTs2(ground)},
        {"floore.ts2", ArchiveMethod::Lzw, WriteTs2(Mosaics())},
        {"wall.ts2", ArchiveMethod::Lzw, WriteTs2(reef)},
        {"notes\\about.txt", ArchiveMethod::Plain, AboutText("The Tide Garden")},
    });
}

std::string Archives::StarLibrary(const Place& dream) {
    Numbered shelves;
    AddWall(shelves, walls::Bookcase, wallPosition);
    AddWall(shelves, walls::Crystal, wallPosition);
    Numbered stars;
    for (const auto& [number, canvas] : extraFloors)
        stars.emplace_back(static_cast<unsigned>(number), sprites.FloorSprite(canvas, fineFloorSide));
    const Numbered ground = FloorImages(
        {floors::Crystal, floors::Crystal + 1, floors::Parquet, floors::Carpet, floors::Portal}, fineFloorSide);
    return WriteArchive({
        {"default.map", ArchiveMethod::Bzip2, MapFile(dream.map)},
        {"floors.ts2", ArchiveMethod::Plain, WriteTs2(ground)},
        {"floore.ts2", ArchiveMethod::Plain, WriteTs2(stars)},
        {"wall.ts2", ArchiveMethod::Lzw, WriteTs2(shelves)},
        {"notes\\about.txt", ArchiveMethod::Plain, AboutText("The Star Library")},
    });
}

}  // namespace demo
