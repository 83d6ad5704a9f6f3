#pragma once
// Files by the game's paths: parts divided by backslash or slash, ASCII letters of any case, relative to the working
// folder.
//
// A part of a path that exists with exactly these letters wins; otherwise the alphabetically first entry that differs
// only in case is taken, and when there were several the choice is told once to the notice sink. Parts that do not
// exist keep the letters given, so a path to a new file names the place where it will be created.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

enum class OpenMode { Read, Write, Append };  // Write creates or truncates; Append creates or continues.

// An open file, buffered, closed by its destructor. Movable, not copyable; an empty one answers every call with
// failure.
class File {
  public:
    File() = default;
    File(std::string_view path, OpenMode mode);
    // Opens by the system's own path, letter for letter: for the logs, which must not depend on the search by case.
    static File ByPlainName(const std::string& hostPath, OpenMode mode);
    ~File();
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    [[nodiscard]] bool IsOpen() const;
    // Bytes read, fewer than count at the end of the file or on an error.
    std::size_t Read(void* out, std::size_t count);
    // True once the bytes are written or buffered; Close() tells of what is found out later.
    [[nodiscard]] bool Write(const void* data, std::size_t count);
    // Moves to `offset` bytes from the start.
    [[nodiscard]] bool Seek(std::uint64_t offset);
    // Length in bytes, 0 when not open.
    [[nodiscard]] std::uint64_t Size() const;
    // False when the system could not keep all that was written.
    bool Close();

  private:
    void* handle = nullptr;
};

// The whole content; false and an empty `out` when it cannot be opened or read to its end, or has more than `most`
// bytes (the caps are in platform/Caps.h). Folders cannot be opened.
[[nodiscard]] bool ReadFileBytes(std::string_view path, std::string& out, std::uint64_t most);
// As ReadFileBytes, in text mode: a carriage return before a line feed is dropped.
[[nodiscard]] bool ReadFileText(std::string_view path, std::string& out, std::uint64_t most);

// The length of a regular file in bytes; 0 when it cannot be opened.
std::uint64_t FileLength(std::string_view path);
bool RemoveFile(std::string_view path);
// Replaces `to` when it exists.
bool RenameFile(std::string_view from, std::string_view to);
// False when it could not be made or something is already there.
bool MakeDirectory(std::string_view path);

// Names of the regular files in a folder ("" is the working folder) whose extension, without regard to case, begins
// with `extension` ("ini" also yields "x.inix", as the system's own pattern search does). In the order the system lists
// them.
std::vector<std::string> ListFiles(std::string_view folder, std::string_view extension);

// The path on this system that a game path stands for (see the rules above).
std::string ResolvePath(std::string_view path);

// True when some existing part of the path below `folder` is a symbolic link.
bool HasLinkBelow(std::string_view folder, std::string_view relativePath);

// Where ambiguous names are told; null drops them.
void SetPathNoticeSink(void (*sink)(const std::string& notice));

// Forgets cached folder listings (after files were changed behind the program's back).
void ForgetListings();

}  // namespace platform
