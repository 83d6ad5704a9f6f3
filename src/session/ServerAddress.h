#pragma once
// The small files that name a server: its host on the first line, then the port as a decimal number.

#include <string>

// False when the file cannot be opened; `host` is then "Failed to load" and `port` 0. A port that is no number is 0.
bool ReadServerAddress(const std::string& path, std::string& host, int& port);
