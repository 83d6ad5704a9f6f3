#include "demo/world/Dreams.h"

#include <cmath>
#include <cstdlib>

#include "demo/world/Catalogue.h"
#include "demo/world/MapPainter.h"

namespace demo {

namespace {

constexpr int fileWidth = 36;
constexpr int fileHeight = 72;

Place EmptyDream(const char* name, const char* palette, const char* greeting) {
    return {.name = name,
            .mapPath = {},
            .palette = palette,
            .greeting = greeting,
            .map = WorldMap(fileWidth, fileHeight),
            .start = {},
            .doors = {},
            .labels = {},
            .inhabitants = {},
            .sundials = {},
            .eveningPalette = {},
            .livingGround = {}};
}

void BuildHall(MapPainter& p, int x0, int y0, int x1, int y1) {
    p.Floors(x0, y0, x1, y1, floors::Parquet);
    p.Walls(x0, y0, x1, y1, walls::Bookcase);
    p.Floors(x0 + 1, y0 + 2, x1 - 1, y1 - 2, floors::Carpet);
}

}  // namespace

Place MakeTideGarden(Cell wayBack) {
    Place dream = EmptyDream(tideGardenName, "tide.pcx", "(> Everything sways. You can breathe, oddly enough.");
    MapPainter p(dream.map);
    p.ForEach([&](int x, int y) {
        const double reef = std::sin(x * 0.5) + std::cos(y * 0.45) + std::hypot(x, y) / 14.0;
        p.Floor(x, y, reef > 2.4 ? floors::Water + static_cast<int>(3 * Scatter(x, y, 1)) : floors::Coral);
        const double luck = Scatter(x, y, 7);
        if (p.FloorAt(x, y) == floors::Coral && luck < 0.12)
            p.Object(x, y,
                     luck < 0.05    ? objects::Seaweed
                     : luck < 0.06  ? objects::Shell
                     : luck < 0.065 ? objects::Rock
                     : luck < 0.09  ? objects::CoralTree
                                    : objects::SeaFan);
    });
    p.Floors(-4, -4, 5, 5, floors::Crystal, 2);
    p.Floors(-1, -1, 2, 2, floors::Mosaic, 2);
    for (int y = -4; y < 5; ++y)
        for (int x = -4; x < 5; ++x)
            p.Object(x, y, 0);
    p.Walls(-4, -4, 5, 5, walls::Reef);
    for (int d = -1; d <= 1; ++d) {
        p.WallY(d, 5, walls::Gate);
        p.WallX(5, d, walls::RoseArch);
    }
    p.Floor(-3, -3, floors::Portal);
    p.Objects(objects::CrystalCluster, {{4, -4}, {-4, 4}});
    p.Object(2, -3, objects::Chest);
    p.Object(-3, 2, objects::Amphora);
    p.Object(8, 6, objects::Anchor);
    p.Objects(objects::BrokenColumn, {{7, -5}, {-6, 6}});
    dream.start = p.At(0, 1);
    dream.doors = {{p.At(-3, -3), townName, wayBack}};
    dream.labels = {{p.At(-3, -3), "Way back", "to Tessaly"}, {p.At(0, 8), "Reef", "watch your step"}};
    dream.inhabitants = {
        {"Nacre",
         "A seahorse with a lantern.",
         "45.+%0!#2&",
         p.At(2, 2),
         5,
         {"Bubbles.", ":lifts the lantern a little.", "The tide never comes in here. It never left."}}};
    return dream;
}

Place MakeStarLibrary(Cell wayBack) {
    Place dream = EmptyDream(starLibraryName, "stars.pcx", "(> Shelf upon shelf, and between them nothing but stars.");
    MapPainter p(dream.map);
    p.ForEach([&](int x, int y) { p.Floor(x, y, floors::Starfield + static_cast<int>(10 * Scatter(x, y, 2))); });
    BuildHall(p, -6, -6, 7, 7);
    BuildHall(p, 11, -4, 18, 5);
    BuildHall(p, -17, -4, -10, 5);
    // Crystal bridges between the halls.
    for (int x = 7; x < 11; ++x)
        p.Floors(x, 0, x + 1, 1, floors::Crystal, 2);
    for (int x = -10; x < -6; ++x)
        p.Floors(x, 0, x + 1, 1, floors::Crystal, 2);
    for (int x : {7, 11, -6, -10})
        p.WallX(x, 0, walls::Gate);
    for (int x = -4; x <= 4; x += 4) {
        p.WallX(x, -4, walls::Crystal);
        p.WallX(x, 4, walls::Crystal);
    }
    p.Object(0, 0, objects::Globe);
    p.Objects(objects::Lectern, {{3, 3}, {-3, 3}, {14, 0}});
    p.Objects(objects::CrystalCluster, {{-6, -6}, {6, -6}, {-6, 6}, {6, 6}, {17, -4}});
    p.Objects(objects::Bench, {{-2, -3}, {2, -3}});
    p.Objects(objects::Bookcase, {{-5, -6}, {-4, -6}, {4, -6}, {5, -6}, {12, -4}, {13, -4}, {-16, -4}, {-15, -4}});
    p.Objects(objects::Armchair, {{-1, -5}, {15, 2}});
    p.Objects(objects::Candelabra, {{-3, -6}, {3, -6}, {17, 4}, {-17, 4}});
    p.Objects(objects::BookPile, {{1, -5}, {16, 2}, {-12, 3}, {4, 5}});
    p.Objects(objects::StarLamp, {{-6, 2}, {6, 2}, {11, -2}, {-11, -2}});
    p.Objects(objects::Telescope, {{-4, 5}, {14, 3}});
    p.Object(0, 4, objects::Orrery);
    p.Objects(objects::ChartTable, {{-4, 1}, {-16, 2}});
    p.Object(-12, -4, objects::Clock);
    p.Object(14, -4, objects::Desk);
    p.Floor(-14, 0, floors::Portal);
    dream.start = p.At(0, 2);
    dream.doors = {{p.At(-14, 0), townName, wayBack}};
    dream.labels = {{p.At(-14, 0), "Way back", "to Tessaly"}, {p.At(14, 0), "Catalogue", "of everything"}};
    dream.inhabitants = {{"Folio",
                          "A librarian made of paper.",
                          ":=*+%6!#9&",
                          p.At(1, -2),
                          5,
                          {"Quiet, please. The stars are reading.", ":turns over a page of itself.",
                           "The way back is in the western hall."}}};
    return dream;
}

}  // namespace demo
