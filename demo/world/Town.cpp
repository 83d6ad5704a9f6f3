#include "demo/world/Town.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "demo/world/Catalogue.h"
#include "demo/world/MapPainter.h"

namespace demo {

namespace {

constexpr int fileWidth = 64;
constexpr int fileHeight = 128;

struct Point {
    double x;
    double y;
};

double DistanceToLine(Point p, Point a, Point b) {
    const Point d{b.x - a.x, b.y - a.y};
    const double t = std::clamp(((p.x - a.x) * d.x + (p.y - a.y) * d.y) / (d.x * d.x + d.y * d.y), 0.0, 1.0);
    return std::hypot(p.x - a.x - t * d.x, p.y - a.y - t * d.y);
}

double Wobble(double x, double y) {
    return std::sin(x * 0.7 + y * 0.3) + std::sin(y * 0.9 - x * 0.4);
}

// How far a corner is from open water; negative in the water. The lake lies to the east, the river leaves it
// southwards.
double DistanceToWater(double x, double y) {
    const double lake = std::hypot((x - 21.0) / 1.25, y + 17.0) - 8.0 + 0.6 * Wobble(x, y);
    const double river = y > -17.0 ? std::abs(x - 20.0 - 1.8 * std::sin(y / 6.0)) - 2.1 + 0.2 * Wobble(x, y) : 99.0;
    return std::min(lake, river);
}

bool IsOnStreet(double x, double y) {
    const Point p{x, y};
    return (std::abs(x) <= 7.0 && std::abs(y) <= 7.0) || DistanceToLine(p, {-24.0, 2.0}, {33.0, 2.0}) < 1.3 ||
           DistanceToLine(p, {1.0, -27.0}, {1.0, 22.0}) < 1.3 || DistanceToLine(p, {-9.0, -2.0}, {-6.0, -2.0}) < 0.8 ||
           DistanceToLine(p, {-3.0, -8.0}, {-3.0, -6.0}) < 0.8;
}

double DistanceToPath(double x, double y) {
    const Point p{x, y};
    return std::min({DistanceToLine(p, {-24.0, 2.0}, {-29.0, 8.0}), DistanceToLine(p, {-29.0, 8.5}, {-31.0, 8.5}),
                     DistanceToLine(p, {1.0, 20.0}, {-8.0, 25.0}), DistanceToLine(p, {30.0, 2.0}, {30.0, -8.0}),
                     DistanceToLine(p, {30.0, 2.0}, {33.0, 14.0}), 0.2 + DistanceToLine(p, {1.0, 14.0}, {8.0, 14.0}),
                     0.2 + DistanceToLine(p, {-15.0, 0.0}, {-15.0, 2.0})});
}

Ground TownGround(int cornerX, int cornerY) {
    // Corners lie half a cell before the middle of their cell.
    const double x = cornerX - 0.5;
    const double y = cornerY - 0.5;
    const double water = DistanceToWater(x, y);
    if (water < 0.0) return Ground::Water;
    if (water < 2.2) return Ground::Sand;
    const double landing = std::hypot(x - 29.5, y + 11.0) - 2.6 + 0.3 * Wobble(x, y);
    if (landing < 0.0) return Ground::Sand;
    if (water < 3.4 || landing < 1.5) return Ground::Grass;
    if (IsOnStreet(x, y)) return Ground::Cobble;
    const double path = DistanceToPath(x, y);
    if (path < 1.0) return Ground::Dirt;
    const double edge = 60.0 - std::max(std::abs(x + y), std::abs(x - y)) + 2.0 * Wobble(x / 2.0, y / 2.0);
    const double wood = x + 13.0 + 2.5 * Wobble(x / 2.0, y / 2.0) + 0.05 * y * y;
    // Grass lies along every way through the wood.
    return path > 2.4 && (edge < 10.0 || wood < 0.0) && std::abs(y - 1.5) > 3.5 ? Ground::Wood : Ground::Grass;
}

// A house with a parlour and a kitchen, its doors toward the square.
void BuildBakery(MapPainter& p) {
    p.Floors(-9, -15, -1, -8, floors::Planks, 2);
    p.Floors(-9, -15, -5, -8, floors::Chequer);
    p.Walls(-9, -15, -1, -8, walls::Timber, walls::TimberWindow);
    for (int y = -15; y < -8; ++y)
        p.WallX(-5, y, walls::TimberBrace);
    p.WallX(-5, -11, walls::Doorway);
    p.WallY(-3, -8, walls::Doorway);
    p.WallX(-1, -12, walls::Gate);
    p.Floors(-4, -13, -2, -11, floors::Carpet);
    p.Floor(-9, -15, floors::Hearth);
    p.Objects(objects::Stove, {{-9, -15}, {-8, -15}});
    p.Objects(objects::Table, {{-3, -14}, {-7, -12}});
    p.Objects(objects::Chair, {{-3, -15}, {-7, -13}});
    p.Objects(objects::ChairBack, {{-3, -13}, {-7, -11}});
    p.Object(-6, -15, objects::Shelf);
    p.Objects(objects::ShelfEast, {{-9, -12}, {-9, -11}});
    p.Object(-9, -9, objects::Barrel);
    p.Object(-8, -9, objects::ClosedBarrel);
    p.Object(-9, -10, objects::Sacks);
    p.Object(-6, -9, objects::FruitCrate);
    p.Object(-6, -12, objects::Basket);
    p.Object(-5, -15, objects::Fireplace);
    p.Object(-5, -13, objects::Armchair);
    p.Object(-2, -15, objects::Clock);
    p.Object(-5, -9, objects::Candelabra);
    p.Objects(objects::Flowerpot, {{-5, -7}, {-1, -7}});
    p.Object(-4, -7, objects::BakerySign);
}

// Brick, two rooms and a bed.
void BuildCottage(MapPainter& p) {
    p.Floors(-17, -6, -9, 0, floors::PlanksAcross);
    p.Walls(-17, -6, -9, 0, walls::Brick, walls::BrickWindow);
    for (int x = -17; x < -9; ++x)
        p.WallY(x, -3, walls::Timber);
    p.WallY(-12, -3, walls::Doorway);
    p.WallX(-9, -2, walls::Doorway);
    p.WallY(-15, 0, walls::Doorway);
    p.Floors(-15, -2, -12, 0, floors::Carpet);
    p.Objects(objects::Bed, {{-17, -6}, {-15, -6}});
    p.Object(-16, -6, objects::Chest);
    p.Object(-13, -6, objects::Wardrobe);
    p.Object(-11, -6, objects::Shelf);
    p.Object(-10, -6, objects::Bookcase);
    p.Object(-10, -5, objects::Desk);
    p.Object(-10, -4, objects::ChairBack);
    p.Object(-17, -3, objects::Fireplace);
    p.Object(-16, -2, objects::Armchair);
    p.Object(-14, -3, objects::Bookcase);
    p.Object(-13, -3, objects::Clock);
    p.Object(-10, -1, objects::Easel);
    p.Object(-17, -1, objects::Candelabra);
    p.Object(-8, -4, objects::Lamp);
    p.Object(-8, -3, objects::Mailbox);
    p.Object(-18, -5, objects::LogPile);
    p.Objects(objects::Planter, {{-17, 0}, {-13, 0}, {-11, 0}});
    p.Objects(objects::Beehive, {{-20, -5}, {-20, -3}});
    p.Objects(objects::CherryTree, {{-19, -8}, {-7, 0}});
}

// Castle walls to the north with a gate, and the smithy in their shelter.
void BuildCastle(MapPainter& p) {
    for (int x = -10; x <= 12; ++x) {
        p.WallY(x, -26, std::abs(x - 1) % 4 == 2 ? walls::CastleBanner : walls::Castle);
        if (p.FloorAt(x, -26) < floors::Cobble) p.Floor(x, -26, floors::Grass);
    }
    p.WallY(0, -26, walls::Gate);
    p.WallY(1, -26, walls::Gate);
    for (int y = -30; y < -26; ++y) {
        p.WallX(-10, y, walls::Castle);
        p.WallX(13, y, walls::Castle);
    }
    p.Floors(-10, -30, 13, -26, floors::Paving, 2);
    p.Floors(6, -25, 11, -20, floors::Dirt, 2);
    p.Walls(6, -25, 11, -20, walls::Stone);
    p.WallX(6, -23, walls::Doorway);
    p.WallY(8, -20, walls::Doorway);
    p.Object(8, -23, objects::Anvil);
    p.Object(10, -25, objects::Stove);
    p.Object(8, -25, objects::WeaponRack);
    p.Object(10, -23, objects::Trough);
    p.Object(6, -21, objects::Crate);
    p.Object(5, -22, objects::SmithySign);
    p.Objects(objects::Barrel, {{6, -25}, {10, -21}});
    p.Objects(objects::Statue, {{-3, -28}, {5, -28}});
    // The yard is for practice.
    p.Objects(objects::TrainingDummy, {{-5, -29}, {-7, -28}});
    p.Objects(objects::Target, {{-9, -30}, {-8, -30}});
    p.Object(-6, -30, objects::WeaponRack);
    p.Object(8, -29, objects::Pavilion);
    p.Object(11, -29, objects::PavilionGreen);
    p.Objects(objects::Banner, {{-1, -25}, {3, -25}});
    p.Objects(objects::Torch, {{-2, -25}, {4, -25}});
}

void BuildFarm(MapPainter& p) {
    p.Floors(-16, 21, -8, 29, floors::Meadow);
    for (int row = 0; row < 4; ++row)
        p.Floors(-15, 22 + 2 * row, -10, 23 + 2 * row, floors::Soil);
    p.Walls(-16, 21, -8, 29, walls::Picket);
    p.WallX(-8, 25, walls::RoseArch);
    for (int x = -15; x < -10; ++x) {
        p.Object(x, 22, objects::Cabbages);
        if (x % 2 != 0) p.Object(x, 24, objects::Pumpkins);
        p.Object(x, 26, objects::Wheat);
        p.Object(x, 28, objects::Wheat);
    }
    p.Object(-13, 25, objects::Scarecrow);
    p.Object(-10, 24, objects::Wheelbarrow);
    p.Object(-16, 24, objects::Trough);
    p.Objects(objects::Haystack, {{-9, 28}, {-16, 21}, {-9, 21}});
    p.Objects(objects::HayBale, {{-6, 21}, {-5, 22}});
    p.Object(-6, 23, objects::Cart);
    p.Object(-4, 27, objects::Windmill);
    p.Object(-7, 29, objects::WeatherVane);
    p.Objects(objects::Sacks, {{-5, 29}, {-3, 29}});
    p.Object(-17, 29, objects::Beehive);
    // A paddock that is open toward the field.
    for (int x = -23; x <= -19; ++x)
        p.Objects(objects::Fence, {{x, 21}, {x, 27}});
    for (int y = 22; y <= 26; ++y)
        p.Object(-24, y, objects::FenceEast);
    p.Objects(objects::FenceEast, {{-18, 22}, {-18, 26}});
    p.Object(-23, 22, objects::Trough);
    p.Object(-23, 26, objects::HayBale);
}

void BuildRuin(MapPainter& p) {
    p.Floors(-36, 7, -29, 14, floors::Paving, 2);
    p.Walls(-36, 7, -29, 14, walls::Ruin);
    p.WallX(-29, 9, walls::RoseArch);
    for (const auto& [x, y] : {std::pair{-33, 14}, {-32, 14}, {-30, 7}})
        p.WallY(x, y, 0);
    for (const auto& [x, y] : {std::pair{-36, 10}, {-29, 12}})
        p.WallX(x, y, 0);
    p.Floor(-33, 10, floors::Portal);
    p.Objects(objects::CrystalCluster, {{-35, 8}, {-30, 12}});
    p.Objects(objects::Rock, {{-31, 15}, {-28, 6}});
    p.Object(-37, 12, objects::RockPile);
    p.Objects(objects::Column, {{-35, 12}, {-31, 8}});
    p.Objects(objects::BrokenColumn, {{-31, 13}, {-36, 7}});
    p.Objects(objects::Torch, {{-28, 8}, {-28, 10}});
    p.Object(-33, 15, objects::StoneArch);
    p.Objects(objects::StandingStone, {{-39, 9}, {-38, 15}, {-33, 4}, {-28, 16}});
    p.Objects(objects::Gravestone, {{-26, 12}, {-24, 12}, {-25, 14}});
    p.Object(-27, 14, objects::DeadTree);
}

void BuildSquare(MapPainter& p) {
    p.Floors(-5, -5, 6, 6, floors::Paving, 2);
    p.Floors(-1, -1, 2, 2, floors::Mosaic, 2);
    p.Object(0, 0, objects::Fountain);
    p.Floor(4, -4, floors::Sundial);
    p.Objects(objects::Bench, {{1, -4}, {-2, -5}});
    p.Objects(objects::BenchEast, {{-4, 1}, {-4, -1}});
    p.Objects(objects::Lamp, {{-5, -5}, {5, -5}, {-5, 5}, {5, 5}});
    p.Object(-3, 4, objects::Stall);
    p.Object(-5, 3, objects::StallGreen);
    p.Object(3, 4, objects::StallBlue);
    p.Objects(objects::Crate, {{-4, 5}, {-5, 4}});
    p.Object(-2, 5, objects::Basket);
    p.Object(-3, 3, objects::FruitCrate);
    p.Objects(objects::Amphora, {{4, 5}, {-6, 2}});
    p.Object(2, 4, objects::FruitCrate);
    p.Object(7, 4, objects::Signpost);
    p.Object(5, -2, objects::NoticeBoard);
    p.Objects(objects::Planter, {{-4, -5}, {4, -5}});
    p.Objects(objects::Banner, {{-1, -6}, {3, -6}});
    p.Objects(objects::Bunting, {{-4, 6}, {-3, 6}, {-2, 6}});
    p.Objects(objects::FlowerBed, {{4, 1}, {4, -1}});
    // The inn serves in the open.
    p.Object(-7, 6, objects::InnSign);
    p.Object(-6, 6, objects::Table);
    p.Object(-6, 5, objects::Chair);
    p.Object(-6, 7, objects::ChairBack);
    p.Object(-7, 4, objects::ClosedBarrel);
    for (int x = 3; x <= 6; ++x)
        p.WallY(x, 7, walls::Railing);
    for (int y = 3; y <= 6; ++y)
        p.WallX(7, y, y == 4 ? 0 : int{walls::Railing});
}

// A garden behind hedges, with the well.
void BuildGarden(MapPainter& p) {
    p.Walls(4, 10, 13, 18, walls::Hedge);
    p.WallX(4, 14, walls::RoseArch);
    p.Floors(5, 11, 12, 12, floors::GrassFlowers);
    p.Floors(5, 16, 12, 17, floors::GrassFlowers);
    p.Object(9, 14, objects::Well);
    p.Objects(objects::Bush, {{12, 10}, {12, 17}, {5, 17}});
    p.Object(5, 10, objects::CherryTree);
    p.Objects(objects::Topiary, {{6, 13}, {6, 15}});
    p.Objects(objects::FlowerBed, {{10, 12}, {10, 16}});
    p.Object(11, 14, objects::SundialStone);
    p.Objects(objects::Planter, {{8, 10}, {10, 10}});
    p.Objects(objects::Bench, {{7, 12}, {7, 16}});
}

void BuildBridge(MapPainter& p) {
    for (int x = 15; x <= 25; ++x) {
        p.Floors(x, 1, x + 1, 3, floors::Bridge);
        p.WallY(x, 1, walls::Parapet);
        p.WallY(x, 3, walls::Parapet);
    }
    p.Objects(objects::Lamp, {{14, 0}, {26, 3}});
    p.Objects(objects::BridgePillar, {{14, 3}, {26, 0}});
}

// The landing place at the lake, with the way into the sea garden.
void BuildShore(MapPainter& p) {
    p.Floor(30, -11, floors::Portal);
    p.Objects(objects::Shell, {{28, -12}, {32, -9}});
    p.Objects(objects::Boat, {{14, -19}, {26, -11}});
    p.Objects(objects::MooringPost, {{27, -12}, {27, -9}});
    p.Objects(objects::RopeRail, {{29, -14}, {30, -14}});
    p.Objects(objects::RopeRailEast, {{33, -11}, {33, -10}});
    p.Object(32, -12, objects::FishRack);
    p.Object(29, -9, objects::Anchor);
    p.Objects(objects::Palm, {{31, -13}, {28, -8}});
    p.Objects(objects::Willow, {{13, -5}, {16, 6}, {25, 9}});
    p.Floors(31, 14, 36, 19, floors::Paving, 2);
    p.Floor(33, 16, floors::Portal);
    p.Objects(objects::Statue, {{31, 18}, {35, 18}});
}

// Tents around a fire in the meadow beyond the river.
void BuildCamp(MapPainter& p) {
    p.Floors(36, 6, 39, 9, floors::Dirt, 2);
    p.Object(37, 7, objects::Campfire);
    p.Objects(objects::Tent, {{35, 4}, {40, 9}});
    p.Objects(objects::TentBlue, {{38, 4}, {34, 8}});
    p.Objects(objects::Bedroll, {{36, 9}, {39, 6}});
    p.Object(35, 6, objects::Cauldron);
    p.Objects(objects::LogPile, {{40, 6}});
    p.Object(37, 10, objects::Stump);
    p.Object(34, 10, objects::Target);
}

// What grows by itself on the ground of a cell; 0 for nothing. `luck` is from 0 to 1.
int PlantFor(int floor, double luck) {
    using namespace objects;
    const bool wood = floor == floors::Undergrowth || floor == floors::Undergrowth + 1;
    const bool meadow = floor >= floors::Grass && floor <= floors::GrassClover;
    const bool shore = floor > floors::SandOverWater && floor < floors::SandOverWater + 15;
    struct Kind {
        double upTo;
        int object;
    };
    static constexpr Kind woodPlants[] = {{0.13, Pine},  {0.20, Oak},       {0.26, Birch},  {0.30, OakAutumn},
                                          {0.38, Fern},  {0.40, Bluebells}, {0.415, Stump}, {0.43, Mushroom},
                                          {0.435, Rock}, {0.44, DeadTree}};
    static constexpr Kind meadowPlants[] = {{0.008, Oak},     {0.013, Linden},    {0.016, CherryTree},
                                            {0.024, Bush},    {0.060, GrassTuft}, {0.075, Daisies},
                                            {0.090, Poppies}, {0.095, Bluebells}};
    static constexpr Kind shorePlants[] = {{0.20, Reeds}, {0.23, RockPile}, {0.25, Shell}};
    const auto pick = [luck](const auto& kinds) {
        for (const Kind& kind : kinds)
            if (luck < kind.upTo) return kind.object;
        return 0;
    };
    if (wood) return pick(woodPlants);
    if (meadow) return pick(meadowPlants);
    return shore ? pick(shorePlants) : 0;
}

void PlantTrees(MapPainter& p) {
    p.ForEach([&](int x, int y) {
        const int floor = p.FloorAt(x, y);
        if (p.ObjectAt(x, y) != 0) return;
        const double luck = Scatter(x, y, 3);
        if (const int plant = PlantFor(floor, luck)) p.Object(x, y, plant);
        // Lilies where the water is calm.
        if (floor >= floors::Water && floor < floors::Lilies && y < -8 && luck < 0.12) p.Floor(x, y, floors::Lilies);
    });
}

std::vector<Inhabitant> TownFolk(const MapPainter& p) {
    return {
        {"Marrow",
         "A baker with flour up to the elbows.",
         "6$+\"%6*#!(",
         p.At(-3, -6),
         5,
         {"Fresh rolls! Still warm!", ":wipes the flour off both hands.",
          "The stove has been in a mood since breakfast.", "If you pass the well, tell it I still want my wish back."}},
        {"Quill",
         "An old scribe who measures everything twice.",
         "*3(\"%)!#+&",
         p.At(3, -2),
         4,
         {"Step on the sundial, if you dare to be late.", ":counts the paving stones and loses count.",
          "Turn with Insert and Delete. Walk where you like."}},
        {"Finch",
         "A constable with very shiny buttons.",
         "#+5\"%+!#-&",
         p.At(8, 2),
         7,
         {"Keep to the right on the bridge, please.", ":polishes a button.",
          "Nothing ever happens here. I see to that."}},
        {"Tilly",
         "A farmer's child with a frog in each pocket.",
         "0(4\"%,!#(&",
         p.At(-4, 20),
         6,
         {"Do you want to see my frogs?", "The ruins in the wood hum at night. I heard them!",
          ":skips around in a circle."}},
        {"Pike",
         "A fisher who is in no hurry.",
         "/5)\"%/!#5&",
         p.At(28, -6),
         4,
         {"Shh. You scare the big one.", "That ring of runes? Smells of salt. Leads under the sea, they say."}},
        {"Juniper",
         "A wood warden in moss green.",
         "(*.\"%(!#*&",
         p.At(-26, 6),
         4,
         {"Mind the roots.", ":listens to a woodpecker.",
          "There is a library among the stars. The door is in the ruin."}},
    };
}

}  // namespace

Place MakeTown() {
    Place town{.name = townName,
               .mapPath = "maps\\default.map",
               .palette = "day.pcx",
               .greeting =
                   "(> Welcome to Tessaly. Rings of runes lead into dreams: one in the ruin to the west, one on the "
                   "eastern shore.",
               .map = WorldMap(fileWidth, fileHeight),
               .start = {},
               .doors = {},
               .labels = {},
               .inhabitants = {},
               .sundials = {},
               .eveningPalette = "evening.pcx",
               .livingGround = {}};
    MapPainter p(town.map);
    p.Lay(TownGround);
    BuildSquare(p);
    BuildBakery(p);
    BuildCottage(p);
    BuildCastle(p);
    BuildFarm(p);
    BuildRuin(p);
    BuildGarden(p);
    BuildBridge(p);
    BuildShore(p);
    BuildCamp(p);
    PlantTrees(p);
    town.start = p.At(-3, -4);
    town.doors = {
        {p.At(-33, 10), starLibraryName, {}}, {p.At(30, -11), tideGardenName, {}}, {p.At(33, 16), fadedDreamName, {}}};
    town.labels = {{p.At(-33, 10), "Star Library", "a dream"},       {p.At(30, -11), "Tide Garden", "a dream"},
                   {p.At(33, 16), "Faded Dream", "nobody keeps it"}, {p.At(9, 14), "Well", "make a wish"},
                   {p.At(4, -4), "Sundial", "step on it"},           {p.At(1, -26), "Castle Gate", "mind the step"}};
    town.inhabitants = TownFolk(p);
    town.sundials = {p.At(4, -4)};
    for (int y = 8; y < 10; ++y)
        for (int x = -7; x < 0; ++x)
            town.livingGround.push_back(p.At(x, y));
    return town;
}

}  // namespace demo
