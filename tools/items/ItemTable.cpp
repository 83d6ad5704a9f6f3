#include <string>
#include <utility>

#include "demo/world/Catalogue.h"
#include "tools/items/Items.h"

namespace items {

std::vector<Item> AllItems() {
    std::vector<Item> all;
    for (auto* const make :
         {TreeItems, PlantItems, RockItems, FurnitureItems, StreetItems, MarketItems, HouseItems, FarmItems})
        for (Item& item : make())
            all.push_back(std::move(item));
    return all;
}

std::vector<Entry> ItemTable() {
    using namespace demo::objects;
    return {{Oak, "oak"},           {Pine, "pine"},         {Birch, "birch"},       {Bush, "bush"},
            {Bench, "bench"},       {Lamp, "lamp"},         {Well, "well"},         {Table, "table"},
            {Chair, "chair"},       {Barrel, "barrel"},     {Crate, "crate"},       {Flowerpot, "flowerpot"},
            {Signpost, "signpost"}, {Fountain, "fountain"}, {Stove, "stove"},       {Bed, "bed"},
            {Shelf, "shelf"},       {Statue, "statue"},     {Mushroom, "mushroom"}, {Stall, "stall"},
            {Cart, "cart"},         {Rock, "rock"},         {Stump, "stump"},       {Anvil, "anvil"},
            {Haystack, "haystack"}, {Seaweed, "seaweed"}};
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
