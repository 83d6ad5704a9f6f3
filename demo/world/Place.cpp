#include "demo/world/Place.h"

#include "demo/world/Dreams.h"
#include "demo/world/Town.h"

namespace demo {

namespace {

// A cell beside the door, so that nobody who comes back is taken in again at once.
Cell BesideDoor(const Place& place, const std::string& to) {
    for (const Door& door : place.doors)
        if (door.to == to) return {door.cell.gx + 1, door.cell.gy};
    return place.start;
}

}  // namespace

std::vector<Place> MakePlaces() {
    std::vector<Place> places;
    places.push_back(MakeTown());
    places.push_back(MakeTideGarden(BesideDoor(places[0], tideGardenName)));
    places.push_back(MakeStarLibrary(BesideDoor(places[0], starLibraryName)));
    for (Door& door : places[0].doors)
        for (const Place& place : places)
            if (place.name == door.to) door.arrival = place.start;
    return places;
}

}  // namespace demo
