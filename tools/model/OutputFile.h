#pragma once
// Files that appear whole or not at all.

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

// Has `write` write a file beside `path`, then puts it in the place of whatever is there. Throws std::runtime_error
// with a line for the user, and leaves nothing behind, when either fails.
void ReplaceFile(const std::filesystem::path& path,
                 const std::function<bool(const std::filesystem::path& temporary)>& write);
void ReplaceFile(const std::filesystem::path& path, const std::string& bytes);
