#pragma once
// The current map: a square grid made from the skewed grid of a map file.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct MapCell {
    std::uint16_t floor = 0xFFFF;  // 0xFFFF: none
    std::uint16_t object = 0;      // 0: none
    std::uint8_t lowYWall = 0;     // on the edge toward lower gy; 0: none
    std::uint8_t lowXWall = 0;     // on the edge toward lower gx; 0: none
};

// Map files are only read; the cells change one by one while the server says so. Main thread.
class TolvMap {
  public:
    static constexpr std::uint16_t floorOutside = 161;

    // The map that the session changes and the renderers read.
    static TolvMap& Current();

    // Replaces the map; false leaves it empty. The reasons are in the error log (none for a grid without cells).
    bool LoadMap(const std::string& path);
    // The same from the bytes of a map file; `path` is for the messages.
    bool LoadMapBytes(std::string_view bytes, const std::string& path);

    [[nodiscard]] std::uint16_t GetFloor(int gx, int gy) const;   // 161 outside
    [[nodiscard]] std::uint16_t GetObject(int gx, int gy) const;  // 0 outside
    [[nodiscard]] int GetLowYWall(int gx, int gy) const;          // -128 to 127; 0 outside
    [[nodiscard]] int GetLowXWall(int gx, int gy) const;
    // Ignored outside the grid.
    void SetFloor(int gx, int gy, std::uint16_t value);
    void SetObject(int gx, int gy, std::uint16_t value);
    void SetLowYWall(int gx, int gy, std::uint8_t value);
    void SetLowXWall(int gx, int gy, std::uint8_t value);
    void GetGridSize(int& width, int& height) const;

    // Between the file's columns and the grid, with this map's file height. Wrapping arithmetic for absurd input.
    void FileToGrid(int fx, int fy, int& gx, int& gy) const;
    void GridToFile(int gx, int gy, int& fx, int& fy) const;

  private:
    void Empty();
    void ReadBody(std::string_view body, const std::string& path);
    [[nodiscard]] const MapCell* CellAt(int gx, int gy) const;
    MapCell* CellAt(int gx, int gy);

    int fileWidth = 0;
    int fileHeight = 0;
    int gridWidth = 0;
    int gridHeight = 0;
    std::vector<MapCell> cells;  // (gx, gy) at gy * gridWidth + gx
};
