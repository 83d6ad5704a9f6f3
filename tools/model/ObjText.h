#pragma once
// What of an OBJ text is handed to the parser.

#include <string>
#include <vector>

// The lines that make faces and their materials; curves, lines, points and the like are left out. Throws
// std::runtime_error with "LINE: what is wrong" for a face that names what is not there or has too many corners, and
// for a text that is none: the parser takes such for granted.
std::string SoundObjText(const std::string& text);
