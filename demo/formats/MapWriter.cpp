#include "demo/formats/MapWriter.h"

#include "demo/formats/ByteWriter.h"

namespace demo {

MapDrawing::MapDrawing(int fileWidth, int fileHeight) : width(fileWidth), height(fileHeight) {
    const std::size_t cells = At(fileWidth, 0);
    floors.resize(cells);
    objects.resize(cells);
    lowXWalls.resize(cells);
    lowYWalls.resize(cells);
}

std::string MapBody(const MapDrawing& drawing) {
    ByteWriter body;
    for (const std::uint16_t floor : drawing.floors)
        body.U16(floor);
    for (const std::uint16_t object : drawing.objects)
        body.U16(object);
    for (int fx = 0; fx < drawing.width; ++fx) {
        for (int fy = 0; fy < drawing.height; ++fy)
            body.U8(drawing.lowXWalls[drawing.At(fx, fy)]);
        for (int fy = 0; fy < drawing.height; ++fy)
            body.U8(drawing.lowYWalls[drawing.At(fx, fy)]);
    }
    return body.Str();
}

std::string WriteMap(const MapDrawing& drawing) {
    return "MAP V01.10 Tolvarin\nwidth=" + std::to_string(drawing.width) +
           "\nheight=" + std::to_string(drawing.height) + "\nencoded=0\nBODY\n" + MapBody(drawing);
}

}  // namespace demo
