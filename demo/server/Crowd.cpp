#include "demo/server/Crowd.h"

#include "demo/server/Game.h"

namespace demo {

namespace {

constexpr int columns = 20;
constexpr int straying = 10;

std::string LooksOf(int number) {
    std::string colours;
    for (int i = 0; i < 10; ++i)
        colours += static_cast<char>(32 + (number * 7 + i * 5) % 30);
    return colours;
}

Inhabitant MakeStroller(const Place& place, int number) {
    const std::string name = "Stroller " + std::to_string(number);
    const Cell home{place.start.gx + number % columns - columns / 2,
                    place.start.gy + number / columns % columns - columns / 2};
    return {name,
            "One of many.",
            LooksOf(number),
            home,
            straying,
            {"It is as busy as a fair today.", ":looks around.", "Mind your feet, please, there are more behind me.",
             "Number " + std::to_string(number) + " would like to pass."}};
}

}  // namespace

void AddCrowd(std::vector<Place>& places, int count) {
    for (Place& place : places)
        for (int number = 0; number < count; ++number)
            place.inhabitants.push_back(MakeStroller(place, number));
}

// Through every dream that a door of the first place leads to, then home, and again.
void Game::Tour(Player& player, double seconds) {
    if (player.travelling || !IsInWorld(player)) return;
    player.untilTour -= seconds;
    if (player.untilTour > 0.0) return;
    player.untilTour = options.tourSeconds;
    const Scene* here = player.figure.scene;
    const std::vector<Door>& stops = scenes.front()->place.doors;
    while (player.nextStop < stops.size()) {
        const Door& stop = stops[player.nextStop++];
        const Scene* there = FindScene(stop.to);
        if (there && there != here && there->place.IsDream()) return TakeDoor(player, stop);
    }
    player.nextStop = 0;
    for (const Door& door : here->place.doors)
        if (door.to == scenes.front()->place.name) return TakeDoor(player, door);
}

}  // namespace demo
