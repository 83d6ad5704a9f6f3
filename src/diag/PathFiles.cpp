#include "diag/PathFiles.h"

#include <algorithm>
#include <limits>

#include "diag/LogFile.h"
#include "platform/FileSystem.h"

namespace {

constexpr std::string_view separators = "\\/";

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

bool IsSafePart(std::string_view part) {
    return part != "." && part != ".." && part.back() != ' ' && part.back() != '.';
}

// Whether a name from outside stays below the folder it is put in, by its letters alone.
bool IsSafeName(const std::string& name) {
    if (name.empty() || name.size() > caps::fileNameBytes) return false;
    if (name.find(':') != std::string::npos || std::any_of(name.begin(), name.end(), IsControl)) return false;
    if (separators.find(name.front()) != std::string_view::npos ||
        separators.find(name.back()) != std::string_view::npos)
        return false;
    const std::vector<std::string> parts = SplitTokens(name, separators);
    return std::all_of(parts.begin(), parts.end(), IsSafePart);
}

std::string Printable(std::string name) {
    if (name.size() > caps::fileNameBytes) name = name.substr(0, caps::fileNameBytes) + "...";
    std::replace_if(name.begin(), name.end(), IsControl, '?');
    return name;
}

}  // namespace

std::uint64_t FileSize(const std::string& path) {
    return platform::FileLength(path);
}

void MakePathDirectories(const std::string& path) {
    for (std::size_t i = 1; i < path.size(); ++i)
        if (separators.find(path[i]) != std::string_view::npos)
            static_cast<void>(platform::MakeDirectory(std::string_view(path).substr(0, i)));
}

std::string DirectoryOf(const std::string& path) {
    return path.substr(0, path.find_last_of(separators) + 1);
}

std::string FileNameOf(const std::string& path) {
    return path.substr(path.find_last_of(separators) + 1);
}

std::string ExtensionOf(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    return dot == std::string::npos ? std::string() : path.substr(dot + 1);
}

std::string WithoutExtension(const std::string& path) {
    return path.substr(0, path.rfind('.'));
}

std::string ReadWholeFile(const std::string& path, bool binary, std::uint64_t most) {
    std::string content;
    const auto read = binary ? &platform::ReadFileBytes : &platform::ReadFileText;
    (void)read(path, content, most);  // which leaves it empty on failure
    return content;
}

WriteOutcome WriteWholeFile(const std::string& path, std::string_view bytes) {
    const std::string unfinished = path + ".tmp";
    platform::File file(unfinished, platform::OpenMode::Write);
    if (!file.IsOpen()) return WriteOutcome::NotOpened;
    const bool written = file.Write(bytes.data(), bytes.size());
    // A full disk may show only now.
    const bool kept = file.Close() && written;
    if (kept && platform::RenameFile(unfinished, path)) return WriteOutcome::Written;
    static_cast<void>(platform::RemoveFile(unfinished));
    return kept ? WriteOutcome::NotOpened : WriteOutcome::CutShort;
}

bool ReadLines(const std::string& path, std::vector<std::string>& lines, std::uint64_t most) {
    std::string content;
    if (!platform::ReadFileText(path, content, most)) return false;
    lines = SplitTokens(content, "\n");
    return true;
}

bool LoadStringList(std::list<std::string>& list, const std::string& path) {
    std::string content;
    if (!platform::ReadFileText(path, content, caps::textFileBytes)) {
        errorLog.WriteReport({"Failed to open string list: ", path, "\n"});
        return false;
    }
    for (std::size_t begin = 0; begin < content.size();) {
        const std::size_t end = std::min(content.find('\n', begin), content.size());
        if (end == begin) break;
        list.push_back(content.substr(begin, end - begin));
        begin = end + 1;
    }
    return true;
}

std::vector<std::string> SplitTokens(std::string_view text, std::string_view delimiters) {
    std::vector<std::string> tokens;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find_first_of(delimiters, begin), text.size());
        if (end > begin) tokens.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return tokens;
}

int DecimalOf(std::string_view text) {
    std::size_t at = std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size());
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    constexpr std::int64_t beyond = 1LL + std::numeric_limits<int>::max();
    std::int64_t number = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at)
        number = std::min(number * 10 + (text[at] - '0'), beyond);
    return static_cast<int>(negative ? -number : std::min(number, beyond - 1));
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return Lower(x) == Lower(y); });
}

std::string ContainedPath(const std::string& folder, const std::string& name, bool report) {
    if (IsSafeName(name) && !platform::HasLinkBelow(folder, name)) return folder + name;
    if (report) errorLog.WriteReport({"Bad: file name refused: \"", Printable(name), "\"\n"});
    return {};
}
