#include "demo/formats/MapWriter.h"
#include "formats/TolvMap.h"
#include "fuzz/FuzzEntry.h"

std::vector<std::string> fuzz::Seeds() {
    return {demo::WriteMap(demo::MapDrawing(2, 2)), demo::WriteMap(demo::MapDrawing(30, 5)),
            "MAP V01.00 Tolvarin\r\nwidth=3\nencoded=1\nheight=-3\nname=x\nBODY\n"};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    TolvMap map;
    if (!map.LoadMapBytes(fuzz::Text(data, size), "fuzz.map")) return 0;
    int width = 0;
    int height = 0;
    map.GetGridSize(width, height);
    for (const int gx : {-1, 0, width / 2, width - 1, width})
        for (const int gy : {-1, 0, height / 2, height - 1, height}) {
            int fx = 0;
            int fy = 0;
            map.GridToFile(gx, gy, fx, fy);
            map.SetObject(gx, gy, map.GetFloor(gx, gy));
        }
    return 0;
}
