#pragma once
// The player's own fields, read from the character file of the game.

#include <string>

struct PlayerData {
    std::string name;
    std::string password;  // never written to any log
    std::string colors;
    std::string desc;
    int spec[2] = {0, 0};
};

// The one record of the run.
PlayerData& GetPlayerData();
void GetPlayerName(std::string& out);
// Fills the record field by field; true when all five keys were found before the first empty line.
bool LoadPlayerIni(const std::string& path);
