#include <cstdlib>

#include "diag/PathFiles.h"
#include "fuzz/FuzzEntry.h"
#include "platform/FileSystem.h"

std::vector<std::string> fuzz::Seeds() {
    return {"a.txt", "deep\\er/file.map",    "..\\..\\x",  "C:\\x", "a\\.\\b",
            "x. ",   std::string("a\0b", 3), "\\\\host\\x"};
}

// Whatever a name from outside is, the path that it leads to lies below its folder.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    const std::string path = ContainedPath("below\\", std::string(fuzz::Text(data, size)));
    if (path.empty()) return 0;
    const std::string resolved = platform::ResolvePath(path);
    if (resolved.rfind("below/", 0) != 0) std::abort();
    for (const std::string& part : SplitTokens(resolved, "/"))
        if (part == "." || part == "..") std::abort();
    return 0;
}
