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
    {"An oak in its autumn colours.", true},
    {"A cherry tree in blossom. Petals everywhere.", true},
    {"A young linden tree.", true},
    {"A weeping willow. You would weep too, with your feet wet all year.", true},
    {"A dead tree. An owl lives in it.", true},
    {"A palm, a long way from home.", true},
    {"A bush, cut into the shape of a pear.", true},
    {"A round flower bed.", true},
    {"A planter full of roses.", true},
    {"Four cabbages in a row of two.", false},
    {"Pumpkins. The big one has won prizes.", true},
    {"Long grass.", false},
    {"Daisies.", false},
    {"Poppies.", false},
    {"Bluebells.", false},
    {"A fern.", false},
    {"Reeds. Something in them says croak.", false},
    {"Ripe wheat.", false},
    {"A heap of rocks.", true},
    {"A standing stone. The runes on it glow when you look away.", true},
    {"A column that has nothing left to hold up.", true},
    {"A broken column.", true},
    {"An arch of old stones.", false},
    {"A chair.", false},
    {"A bench. It has room for two.", false},
    {"A shelf of jars.", true},
    {"A bookcase. Most of it is about frogs.", true},
    {"A wardrobe. One door is ajar.", true},
    {"A chest of gold! It is nailed to the floor.", true},
    {"An armchair that does not let go.", false},
    {"A desk with a letter on it.", true},
    {"A torch.", true},
    {"The sign of the bakery.", true},
    {"The sign of an inn.", true},
    {"The sign of the smithy.", true},
    {"A notice board: a lost frog, a map with a cross on it, and somebody's holiday picture.", true},
    {"The banner of Tessaly.", true},
    {"Bunting, for the feast that is always next week.", false},
    {"A fence.", true},
    {"A fence.", true},
    {"A sundial on a stone. It is right twice a day, like any clock.", true},
    {"A mailbox. No post today.", true},
    {"A barrel with a tap.", true},
    {"A crate of fruit.", true},
    {"Sacks of flour.", true},
    {"A basket of rolls and oranges.", false},
    {"A market stall under a blue awning.", true},
    {"A market stall under a green awning.", true},
    {"A wheelbarrow.", true},
    {"Jars of oil.", true},
    {"A fireplace. It crackles.", true},
    {"A grandfather clock, ten minutes slow.", true},
    {"A candelabra.", true},
    {"A cauldron of green soup. It bubbles at you.", true},
    {"An easel with a landscape, almost finished.", true},
    {"A rack of swords.", true},
    {"A bale of hay.", true},
    {"A scarecrow. The crows like it.", true},
    {"A beehive. It hums a tune.", true},
    {"A trough of fresh water.", true},
    {"Firewood.", true},
    {"A windmill.", true},
    {"A weather vane. The wind is from the cock.", true},
    {"A tent.", true},
    {"A tent with blue stripes.", true},
    {"A pavilion. Somebody important is having a nap.", true},
    {"A pavilion in green and yellow.", true},
    {"A bedroll.", false},
    {"An archery target.", true},
    {"A gravestone. The name has worn away.", true},
    {"A training dummy. It has seen a lot.", true},
    {"A mooring post.", true},
    {"Posts and a rope.", true},
    {"Posts and a rope.", true},
    {"The pillar at the end of the bridge.", true},
    {"A humped little bridge.", false},
    {"An anchor.", true},
    {"Fish, drying.", true},
    {"Coral.", true},
    {"A sea fan.", false},
    {"A crystal that floats over its stand. It is not a lamp, but it will do.", true},
    {"A telescope. It shows you the library, from far away.", true},
    {"A pile of books that somebody meant to read.", false},
    {"An orrery. One planet is missing.", true},
    {"A table with a chart of the stars.", true},
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
