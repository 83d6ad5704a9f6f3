#include "platform/posix/PathLookup.h"

#include <dirent.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <unordered_map>
#include <vector>

#include "platform/Caps.h"
#include "platform/FileSystem.h"

namespace platform {

namespace {

// What was found in a folder, by folded name; each list is sorted. Folders are known by what they are, not by their
// path, because the working folder may change.
struct Listing {
    dev_t device = 0;
    ino_t inode = 0;
    timespec changedAt{};
    timespec listedAt{};
    std::unordered_map<std::string, std::vector<std::string>> names;
};

// Lives until the process is gone: logs still open files while static objects die.
struct Cache {
    std::mutex lock;
    std::map<std::pair<dev_t, ino_t>, Listing> listings;
    std::set<std::string> noticed;
};
Cache& TheCache() {
    static Cache& cache = *new Cache;
    return cache;
}

std::atomic<void (*)(const std::string&)> noticeSink{nullptr};

bool IsSeparator(char c) {
    return c == '\\' || c == '/';
}

std::string Joined(const std::string& folder, std::string_view part) {
    if (folder.empty()) return std::string(part);
    return folder + (folder.back() == '/' ? "" : "/") + std::string(part);
}

bool Exists(const std::string& hostPath) {
    struct stat about {};
    return lstat(hostPath.c_str(), &about) == 0;
}

// File systems stamp changes with a clock that moves in steps of up to two seconds. A listing made so soon after the
// folder's last change may lack an entry made within the same step, so it is not used again.
bool IsSettled(const Listing& listing) {
    return listing.listedAt.tv_sec - listing.changedAt.tv_sec > 2;
}

bool IsCurrent(const Listing& listing, const struct stat& now) {
    return listing.changedAt.tv_sec == now.st_mtim.tv_sec && listing.changedAt.tv_nsec == now.st_mtim.tv_nsec &&
           IsSettled(listing);
}

void Fill(Listing& listing, const char* hostFolder, const struct stat& about) {
    listing.device = about.st_dev;
    listing.inode = about.st_ino;
    listing.changedAt = about.st_mtim;
    listing.listedAt = {};
    listing.names.clear();
    DIR* entries = opendir(hostFolder);
    // Out of handles, for example: the next question looks again.
    if (!entries) return;
    clock_gettime(CLOCK_REALTIME, &listing.listedAt);
    while (const dirent* entry = readdir(entries))
        listing.names[FoldCase(entry->d_name)].emplace_back(entry->d_name);
    closedir(entries);
    for (auto& [folded, names] : listing.names)
        std::sort(names.begin(), names.end());
}

std::vector<std::string> NamesLike(const std::string& hostFolder, std::string_view part) {
    const char* folder = hostFolder.empty() ? "." : hostFolder.c_str();
    struct stat about {};
    if (stat(folder, &about) != 0 || !S_ISDIR(about.st_mode)) return {};
    Cache& cache = TheCache();
    const std::lock_guard<std::mutex> hold(cache.lock);
    if (cache.listings.size() >= caps::keptFolders) cache.listings.clear();
    Listing& listing = cache.listings[{about.st_dev, about.st_ino}];
    if (!IsCurrent(listing, about)) Fill(listing, folder, about);
    const auto found = listing.names.find(FoldCase(part));
    return found == listing.names.end() ? std::vector<std::string>() : found->second;
}

void TellAmbiguity(std::string_view path, const std::string& chosen) {
    auto* sink = noticeSink.load();
    if (!sink) return;
    {
        Cache& cache = TheCache();
        const std::lock_guard<std::mutex> hold(cache.lock);
        if (cache.noticed.size() >= caps::keptNotices || !cache.noticed.emplace(path).second) return;
    }
    sink("Note: several names differ only in case from \"" + std::string(path) + "\"; using \"" + chosen + "\".\n");
}

std::vector<std::string> PartsOf(std::string_view path) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= path.size(); ++i) {
        if (i < path.size() && !IsSeparator(path[i])) continue;
        if (i > begin) parts.emplace_back(path.substr(begin, i - begin));
        begin = i + 1;
    }
    return parts;
}

}  // namespace

std::string FoldCase(std::string_view text) {
    std::string folded(text);
    for (char& c : folded)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return folded;
}

std::string EntryFor(const std::string& hostFolder, const std::string& part, std::size_t& candidates) {
    candidates = 1;
    if (part == "." || part == ".." || Exists(Joined(hostFolder, part))) return part;
    const std::vector<std::string> names = NamesLike(hostFolder, part);
    candidates = names.size();
    return names.empty() ? part : names.front();
}

std::string ResolvePath(std::string_view path) {
    if (path.empty()) return {};
    std::string resolved = IsSeparator(path.front()) ? "/" : "";
    bool ambiguous = false;
    const std::vector<std::string> parts = PartsOf(path);
    std::string asGiven = resolved;
    for (const std::string& part : parts)
        asGiven = Joined(asGiven, part);
    if (asGiven.empty() || Exists(asGiven)) return asGiven;
    for (const std::string& part : parts) {
        std::size_t candidates = 0;
        resolved = Joined(resolved, EntryFor(resolved, part, candidates));
        ambiguous = ambiguous || candidates > 1;
    }
    if (ambiguous) TellAmbiguity(path, resolved);
    return resolved;
}

bool HasLinkBelow(std::string_view folder, std::string_view relativePath) {
    std::string at = ResolvePath(folder);
    for (const std::string& part : PartsOf(relativePath)) {
        std::size_t candidates = 0;
        at = Joined(at, EntryFor(at, part, candidates));
        struct stat about {};
        if (lstat(at.c_str(), &about) != 0) return false;
        if (S_ISLNK(about.st_mode)) return true;
    }
    return false;
}

void SetPathNoticeSink(void (*sink)(const std::string& notice)) {
    noticeSink.store(sink);
}

void ForgetListings() {
    Cache& cache = TheCache();
    const std::lock_guard<std::mutex> hold(cache.lock);
    cache.listings.clear();
    cache.noticed.clear();
}

}  // namespace platform
