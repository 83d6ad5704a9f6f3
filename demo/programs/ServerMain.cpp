// The demo world's game and file server: serves until it is told to end.
#include <charconv>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "demo/server/DemoServer.h"
#include "demo/server/Road.h"

namespace {

constexpr const char* usage =
    "usage: kelvane-demo-server --folder FOLDER [--game-port N] [--file-port N] [--ports-file FILE] [--log FILE]\n"
    "                           [--write-addresses] [--log-lines] [--still] [--day-seconds N] [--seed N]\n"
    "       kelvane-demo-server --road PLACE\n"
    "  --folder           an installation folder made by kelvane-demo-world\n"
    "  --game-port, --file-port\n"
    "                     ports on the loopback address; 0 or nothing: the system picks\n"
    "  --ports-file       gets the lines \"game-port N\" and \"file-port N\" once both ports listen\n"
    "  --write-addresses  writes the ports into the folder's data, where clients look for them\n"
    "  --log-lines        every line of a player is logged as well\n"
    "  --still            nothing moves or changes by itself\n"
    "  --day-seconds      from day to evening and back (240; 0: never)\n"
    "  --road             prints the walk from the start to the door of a place, a digit of a movement line a step\n";

struct Arguments {
    std::filesystem::path folder;
    unsigned gamePort = 0;
    unsigned filePort = 0;
    std::string portsFile;
    std::string logFile;
    std::string road;
    bool writeAddresses = false;
    demo::GameOptions game;
};

bool ParseNumber(const char* text, unsigned largest, unsigned& number) {
    const char* end = text + std::strlen(text);
    const auto result = std::from_chars(text, end, number);
    return result.ec == std::errc() && result.ptr == end && number <= largest;
}

bool Parse(int count, char** words, Arguments& arguments) {
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        if (word == "--still")
            arguments.game.still = true;
        else if (word == "--log-lines")
            arguments.game.logLines = true;
        else if (word == "--write-addresses")
            arguments.writeAddresses = true;
        else if (i + 1 == count)
            return false;
        else {
            const char* value = words[++i];
            unsigned number = 0;
            if (word == "--folder")
                arguments.folder = value;
            else if (word == "--road")
                arguments.road = value;
            else if (word == "--ports-file")
                arguments.portsFile = value;
            else if (word == "--log")
                arguments.logFile = value;
            else if (word == "--game-port" && ParseNumber(value, 65535, number))
                arguments.gamePort = number;
            else if (word == "--file-port" && ParseNumber(value, 65535, number))
                arguments.filePort = number;
            else if (word == "--day-seconds" && ParseNumber(value, 86400, number))
                arguments.game.daySeconds = number;
            else if (word == "--seed" && ParseNumber(value, 0xFFFFFFFFU, number))
                arguments.game.seed = number;
            else
                return false;
        }
    }
    return arguments.folder.empty() == !arguments.road.empty();
}

int PrintRoad(const std::string& to) {
    const std::string road = demo::RoadTo(demo::MakePlaces().front(), to);
    if (road.empty()) {
        std::cerr << "kelvane-demo-server: no door leads to " << to << "\n";
        return 1;
    }
    for (const char step : road)
        std::cout << step << "\n";
    return 0;
}

// Readers see the whole file or none.
bool WriteWhole(const std::filesystem::path& path, const std::string& text) {
    const std::filesystem::path draft = path.string() + ".new";
    std::ofstream file(draft, std::ios::binary);
    file << text << std::flush;
    if (!file) return false;
    file.close();
    std::error_code failure;
    std::filesystem::rename(draft, path, failure);
    return !failure;
}

int Serve(const Arguments& arguments) {
    demo::ServerLog log(arguments.logFile);
    demo::DemoServer server(arguments.folder, arguments.game, log);
    std::string reason;
    if (!server.Listen(static_cast<std::uint16_t>(arguments.gamePort), static_cast<std::uint16_t>(arguments.filePort),
                       reason)) {
        std::cerr << "kelvane-demo-server: cannot listen: " << reason << "\n";
        return 1;
    }
    server.StopOnSignals();
    const std::string game = std::to_string(server.GamePort());
    const std::string files = std::to_string(server.FilePort());
    bool written = true;
    if (arguments.writeAddresses)
        written = WriteWhole(arguments.folder / "data/tolv_ip.txt", "127.0.0.1\n" + game + "\n") &&
                  WriteWhole(arguments.folder / "data/tolvfile_ip.txt", "127.0.0.1\n" + files + "\n");
    if (written && !arguments.portsFile.empty())
        written = WriteWhole(arguments.portsFile, "game-port " + game + "\nfile-port " + files + "\n");
    if (!written) {
        std::cerr << "kelvane-demo-server: cannot write the ports\n";
        return 1;
    }
    server.Run();
    return 0;
}

}  // namespace

int main(int count, char** words) {
    Arguments arguments;
    if (!Parse(count, words, arguments)) {
        std::cerr << usage;
        return 2;
    }
    try {
        return arguments.road.empty() ? Serve(arguments) : PrintRoad(arguments.road);
    } catch (const std::exception& failure) {
        std::cerr << "kelvane-demo-server: " << failure.what() << "\n";
        return 1;
    }
}
