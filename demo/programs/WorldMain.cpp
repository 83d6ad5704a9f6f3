// Writes a demo installation folder.
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "demo/install/Installation.h"

namespace {

constexpr const char* usage =
    "usage: kelvane-demo-world FOLDER [--game-port N] [--file-port N] [--data FOLDER]\n"
    "  Makes FOLDER a game installation with a town, two dreams, palettes, sprites and two players, Ada and Bram.\n"
    "  --game-port, --file-port  where the client looks for the servers on 127.0.0.1 (0)\n"
    "  --data                    the client's own data, copied along\n";

bool Parse(int count, char** words, demo::InstallationOptions& options) {
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        if (!word.starts_with("--")) {
            if (!options.folder.empty()) return false;
            options.folder = word;
            continue;
        }
        if (++i == count) return false;
        if (word == "--data")
            options.clientData = words[i];
        else if (word == "--game-port")
            options.gamePort = static_cast<unsigned>(std::strtoul(words[i], nullptr, 10));
        else if (word == "--file-port")
            options.filePort = static_cast<unsigned>(std::strtoul(words[i], nullptr, 10));
        else
            return false;
    }
    return !options.folder.empty() && options.gamePort <= 65535 && options.filePort <= 65535;
}

}  // namespace

int main(int count, char** words) {
    demo::InstallationOptions options;
    options.clientData = KELVANE_DATA_FOLDER;
    if (!Parse(count, words, options)) {
        std::cerr << usage;
        return 2;
    }
    try {
        std::string reason;
        if (demo::WriteInstallation(options, reason)) return 0;
        std::cerr << "kelvane-demo-world: " << reason << "\n";
    } catch (const std::exception& failure) {
        std::cerr << "kelvane-demo-world: " << failure.what() << "\n";
    }
    return 1;
}
