#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "demo/formats/ArchiveWriter.h"
#include "diag/PathFiles.h"
#include "formats/DreamArchive.h"
#include "fuzz/FuzzEntry.h"
#include "fuzz/GetterFeeder.h"
#include "platform/FileSystem.h"

namespace fs = std::filesystem;

// The first byte says who takes the name: a an archive's entry, g the file server's getter, else the check alone.
std::vector<std::string> fuzz::Seeds() {
    return {"na.txt",
            "ndeep\\er/file.map",
            "n..\\..\\x",
            "nC:\\x",
            "na\\.\\b",
            "nx. ",
            std::string("na\0b", 4),
            "n\\\\host\\x",
            "adefault.map",
            "aDoor\\x",
            "a..\\x",
            "adream\\x\\y",
            "aa.dream.SIZE",
            "gisle",
            "gDoor",
            "g..\\x",
            "g.",
            "gisle.dream"};
}

namespace {

[[noreturn]] void Complain(const std::string& what) {
    std::cerr << what << "\n";
    std::abort();
}

// Whatever a name is, the path that it leads to lies below its folder.
void CheckPath(const std::string& name) {
    const std::string path = ContainedPath("below\\", name);
    if (path.empty()) return;
    const std::string resolved = platform::ResolvePath(path);
    if (resolved.rfind("below/", 0) != 0) Complain("not below: " + resolved);
    for (const std::string& part : SplitTokens(resolved, "/"))
        if (part == "." || part == "..") Complain("goes up: " + resolved);
}

void Unpack(const std::string& name) {
    fuzz::WriteFile("dream/a.dream",
                    demo::WriteArchive({{name.substr(0, 47), demo::ArchiveMethod::Plain, "some contents"}}));
    fs::create_symlink("../..", "dream/door");
    (void)UnpackDreamArchive("dream\\a.dream");
    fuzz::RemoveFolder("dream");
}

void Download(const std::string& name) {
    fs::create_directory("kvn2_tmp");
    fs::create_symlink("../..", "kvn2_tmp/door");
    {
        TOLV::FileGetter getter(name, "kvn2_tmp\\" + name);
        TOLV::FileGetterFeeder(getter).Feed("10 welcome\n44 5 0 20\nSC" + std::string(8, '\0') +
                                            "12345 and what follows");
    }
    fuzz::RemoveFolder("kvn2_tmp");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    static const bool inside = [] {
        fs::create_directories("pen/gate");
        fs::current_path("pen/gate");
        fuzz::WriteFile("data/tolvfile_ip.txt", "127.0.0.1\n1\n");  // where nobody listens
        return true;
    }();
    (void)inside;
    if (size == 0) return 0;
    const std::string name(fuzz::Text(data + 1, size - 1));
    if (data[0] == 'a')
        Unpack(name);
    else if (data[0] == 'g')
        Download(name);
    else
        CheckPath(name);
    // Nothing new stands outside of the folders, which are gone.
    for (const auto& found : fs::recursive_directory_iterator("../..")) {
        const std::string at = found.path().string();
        const std::string file = found.path().filename().string();
        const bool log = file.starts_with("_") && file.ends_with(".txt");
        if (!log && at != "../../pen" && at != "../../pen/gate" && !at.starts_with("../../pen/gate/data"))
            Complain("escaped: " + at);
    }
    return 0;
}
