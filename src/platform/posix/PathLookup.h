#pragma once
// How a game path finds its way on a system that tells letters apart by case.

#include <string>
#include <string_view>

namespace platform {

// ASCII letters in lower case; other bytes stay.
std::string FoldCase(std::string_view text);

// The entry of `hostFolder` ("" is the working folder, "/" the root) that `part` stands for: `part` itself when it
// exists or nothing fits, else the alphabetically first entry that differs only in case. `candidates` counts the
// entries that fitted.
std::string EntryFor(const std::string& hostFolder, const std::string& part, std::size_t& candidates);

}  // namespace platform
