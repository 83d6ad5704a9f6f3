#include "demo/formats/PcxWriter.h"
#include "formats/Palette.h"
#include "fuzz/FuzzEntry.h"

std::vector<std::string> fuzz::Seeds() {
    return {"red 255 0 0\nblue 0 0 255 End", "3 red 70 blue 4 teal -1",
            demo::WritePcx(2, 1, {1, 2}, demo::RgbPalette())};
}

// The same bytes as a list of color names, as a table of numbers and as a picture.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::WriteFile("data/colors/colors.txt", fuzz::Text(data, size));
    ColorNames names;
    LoadColorNames(names);
    names.insert({"red", {}});
    ColorTable table;
    LoadColorNumbers("data\\colors\\colors.txt", names, table);
    LoadPcxPalette("data\\colors\\colors.txt");
    return 0;
}
