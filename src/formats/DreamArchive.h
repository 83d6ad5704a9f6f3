#pragma once
// Dream archives: one file that holds a dream's map and sprites.

#include <string>

// Writes every entry into the archive's own folder. True when the archive was walked to its end, even if single entries
// failed; false, with a message, when it cannot be read or a header is damaged. Nothing is written outside that folder.
bool UnpackDreamArchive(const std::string& archivePath);
