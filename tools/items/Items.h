#pragma once
// The items, each a short function; see the .cpp files by theme. Fronts face +y, and +x where the name says East.

#include <string>
#include <utility>
#include <vector>

#include "tools/items/Item.h"

namespace items {

// One line of items.txt: which model stands for an object number, and which of its pictures are replaced.
struct Entry {
    int object = 0;
    std::string model;
    std::vector<std::pair<std::string, std::string>> replacements{};
};

// By theme.
std::vector<Item> TreeItems();
std::vector<Item> PlantItems();
std::vector<Item> RockItems();
std::vector<Item> FurnitureItems();
std::vector<Item> HouseItems();
std::vector<Item> StreetItems();
std::vector<Item> MarketItems();
std::vector<Item> FarmItems();
std::vector<Item> CampItems();
std::vector<Item> ShoreItems();
std::vector<Item> DreamItems();
// All of them.
std::vector<Item> AllItems();
// Which object numbers show which model.
std::vector<Entry> ItemTable();
// items.txt, made of it.
std::string ItemTableText();

}  // namespace items
