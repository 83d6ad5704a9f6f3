#pragma once
// What a fuzz entry defines and what it may use. Each entry is one program: this project's own driver calls it, or
// libFuzzer.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// Defined by every entry: sound inputs to start from.
std::vector<std::string> Seeds();

// To be called first by every entry: works in a temporary folder, keeps the logs there small and answers message boxes.
void BeginRun();
inline std::string_view Text(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}
// Writes a file below the working folder, making its parents; slashes divide.
void WriteFile(const std::string& name, std::string_view content);
// Removes what a run has made below a folder.
void RemoveFolder(const std::string& name);

}  // namespace fuzz
