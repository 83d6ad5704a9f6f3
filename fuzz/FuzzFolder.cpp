#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "fuzz/FuzzEntry.h"
#include "platform/FileSystem.h"
#include "platform/MessageBox.h"

// Absurd sizes that a library asks for are to fail as they do without a sanitizer, not to end the process. And the
// buffer of 64 MiB that unpacking takes again and again is to keep its shadow memory, which is most of a short run
// otherwise. NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): the sanitizer gives the name.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1:clear_shadow_mmap_threshold=1000000000";
}

// fontconfig keeps its configuration for the whole run, and some of it out of the reach of the leak checker.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}
extern "C" const char* __lsan_default_options() {
    return "print_suppressions=0";
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace fuzz {

namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t logBytes = 1U << 20;

platform::BoxAnswer AnswerNo(const std::string&, const std::string&, platform::BoxKind, bool) {
    return platform::BoxAnswer::No;
}

// The folder goes when the process ends well; after a crash it stays, with the logs.
class WorkFolder {
  public:
    WorkFolder() : path((fs::temp_directory_path() / "kelvane-fuzz-XXXXXX").string()), maker(getpid()) {
        if (!mkdtemp(path.data())) std::abort();
        fs::current_path(path);
        platform::SetMessageBoxHandler(AnswerNo);
    }
    ~WorkFolder() {
        if (getpid() != maker) return;
        std::error_code ignored;
        fs::current_path(fs::temp_directory_path(), ignored);
        fs::remove_all(path, ignored);
    }

  private:
    std::string path;
    const pid_t maker;
};

}  // namespace

void BeginRun() {
    static const WorkFolder folder;
    for (const char* log : {"_error.txt", "_stat.txt", "_netlog.txt", "_shaders.txt", "_meshStats.txt"}) {
        std::error_code absent;
        if (fs::file_size(log, absent) > logBytes && !absent) fs::resize_file(log, 0, absent);
    }
}

void WriteFile(const std::string& name, std::string_view content) {
    const fs::path path(name);
    if (path.has_parent_path()) fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
    platform::ForgetListings();
}

void RemoveFolder(const std::string& name) {
    std::error_code ignored;
    fs::remove_all(name, ignored);
    platform::ForgetListings();
}

}  // namespace fuzz
