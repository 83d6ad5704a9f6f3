#include "demo/formats/SpriteWriter.h"
#include "formats/SpriteArchive.h"
#include "fuzz/FuzzEntry.h"
#include "fuzz/FuzzSprites.h"

std::vector<std::string> fuzz::Seeds() {
    return {demo::WriteTsh({{2, 2, {1, 2, 3, 4}}, {0, 0, {}}, {1, 3, {5, 6, 7}}}),
            demo::WriteTsh({{255, 255, std::vector<std::uint8_t>(255 * 255)}})};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    SpriteArchive archive;
    (void)LoadTshBytes(archive, fuzz::Text(data, size), "fuzz.tsh");
    fuzz::ConvertSprites(archive);
    return 0;
}
