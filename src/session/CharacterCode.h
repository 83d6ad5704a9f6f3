#pragma once
// How the game server writes a character's looks.

#include <string_view>

struct Character;

// Fills the appearance of `character`: the colour digits from a 10-byte colour code, group, variant, facing and pose
// from a 2-digit frame code. What a code does not say is 0. The cell is left alone.
void DecodeCharacter(std::string_view colorCode, std::string_view frameCode, Character& character);
