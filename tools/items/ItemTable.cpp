#include <string>
#include <utility>

#include "demo/world/Catalogue.h"
#include "tools/items/Items.h"

namespace items {

std::vector<Item> AllItems() {
    std::vector<Item> all;
    for (auto* const make : {TreeItems, PlantItems, RockItems, FurnitureItems, StreetItems, MarketItems, HouseItems,
                             FarmItems, CampItems, ShoreItems, DreamItems})
        for (Item& item : make())
            all.push_back(std::move(item));
    return all;
}

std::vector<Entry> ItemTable() {
    using namespace demo::objects;
    return {{Oak, "oak"},
            {Pine, "pine"},
            {Birch, "birch"},
            {Bush, "bush"},
            {Bench, "bench"},
            {Lamp, "lamp"},
            {Well, "well"},
            {Table, "table"},
            {Chair, "chair"},
            {Barrel, "barrel"},
            {Crate, "crate"},
            {Flowerpot, "flowerpot"},
            {Signpost, "signpost"},
            {Fountain, "fountain"},
            {Stove, "stove"},
            {Bed, "bed"},
            {Shelf, "shelf"},
            {Boat, "boat"},
            {Statue, "statue"},
            {Mushroom, "mushroom"},
            {CrystalCluster, "crystal_cluster"},
            {Stall, "stall"},
            {Cart, "cart"},
            {Rock, "rock"},
            {Stump, "stump"},
            {Campfire, "campfire"},
            {Anvil, "anvil"},
            {Haystack, "haystack"},
            {Lectern, "lectern"},
            {Globe, "globe"},
            {Shell, "shell"},
            {Seaweed, "seaweed"},
            {OakAutumn, "oak", {{"leaves.png", "leaves_autumn.png"}, {"spray.png", "spray_autumn.png"}}},
            {CherryTree, "birch", {{"leaves.png", "leaves_blossom.png"}, {"spray.png", "spray_blossom.png"}}},
            {Linden, "oak", {{"leaves.png", "leaves_light.png"}, {"spray.png", "spray_light.png"}}},
            {Willow, "willow", {{"leaves.png", "leaves_light.png"}, {"spray.png", "spray_light.png"}}},
            {DeadTree, "dead_tree"},
            {Palm, "palm"},
            {Topiary, "topiary"},
            {FlowerBed, "flower_bed"},
            {Planter, "planter"},
            {Cabbages, "cabbages"},
            {Pumpkins, "pumpkins"},
            {GrassTuft, "grass_tuft"},
            {Daisies, "daisies"},
            {Poppies, "poppies"},
            {Bluebells, "bluebells"},
            {Fern, "fern"},
            {Reeds, "reeds"},
            {Wheat, "wheat"},
            {RockPile, "rock_pile"},
            {StandingStone, "standing_stone"},
            {Column, "column"},
            {BrokenColumn, "broken_column"},
            {StoneArch, "stone_arch"},
            {ChairBack, "chair_back"},
            {BenchEast, "bench_east"},
            {ShelfEast, "shelf_east"},
            {Bookcase, "bookcase"},
            {Wardrobe, "wardrobe"},
            {Chest, "chest"},
            {Armchair, "armchair"},
            {Desk, "desk"},
            {Torch, "torch"},
            {BakerySign, "bakery_sign"},
            {InnSign, "inn_sign"},
            {SmithySign, "smithy_sign"},
            {NoticeBoard, "notice_board"},
            {Banner, "banner"},
            {Bunting, "bunting"},
            {Fence, "fence"},
            {FenceEast, "fence_east"},
            {SundialStone, "sundial"},
            {Mailbox, "mailbox"},
            {ClosedBarrel, "closed_barrel"},
            {FruitCrate, "fruit_crate"},
            {Sacks, "sacks"},
            {Basket, "basket"},
            {StallBlue, "stall", {{"stripes.png", "stripes_blue.png"}}},
            {StallGreen, "stall", {{"stripes.png", "stripes_green.png"}}},
            {Wheelbarrow, "wheelbarrow"},
            {Amphora, "amphora"},
            {Fireplace, "fireplace"},
            {Clock, "clock"},
            {Candelabra, "candelabra"},
            {Cauldron, "cauldron"},
            {Easel, "easel"},
            {WeaponRack, "weapon_rack"},
            {HayBale, "hay_bale"},
            {Scarecrow, "scarecrow"},
            {Beehive, "beehive"},
            {Trough, "trough"},
            {LogPile, "log_pile"},
            {Windmill, "windmill"},
            {WeatherVane, "weather_vane"},
            {Tent, "tent"},
            {TentBlue, "tent", {{"stripes.png", "stripes_blue.png"}}},
            {Pavilion, "pavilion"},
            {PavilionGreen, "pavilion", {{"stripes.png", "stripes_green.png"}}},
            {Bedroll, "bedroll"},
            {Target, "target"},
            {Gravestone, "gravestone"},
            {TrainingDummy, "training_dummy"},
            {MooringPost, "mooring_post"},
            {RopeRail, "rope_rail"},
            {RopeRailEast, "rope_rail_east"},
            {BridgePillar, "bridge_pillar"},
            {FootBridge, "foot_bridge"},
            {Anchor, "anchor"},
            {FishRack, "fish_rack"},
            {CoralTree, "coral"},
            {SeaFan, "sea_fan"},
            {StarLamp, "star_lamp"},
            {Telescope, "telescope"},
            {BookPile, "book_pile"},
            {Orrery, "orrery"},
            {ChartTable, "chart_table"}};
}

std::string ItemTableText() {
    // Object numbers of the game go up to four digits; what has no line shows the placeholder.
    std::string text = "9999\n";
    for (const Entry& entry : ItemTable()) {
        text += std::to_string(entry.object) + " " + entry.model + ".mbm";
        for (const auto& [from, to] : entry.replacements)
            text += " " + from + " " + to;
        text += "\n";
    }
    return text;
}

}  // namespace items
