#include "demo/server/Road.h"

#include <algorithm>
#include <deque>
#include <map>
#include <utility>

#include "demo/server/Scene.h"

namespace demo {

namespace {

constexpr char digitOfDirection[directionCount] = {'9', '7', '1', '3'};

struct ByPlace {
    bool operator()(Cell a, Cell b) const { return std::pair(a.gx, a.gy) < std::pair(b.gx, b.gy); }
};

bool IsInTheWay(const Scene& scene, Cell cell, std::string_view to) {
    const Place& place = scene.place;
    const Door* door = scene.DoorAt(cell);
    if (door && door->to != to) return true;
    if (std::find(place.sundials.begin(), place.sundials.end(), cell) != place.sundials.end()) return true;
    return std::any_of(place.inhabitants.begin(), place.inhabitants.end(),
                       [&](const Inhabitant& nature) { return scene.FreeCellNear(nature.home) == cell; });
}

}  // namespace

std::string RoadTo(const Place& place, std::string_view to) {
    const Scene scene(place);
    std::map<Cell, std::string, ByPlace> roads = {{place.start, ""}};
    std::deque<Cell> border = {place.start};
    while (!border.empty()) {
        const Cell cell = border.front();
        border.pop_front();
        const Door* door = scene.DoorAt(cell);
        if (door && door->to == to) return roads[cell];
        for (int direction = 0; direction < directionCount; ++direction) {
            const Cell next = Neighbour(cell, direction);
            if (roads.count(next) || !scene.CanStep(cell, direction) || IsInTheWay(scene, next, to)) continue;
            roads[next] = roads[cell] + digitOfDirection[direction];
            border.push_back(next);
        }
    }
    return {};
}

}  // namespace demo
