#pragma once
// Which font file stands for a face name.

#include <string>

namespace platform {

struct FontFile {
    std::string path;
    int index = 0;  // of the face within the file
};

// The upright, normal-weight, scalable face that the system's font matching gives for a name. A family that is neither
// the one asked for nor one that the system knows as its equal (Liberation Sans for Arial) gives way to Liberation
// Sans, so that a misspelt name does not end in whatever the system puts last. False when there is no font at all.
bool MatchFont(const std::string& faceName, FontFile& out);

}  // namespace platform
