#pragma once
// The folder that the program works in. The client's rooms write their logs, profile and caches into the working folder
// from before main to after its end, which must not be the user's.

#include <filesystem>
#include <string>

// The absolute path of a file or folder that the user named.
std::filesystem::path UserPath(const std::string& given);

// A name in the working folder that stands for a folder of the user's, as a game path with a separator at its end. The
// loader's file names stay as short as in the client's own data, whatever lies above the user's folder.
std::string LinkFolder(const std::filesystem::path& folder, const std::string& name);
