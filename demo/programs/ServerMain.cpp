// The demo world's game and file server: serves until it is told to end, well or as badly as it is asked to.
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "demo/server/DemoServer.h"
#include "demo/server/Road.h"
#include "demo/storms/StormServer.h"

namespace {

constexpr const char* usage =
    "usage: kelvane-demo-server --folder FOLDER [--game-port N] [--file-port N] [--ports-file FILE] [--log FILE]\n"
    "                           [--write-addresses] [--log-lines] [--still] [--day-seconds N] [--seed N]\n"
    "                           [--crowd N] [--tour SECONDS] [--misbehave MODE[,MODE...]]...\n"
    "       kelvane-demo-server --road PLACE | --help\n"
    "  --folder           an installation folder made by kelvane-demo-world\n"
    "  --game-port, --file-port\n"
    "                     ports on the loopback address; 0 or nothing: the system picks\n"
    "  --ports-file       gets the lines \"game-port N\" and \"file-port N\" once both ports listen\n"
    "  --write-addresses  writes the ports into the folder's data, where clients look for them\n"
    "  --log-lines        every line of a player is logged as well\n"
    "  --still            nothing moves or changes by itself\n"
    "  --day-seconds      from day to evening and back (240; 0: never)\n"
    "  --crowd            N more inhabitants in every place, who walk and talk all the time\n"
    "  --tour             sends every player on to the next dream after so many seconds, and home after the last\n"
    "  --road             prints the walk from the start to the door of a place, a digit of a movement line a step\n"
    "  --misbehave        no game, but a server that misbehaves on purpose, to see how a client bears it: each client\n"
    "                     that connects meets the next of the modes, again from the first one behind the last\n"
    "modes:\n";

// Clients show no more characters than 8192.
constexpr unsigned largestCrowd = 8000;

struct Arguments {
    std::filesystem::path folder;
    unsigned gamePort = 0;
    unsigned filePort = 0;
    std::string portsFile;
    std::string logFile;
    std::string road;
    bool writeAddresses = false;
    bool help = false;
    demo::GameOptions game;
    std::vector<const demo::Misbehaviour*> modes;
};

void PrintUsage(std::ostream& out) {
    out << usage;
    for (const demo::Misbehaviour& mode : demo::Misbehaviours())
        out << "  " << std::left << std::setw(19) << mode.name << mode.text << "\n";
}

bool ParseNumber(const char* text, unsigned largest, unsigned& number) {
    const char* end = text + std::strlen(text);
    const auto result = std::from_chars(text, end, number);
    return result.ec == std::errc() && result.ptr == end && number <= largest;
}

// False, with a word to the user, for a mode that there is not.
bool AddModes(std::string_view names, std::vector<const demo::Misbehaviour*>& modes) {
    while (!names.empty()) {
        const std::size_t end = std::min(names.find(','), names.size());
        const demo::Misbehaviour* const mode = demo::FindMisbehaviour(names.substr(0, end));
        if (!mode) {
            std::cerr << "kelvane-demo-server: no way to misbehave is called " << names.substr(0, end) << "\n";
            return false;
        }
        modes.push_back(mode);
        names.remove_prefix(std::min(end + 1, names.size()));
    }
    return !modes.empty();
}

bool Parse(int count, char** words, Arguments& arguments) {
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        if (word == "--help") return arguments.help = true;
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
            else if (word == "--crowd" && ParseNumber(value, largestCrowd, number))
                arguments.game.crowd = static_cast<int>(number);
            else if (word == "--tour" && ParseNumber(value, 86400, number))
                arguments.game.tourSeconds = number;
            else if (word != "--misbehave" || !AddModes(value, arguments.modes))
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

template <typename Server>
int Serve(Server& server, const Arguments& arguments) {
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

int Serve(const Arguments& arguments) {
    demo::ServerLog log(arguments.logFile);
    if (!arguments.modes.empty()) {
        demo::StormServer server(arguments.folder, arguments.modes, log);
        return Serve(server, arguments);
    }
    demo::DemoServer server(arguments.folder, arguments.game, log);
    return Serve(server, arguments);
}

}  // namespace

int main(int count, char** words) {
    Arguments arguments;
    if (!Parse(count, words, arguments)) {
        PrintUsage(std::cerr);
        return 2;
    }
    if (arguments.help) {
        PrintUsage(std::cout);
        return 0;
    }
    try {
        return arguments.road.empty() ? Serve(arguments) : PrintRoad(arguments.road);
    } catch (const std::exception& failure) {
        std::cerr << "kelvane-demo-server: " << failure.what() << "\n";
        return 1;
    }
}
