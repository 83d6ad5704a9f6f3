#include "demo/formats/ArchiveWriter.h"
#include "formats/DreamArchive.h"
#include "fuzz/FuzzEntry.h"

std::vector<std::string> fuzz::Seeds() {
    using demo::ArchiveMethod;
    const std::string text(3000, 't');
    return {demo::WriteArchive({{"default.map", ArchiveMethod::Lzw, text},
                                {"sub\\floors.ts2", ArchiveMethod::Bzip2, text},
                                {"walls.ts2", ArchiveMethod::Plain, "walls"}}),
            demo::WriteArchive({{"a", ArchiveMethod::Plain, "a"}, {"..\\b", ArchiveMethod::Plain, "b"}})};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::WriteFile("dream/a.dream", fuzz::Text(data, size));
    (void)UnpackDreamArchive("dream\\a.dream");
    fuzz::RemoveFolder("dream");
    return 0;
}
