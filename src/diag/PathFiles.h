#pragma once
// Path and file helpers for the game's own paths, which divide folders by backslashes (slashes count as well).

#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Caps.h"

// Length in bytes; 0 when the file cannot be opened.
std::uint64_t FileSize(const std::string& path);
// Creates every folder named on the path (each prefix that ends at a separator); failures are ignored.
void MakePathDirectories(const std::string& path);
std::string DirectoryOf(const std::string& path);       // up to and with the last separator, else empty
std::string FileNameOf(const std::string& path);        // after the last separator
std::string ExtensionOf(const std::string& path);       // after the last ".", else empty
std::string WithoutExtension(const std::string& path);  // before the last ".", else whole
// The content in text mode or as bytes; empty when it cannot be opened. A file of more than `most` bytes counts, here
// and below, as one that cannot be opened.
std::string ReadWholeFile(const std::string& path, bool binary, std::uint64_t most = caps::textFileBytes);
enum class WriteOutcome { Written, NotOpened, CutShort };
// Creates or replaces a file. The bytes go to a file beside it first (".tmp" is added to the name), so that a full disk
// or the end of the process leaves the file of before or none, never a part.
[[nodiscard]] WriteOutcome WriteWholeFile(const std::string& path, std::string_view bytes);
// Text mode, split at line feeds, empty lines dropped. False when it cannot be opened.
bool ReadLines(const std::string& path, std::vector<std::string>& lines, std::uint64_t most = caps::textFileBytes);
// Lines up to the first empty one; false with a message when it cannot be opened.
bool LoadStringList(std::list<std::string>& list, const std::string& path);
// The pieces between delimiter characters, empty ones dropped.
std::vector<std::string> SplitTokens(std::string_view text, std::string_view delimiters);
// Leading white space, optional sign, decimal digits; clamps at the ends of int; 0 without digits.
int DecimalOf(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

// Where a file named by an archive, a server or a list may be written or read: folder + name, or empty, with a message
// unless `report` is false, when the name is empty, absolute, longer than 200 bytes, has a drive or stream colon, a
// control byte, a part that is
// "." or "..", a part that ends in a space or full stop, or when a link stands in the way below `folder` (which ends in
// a separator or is empty).
std::string ContainedPath(const std::string& folder, const std::string& name, bool report = true);
