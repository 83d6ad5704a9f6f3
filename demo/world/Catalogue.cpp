#include "demo/world/Catalogue.h"

#include <array>

namespace demo {

namespace {

struct FloorEntry {
    int first;
    int last;
    std::string_view text;
    bool walkable;
};

constexpr FloorEntry floorTable[] = {
    {floors::Grass, 4, "Soft grass.", true},
    {floors::GrassFlowers, 5, "Daisies and buttercups in the grass.", true},
    {floors::GrassClover, 6, "Clover. None of it has four leaves; you checked.", true},
    {floors::Meadow, 7, "Tall meadow grass, full of crickets.", true},
    {floors::Undergrowth, 9, "Ferns and fallen leaves.", true},
    {floors::Cobble, 12, "Cobbles, worn smooth by market carts.", true},
    {floors::Dirt, 15, "A trodden path.", true},
    {floors::Sand, 18, "Warm sand.", true},
    {floors::Water, 22, "Clear water. You can see fish down there.", false},
    {floors::Lilies, 23, "Water lilies. A frog looks back at you.", false},
    {floors::Paving, 26, "Paving stones.", true},
    {floors::Sundial, 27, "A sundial set into the ground. They say that it moves the sun, not the shadow.", true},
    {floors::Portal, 28, "A ring of runes. It hums softly.", true},
    {floors::Planks, 32, "Floorboards that creak.", true},
    {floors::Chequer, 33, "Kitchen tiles.", true},
    {floors::Carpet, 34, "A thick red carpet.", true},
    {floors::Soil, 35, "A tilled bed. Something is coming up.", true},
    {floors::Bridge, 36, "The planks of the bridge.", true},
    {floors::Hearth, 37, "A hearth stone.", true},
    {floors::Crystal, 41, "Crystal, warm under your feet.", true},
    {floors::Coral, 43, "Coral sand.", true},
    {floors::Parquet, 44, "Polished parquet.", true},
    {floors::Starfield, 512, "Stars, a long way down. You do not fall.", true},
    {floors::GrassOverSand, floors::GrassOverSand + 15, "Where the grass ends and the sand begins.", true},
    {floors::CobbleOverGrass, floors::CobbleOverGrass + 15, "The edge of the cobbled path.", true},
    {floors::DirtOverGrass, floors::DirtOverGrass + 15, "The edge of the path.", true},
    {floors::SandOverWater, floors::SandOverWater + 15, "The water's edge. Wet sand.", true},
    {floors::UndergrowthOverGrass, floors::UndergrowthOverGrass + 15, "The edge of the wood.", true},
    {floors::Outside, floors::Outside, "A forest too deep to enter.", false},
    {floors::Mosaic, 502, "A mosaic of tiny tiles.", true},
};

struct ObjectEntry {
    std::string_view text;
    bool solid;
};

constexpr std::array<ObjectEntry, objects::Count> objectTable = {{
    {"", false},
    {"An old oak.", true},
    {"A pine, smelling of resin.", true},
    {"A birch.", true},
    {"A bush with berries on it.", true},
    {"A bench. It has room for two.", false},
    {"A street lamp.", true},
    {"A well. The bottom is out of sight.", true},
    {"A sturdy table.", true},
    {"A chair.", false},
    {"A barrel of apples.", true},
    {"A crate.", true},
    {"A pot of geraniums.", true},
    {"A signpost. It points everywhere at once.", true},
    {"A fountain.", true},
    {"A stove, still warm.", true},
    {"A bed with a patchwork quilt.", true},
    {"A shelf of jars.", true},
    {"A rowing boat.", true},
    {"A statue of someone who must have been important.", true},
    {"A mushroom, red with white dots.", false},
    {"A cluster of crystals.", true},
    {"A market stall.", true},
    {"A cart.", true},
    {"A mossy rock.", true},
    {"A tree stump.", false},
    {"A campfire.", true},
    {"An anvil.", true},
    {"A haystack.", true},
    {"A lectern with an open book on it.", true},
    {"A globe of a world that is not this one.", true},
    {"A shell as big as a hat.", false},
    {"Seaweed, swaying although there is no water.", false},
}};

const FloorEntry* FindFloor(int floor) {
    for (const FloorEntry& entry : floorTable)
        if (floor >= entry.first && floor <= entry.last) return &entry;
    return nullptr;
}

}  // namespace

std::string_view FloorText(int floor) {
    const FloorEntry* entry = FindFloor(floor);
    return entry ? entry->text : std::string_view();
}

std::string_view ObjectText(int object) {
    return object > 0 && object < objects::Count ? objectTable[static_cast<std::size_t>(object)].text
                                                 : std::string_view();
}

bool IsWalkable(int floor) {
    const FloorEntry* entry = FindFloor(floor);
    return entry && entry->walkable;
}

bool IsSolid(int object) {
    return object > 0 && object < objects::Count && objectTable[static_cast<std::size_t>(object)].solid;
}

bool IsPassable(int wall) {
    return wall <= walls::Gate;
}

}  // namespace demo
