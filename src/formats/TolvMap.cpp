#include "formats/TolvMap.h"

#include <cstddef>
#include <utility>

#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "formats/ByteCursor.h"
#include "formats/CappedMessages.h"
#include "platform/Caps.h"
#include "platform/FileSystem.h"
#include "platform/MessageBox.h"

namespace {

constexpr char knownVersion[] = "MAP V01.10 Tolvarin";

// 32-bit arithmetic that wraps instead of overflowing: sizes and coordinates come from files and servers.
int Wrapped(std::int64_t value) {
    return static_cast<int>(static_cast<std::uint32_t>(value));
}

// Takes the next line off `rest`, up to a line feed or the end.
std::string_view TakeLine(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

struct Header {
    int width = 0;
    int height = 0;
    bool enciphered = false;
};

// Reads key=value lines up to and with the line "BODY", which is all of `rest` when there is none.
Header ReadHeader(std::string_view& rest) {
    Header header;
    while (!rest.empty()) {
        const std::string_view line = TakeLine(rest);
        // Cut short, such a line might mean something else.
        if (line.size() > caps::mapHeaderLineBytes) continue;
        const std::vector<std::string> pieces = SplitTokens(line, "=");
        if (pieces.empty()) continue;
        if (pieces[0] == "BODY") break;
        if (pieces.size() != 2) continue;
        if (pieces[0] == "width") header.width = DecimalOf(pieces[1]);
        if (pieces[0] == "height") header.height = DecimalOf(pieces[1]);
        if (pieces[0] == "encoded" && pieces[1][0] == '1') {
            header.enciphered = true;
            break;
        }
    }
    return header;
}

}  // namespace

TolvMap& TolvMap::Current() {
    static TolvMap map;
    return map;
}

void TolvMap::Empty() {
    gridWidth = gridHeight = 0;
    cells = {};
}

bool TolvMap::LoadMap(const std::string& path) {
    Empty();
    std::string bytes;
    if (!platform::ReadFileBytes(path, bytes, caps::mapBytes)) {
        errorLog.Write("Failed to load tolv .map file: " + path + "\n");
        return false;
    }
    return LoadMapBytes(bytes, path);
}

bool TolvMap::LoadMapBytes(std::string_view bytes, const std::string& path) {
    Empty();
    std::string_view rest = bytes;
    const std::string_view version = TakeLine(rest);
    if (version != knownVersion) {
        errorLog.Write("Warning: Unrecognized map version found in map file: " + path + "\n");
        errorLog.Write("  -load may potentially be invalid.\n");
        errorLog.WriteReport({"  -version=", version.substr(0, caps::mapHeaderLineBytes), "\n"});
    }
    const Header header = ReadHeader(rest);
    if (header.enciphered) {
        platform::ShowMessageBox("This map is encrypted.  Encrypted dreams are not yet supported.",
                                 "Evil Encrypted Dreams...", platform::BoxKind::Ok, true);
        return false;
    }
    fileWidth = header.width;
    fileHeight = header.height;
    const int gridSize = Wrapped(2 * (std::int64_t{fileWidth} + fileHeight));
    const std::int64_t cellCount = std::int64_t{gridSize} * gridSize;
    const bool tooLarge = cellCount > caps::mapGridCells && Wrapped(cellCount) > 0;
    if (fileWidth == 0 || fileHeight == 0 || (gridSize > 0 && tooLarge)) {
        errorLog.Write("map dimensions loaded from file are bad: " + std::to_string(fileWidth) + "x" +
                       std::to_string(fileHeight) + "\n");
        return false;
    }
    // The size of the grid is counted in 32 bits, so that one beyond them may come out as a count that is not positive.
    if (gridSize <= 0 || Wrapped(cellCount) <= 0) return false;

    gridWidth = gridHeight = gridSize;
    cells.assign(static_cast<std::size_t>(cellCount), MapCell{});
    ReadBody(rest, path);
    return true;
}

// Little-endian, with fw columns of fh cells, column by column:
//   2 fw fh  floors, 16 bits each
//   2 fw fh  objects, 16 bits each
//   2 fw fh  walls, 8 bits each: for every column first its lowXWalls, then its lowYWalls
// Cells that a short body does not reach stay as they are.
void TolvMap::ReadBody(std::string_view body, const std::string& path) {
    ByteCursor cursor(body);
    CappedMessages outside(caps::repeatedMessages);
    const auto forColumn = [&](int fx, auto store) {
        for (int fy = 0; fy < fileHeight && !cursor.Failed(); ++fy)
            store(fx, fy);
    };
    const auto forColumns = [&](auto store) {
        for (int fx = 0; fx < fileWidth && !cursor.Failed(); ++fx)
            forColumn(fx, store);
    };
    const auto cellOf = [&](int fx, int fy) {
        int gx = 0;
        int gy = 0;
        FileToGrid(fx, fy, gx, gy);
        return CellAt(gx, gy);
    };

    forColumns([&](int fx, int fy) {
        const std::uint16_t floor = cursor.U16();
        if (cursor.Failed()) return;
        int gx = 0;
        int gy = 0;
        FileToGrid(fx, fy, gx, gy);
        if (gx < 0 || gy < 0) outside.Add("coord less than 0 after deskew transform while loading map " + path + "\n");
        SetFloor(gx, gy, floor);
    });
    forColumns([&](int fx, int fy) {
        const std::uint16_t object = cursor.U16();
        if (MapCell* cell = cellOf(fx, fy); cell && !cursor.Failed()) cell->object = object;
    });
    for (int fx = 0; fx < fileWidth && !cursor.Failed(); ++fx) {
        for (std::uint8_t MapCell::*const wall : {&MapCell::lowXWall, &MapCell::lowYWall}) {
            forColumn(fx, [&](int, int fy) {
                const std::uint8_t number = cursor.U8();
                if (MapCell* cell = cellOf(fx, fy); cell && !cursor.Failed()) cell->*wall = number;
            });
        }
    }
    outside.Flush();
    if (cursor.Failed())
        errorLog.Write("Warning: map file ends before its last cell, the rest of the map stays empty: " + path + "\n");
}

const MapCell* TolvMap::CellAt(int gx, int gy) const {
    if (gx < 0 || gy < 0 || gx >= gridWidth || gy >= gridHeight) return nullptr;
    return &cells[static_cast<std::size_t>(gy) * static_cast<std::size_t>(gridWidth) + static_cast<std::size_t>(gx)];
}

MapCell* TolvMap::CellAt(int gx, int gy) {
    return const_cast<MapCell*>(std::as_const(*this).CellAt(gx, gy));
}

std::uint16_t TolvMap::GetFloor(int gx, int gy) const {
    const MapCell* cell = CellAt(gx, gy);
    return cell ? cell->floor : floorOutside;
}

std::uint16_t TolvMap::GetObject(int gx, int gy) const {
    const MapCell* cell = CellAt(gx, gy);
    return cell ? cell->object : std::uint16_t{0};
}

int TolvMap::GetLowYWall(int gx, int gy) const {
    const MapCell* cell = CellAt(gx, gy);
    return cell ? static_cast<std::int8_t>(cell->lowYWall) : 0;
}

int TolvMap::GetLowXWall(int gx, int gy) const {
    const MapCell* cell = CellAt(gx, gy);
    return cell ? static_cast<std::int8_t>(cell->lowXWall) : 0;
}

void TolvMap::SetFloor(int gx, int gy, std::uint16_t value) {
    if (MapCell* cell = CellAt(gx, gy)) cell->floor = value;
}

void TolvMap::SetObject(int gx, int gy, std::uint16_t value) {
    if (MapCell* cell = CellAt(gx, gy)) cell->object = value;
}

void TolvMap::SetLowYWall(int gx, int gy, std::uint8_t value) {
    if (MapCell* cell = CellAt(gx, gy)) cell->lowYWall = value;
}

void TolvMap::SetLowXWall(int gx, int gy, std::uint8_t value) {
    if (MapCell* cell = CellAt(gx, gy)) cell->lowXWall = value;
}

void TolvMap::GetGridSize(int& width, int& height) const {
    width = gridWidth;
    height = gridHeight;
}

// In the file every second cell of a column is shifted by half a cell. In the grid a column becomes a staircase: down
// the column, even steps go to +gx and odd ones to +gy; the next column begins one cell further to +gx and -gy.
void TolvMap::FileToGrid(int fx, int fy, int& gx, int& gy) const {
    gx = Wrapped(std::int64_t{fx} + fy / 2);
    gy = Wrapped(2 * std::int64_t{fileHeight} + (std::int64_t{fy} + 1) / 2 - fx);
}

void TolvMap::GridToFile(int gx, int gy, int& fx, int& fy) const {
    const std::int64_t skewed = std::int64_t{gx} + 2 * std::int64_t{fileHeight} - gy;
    fx = Wrapped((skewed * 2 + 2) / 4);
    fy = Wrapped(std::int64_t{gx} + gy - 2 * std::int64_t{fileHeight});
}
