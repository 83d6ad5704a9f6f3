#include "formats/Palette.h"
#include "fuzz/FuzzEntry.h"

std::vector<std::string> fuzz::Seeds() {
    return {"red 255 0 0\nblue 0 0 255 End", "3 red 70 blue 4 teal -1", "red 1 2 3 3 4 5 End"};
}

// The same bytes as a list of color names and as a table of numbers.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::WriteFile("data/colors/colors.txt", fuzz::Text(data, size));
    ColorNames names;
    LoadColorNames(names);
    names.insert({"red", {}});
    ColorTable table;
    LoadColorNumbers("data\\colors\\colors.txt", names, table);
    return 0;
}
