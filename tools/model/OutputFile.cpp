#include "OutputFile.h"

#include <unistd.h>

#include <fstream>

namespace fs = std::filesystem;

void ReplaceFile(const fs::path& path, const std::function<bool(const fs::path& temporary)>& write) {
    const fs::path temporary =
        path.parent_path() / ("." + path.stem().string() + "-" + std::to_string(getpid()) + path.extension().string());
    std::error_code failure;
    const bool written = write(temporary);
    if (written) fs::rename(temporary, path, failure);
    if (written && !failure) return;
    fs::remove(temporary, failure);
    throw std::runtime_error(path.string() + " cannot be written");
}

void ReplaceFile(const fs::path& path, const std::string& bytes) {
    ReplaceFile(path, [&bytes](const fs::path& temporary) {
        std::ofstream file(temporary, std::ios::binary);
        file << bytes;
        file.close();
        return !file.fail();
    });
}
