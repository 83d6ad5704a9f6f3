#include "demo/formats/ArchiveWriter.h"
#include "formats/DreamArchive.h"
#include "fuzz/FuzzEntry.h"

std::vector<std::string> fuzz::Seeds() {
    std::string varied;
    for (int i = 0; i < 3000; ++i)
        varied.push_back(static_cast<char>(i * i / 7 % 251));
    const auto stored = [](const std::string& contents) {
        return demo::StoredData(demo::ArchiveMethod::Bzip2, contents);
    };
    return {stored("a text, a text"), stored(varied), stored(std::string(1U << 20, 'x')), stored("")};
}

// The bytes as what an archive stores by the bzip2 method.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    const auto storedSize = static_cast<std::uint32_t>(size);
    fuzz::WriteFile("dream/a.dream", demo::ArchiveHeader() + demo::ArchiveEntryHeader("default.map", storedSize, 2) +
                                         std::string(fuzz::Text(data, size)));
    (void)UnpackDreamArchive("dream\\a.dream");
    fuzz::RemoveFolder("dream");
    return 0;
}
