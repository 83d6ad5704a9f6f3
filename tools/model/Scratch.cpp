#include "Scratch.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/FileSystem.h"

namespace fs = std::filesystem;

namespace {

class ScratchFolder {
  public:
    ScratchFolder() {
        std::error_code failure;
        userFolder = fs::current_path(failure);
        std::string pattern = (fs::temp_directory_path(failure) / "kelvane-model-XXXXXX").string();
        if (failure || !mkdtemp(pattern.data()) || chdir(pattern.c_str()) != 0) {
            std::fputs("kelvane-model: no temporary folder can be made\n", stderr);
            _exit(1);
        }
        path = pattern;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        if (getpid() != owner) return;
        fs::current_path("/", ignored);
        fs::remove_all(path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    fs::path userFolder;

  private:
    const pid_t owner = getpid();
    fs::path path;
};

// Born before the logs and gone after them: they have the same priority, and a program's own objects come before those
// of its libraries.
[[gnu::init_priority(101)]] ScratchFolder scratch;

}  // namespace

fs::path UserPath(const std::string& given) {
    return (scratch.userFolder / given).lexically_normal();
}

std::string LinkFolder(const fs::path& folder, const std::string& name) {
    std::error_code ignored;
    fs::remove(name, ignored);
    fs::create_directory_symlink(folder, name, ignored);
    platform::ForgetListings();
    return name + "\\";
}
