#include "demo/formats/SpriteWriter.h"
#include "formats/SpriteArchive.h"
#include "fuzz/FuzzEntry.h"
#include "fuzz/FuzzSprites.h"

std::vector<std::string> fuzz::Seeds() {
    return {demo::WriteTs2({{0, {2, 2, {1, 2, 3, 4}}}, {1023, {0, 0, {}}}, {5, {1, 3, {5, 6, 7}}}}),
            demo::WriteTs2({{7, {255, 255, std::vector<std::uint8_t>(255 * 255)}}})};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    SpriteArchive archive;
    (void)LoadTs2Bytes(archive, fuzz::Text(data, size), "fuzz.ts2", 0);
    (void)LoadTs2Bytes(archive, fuzz::Text(data, size), "fuzz.ts2", 512);
    fuzz::ConvertSprites(archive);
    return 0;
}
