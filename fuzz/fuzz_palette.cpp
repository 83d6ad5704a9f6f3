#include "demo/formats/PcxWriter.h"
#include "formats/Palette.h"
#include "fuzz/FuzzEntry.h"

std::vector<std::string> fuzz::Seeds() {
    return {demo::WritePcx(2, 1, {1, 2}, demo::RgbPalette()), std::string(768, 'p'), std::string(767, 'p')};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::WriteFile("palette.pcx", fuzz::Text(data, size));
    LoadPcxPalette("palette.pcx");
    return 0;
}
