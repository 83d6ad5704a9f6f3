#pragma once
// The numbers of floors, walls and objects in the demo world, and what the server needs to know of them.

#include <cstdint>
#include <string_view>

namespace demo {

namespace floors {
enum Number : std::uint16_t {
    Grass = 1,  // 1 to 4 are variants
    GrassFlowers = 5,
    GrassClover = 6,
    Meadow = 7,
    Undergrowth = 8,  // 8 and 9
    Cobble = 10,      // 10 to 12
    Dirt = 14,        // 14 and 15
    Sand = 17,        // 17 and 18
    Water = 20,       // 20 to 22
    Lilies = 23,
    Paving = 25,  // 25 and 26
    Sundial = 27,
    Portal = 28,
    Planks = 30,  // 30 and 31 along gx, 32 across
    PlanksAcross = 32,
    Chequer = 33,
    Carpet = 34,
    Soil = 35,
    Bridge = 36,
    Hearth = 37,
    Crystal = 40,  // 40 and 41: dreams
    Coral = 42,
    Parquet = 44,
    // Borders between two grounds, by which of the four corners carry the upper one: number + mask, mask 1 to 14.
    GrassOverSand = 60,
    CobbleOverGrass = 76,
    DirtOverGrass = 92,
    SandOverWater = 108,
    UndergrowthOverGrass = 124,
    Outside = 161,    // what the client draws beyond the map
    Mosaic = 501,     // 501 and 502, from the extra archive
    Starfield = 503,  // 503 to 512
};
constexpr int borderMasks = 16;
}  // namespace floors

namespace walls {
// Wall w is drawn from the images 2w - 7 and 2w - 8 of wall.ts2 for w from 4; 1 to 3 are the junctions.
enum Number : std::uint8_t {
    Doorway = 1,
    RoseArch = 2,
    Gate = 3,  // the same images as Doorway
    Stone = 4,
    Timber,
    TimberWindow,
    TimberBrace,
    Hedge,
    Picket,
    Parapet,
    Brick,
    BrickWindow,
    Railing,
    Ruin,
    Bookcase,
    Crystal,
    Reef,
    LastOfFirstArchive = 27,
    Castle = 28,  // wall_1.ts2
    CastleBanner,
};
}  // namespace walls

namespace objects {
enum Number : std::uint16_t {
    Oak = 1,
    Pine,
    Birch,
    Bush,
    Bench,
    Lamp,
    Well,
    Table,
    Chair,
    Barrel,
    Crate,
    Flowerpot,
    Signpost,
    Fountain,
    Stove,
    Bed,
    Shelf,
    Boat,
    Statue,
    Mushroom,
    CrystalCluster,
    Stall,
    Cart,
    Rock,
    Stump,
    Campfire,
    Anvil,
    Haystack,
    Lectern,
    Globe,
    Shell,
    Seaweed,
    OakAutumn,
    CherryTree,
    Linden,
    Willow,
    DeadTree,
    Palm,
    Topiary,
    FlowerBed,
    Planter,
    Cabbages,
    Pumpkins,
    GrassTuft,
    Daisies,
    Poppies,
    Bluebells,
    Fern,
    Reeds,
    Wheat,
    RockPile,
    StandingStone,
    Column,
    BrokenColumn,
    StoneArch,
    ChairBack,
    BenchEast,
    ShelfEast,
    Bookcase,
    Wardrobe,
    Chest,
    Armchair,
    Desk,
    Torch,
    BakerySign,
    InnSign,
    SmithySign,
    NoticeBoard,
    Banner,
    Bunting,
    Fence,
    FenceEast,
    SundialStone,
    Mailbox,
    ClosedBarrel,
    FruitCrate,
    Sacks,
    Basket,
    StallBlue,
    StallGreen,
    Wheelbarrow,
    Amphora,
    Fireplace,
    Clock,
    Candelabra,
    Cauldron,
    Easel,
    WeaponRack,
    HayBale,
    Scarecrow,
    Beehive,
    Trough,
    LogPile,
    Windmill,
    WeatherVane,
    Tent,
    TentBlue,
    Pavilion,
    PavilionGreen,
    Bedroll,
    Target,
    Gravestone,
    TrainingDummy,
    MooringPost,
    RopeRail,
    RopeRailEast,
    BridgePillar,
    FootBridge,
    Anchor,
    FishRack,
    CoralTree,
    SeaFan,
    StarLamp,
    Telescope,
    BookPile,
    Orrery,
    ChartTable,
    Count
};
}  // namespace objects

// What a player is told on looking at it; empty for numbers that the world does not use.
std::string_view FloorText(int floor);
std::string_view ObjectText(int object);
// Whether feet can stand on it.
bool IsWalkable(int floor);
// Whether it fills its cell.
bool IsSolid(int object);
// Junctions are openings; every other wall stops a step.
bool IsPassable(int wall);

}  // namespace demo
