#include "platform/FileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "platform/posix/PathLookup.h"

namespace platform {

namespace {

// A path with a zero byte in it would end early for the system and name another file.
bool HostPathOf(std::string_view path, std::string& out) {
    if (path.empty() || path.find('\0') != std::string_view::npos) return false;
    out = ResolvePath(path);
    return !out.empty();
}

int OpenFlags(OpenMode mode) {
    // Not blocking, so that a named pipe in the way does not stop the program; files are not affected.
    constexpr int common = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    switch (mode) {
        case OpenMode::Write:
            return common | O_WRONLY | O_CREAT | O_TRUNC;
        case OpenMode::Append:
            return common | O_WRONLY | O_CREAT | O_APPEND;
        case OpenMode::Read:
            break;
    }
    return common | O_RDONLY;
}

bool IsFileToUse(int descriptor, OpenMode mode) {
    struct stat about {};
    if (fstat(descriptor, &about) != 0) return false;
    // Devices are sinks for what is written (such as the system's null device), never sources of data.
    return S_ISREG(about.st_mode) || (mode != OpenMode::Read && S_ISCHR(about.st_mode));
}

std::FILE* OpenStream(const std::string& hostPath, OpenMode mode) {
    const int descriptor = open(hostPath.c_str(), OpenFlags(mode), 0666);
    if (descriptor < 0) return nullptr;
    std::FILE* stream = nullptr;
    if (IsFileToUse(descriptor, mode))
        stream = fdopen(descriptor, mode == OpenMode::Read ? "rb" : mode == OpenMode::Write ? "wb" : "ab");
    if (!stream) close(descriptor);
    return stream;
}

std::FILE* StreamOf(void* handle) {
    return static_cast<std::FILE*>(handle);
}

}  // namespace

File::File(std::string_view path, OpenMode mode) {
    std::string hostPath;
    if (HostPathOf(path, hostPath)) handle = OpenStream(hostPath, mode);
}

File File::ByPlainName(const std::string& hostPath, OpenMode mode) {
    File file;
    if (!hostPath.empty()) file.handle = OpenStream(hostPath, mode);
    return file;
}

File::~File() {
    Close();
}

File::File(File&& other) noexcept : handle(std::exchange(other.handle, nullptr)) {}

File& File::operator=(File&& other) noexcept {
    if (this == &other) return *this;
    Close();
    handle = std::exchange(other.handle, nullptr);
    return *this;
}

bool File::IsOpen() const {
    return handle != nullptr;
}

std::size_t File::Read(void* out, std::size_t count) {
    return handle ? std::fread(out, 1, count, StreamOf(handle)) : 0;
}

bool File::Write(const void* data, std::size_t count) {
    return handle && std::fwrite(data, 1, count, StreamOf(handle)) == count;
}

bool File::Seek(std::uint64_t offset) {
    if (!handle || offset > static_cast<std::uint64_t>(INT64_MAX)) return false;
    return fseeko(StreamOf(handle), static_cast<off_t>(offset), SEEK_SET) == 0;
}

std::uint64_t File::Size() const {
    struct stat about {};
    // What was written and still lies in the buffer counts as well.
    if (!handle || std::fflush(StreamOf(handle)) != 0 || fstat(fileno(StreamOf(handle)), &about) != 0) return 0;
    return static_cast<std::uint64_t>(about.st_size);
}

bool File::Close() {
    if (!handle) return false;
    std::FILE* stream = StreamOf(std::exchange(handle, nullptr));
    const bool wroteAll = std::ferror(stream) == 0;
    return std::fclose(stream) == 0 && wroteAll;
}

bool ReadFileBytes(std::string_view path, std::string& out, std::uint64_t most) {
    out.clear();
    std::string hostPath;
    std::FILE* stream = HostPathOf(path, hostPath) ? OpenStream(hostPath, OpenMode::Read) : nullptr;
    if (!stream) return false;
    struct stat about {};
    bool whole = fstat(fileno(stream), &about) == 0 && static_cast<std::uint64_t>(about.st_size) <= most;
    if (whole) out.reserve(static_cast<std::size_t>(about.st_size));
    char block[16384];
    while (const std::size_t count = whole ? std::fread(block, 1, sizeof block, stream) : 0) {
        // The file may have grown meanwhile.
        whole = count <= most - out.size();
        if (whole) out.append(block, count);
    }
    whole = whole && std::ferror(stream) == 0;
    std::fclose(stream);
    if (!whole) out.clear();
    return whole;
}

bool ReadFileText(std::string_view path, std::string& out, std::uint64_t most) {
    if (!ReadFileBytes(path, out, most)) return false;
    std::size_t kept = std::min(out.find('\r'), out.size());
    for (std::size_t i = kept; i < out.size(); ++i)
        if (out[i] != '\r' || i + 1 == out.size() || out[i + 1] != '\n') out[kept++] = out[i];
    out.resize(kept);
    return true;
}

std::uint64_t FileLength(std::string_view path) {
    return File(path, OpenMode::Read).Size();
}

bool RemoveFile(std::string_view path) {
    std::string hostPath;
    return HostPathOf(path, hostPath) && unlink(hostPath.c_str()) == 0;
}

bool RenameFile(std::string_view from, std::string_view to) {
    std::string hostFrom;
    std::string hostTo;
    return HostPathOf(from, hostFrom) && HostPathOf(to, hostTo) && rename(hostFrom.c_str(), hostTo.c_str()) == 0;
}

bool MakeDirectory(std::string_view path) {
    std::string hostPath;
    return HostPathOf(path, hostPath) && mkdir(hostPath.c_str(), 0777) == 0;
}

std::vector<std::string> ListFiles(std::string_view folder, std::string_view extension) {
    std::vector<std::string> names;
    std::string hostFolder = ".";
    if (!folder.empty() && !HostPathOf(folder, hostFolder)) return names;
    DIR* listing = opendir(hostFolder.c_str());
    if (!listing) return names;
    while (const dirent* entry = readdir(listing)) {
        const std::string_view name = entry->d_name;
        const std::size_t dot = name.rfind('.');
        if (dot == std::string_view::npos) continue;
        if (FoldCase(name.substr(dot + 1, extension.size())) != FoldCase(extension)) continue;
        struct stat about {};
        if (fstatat(dirfd(listing), entry->d_name, &about, 0) == 0 && S_ISREG(about.st_mode)) names.emplace_back(name);
    }
    closedir(listing);
    return names;
}

}  // namespace platform
