#include "demo/install/Installation.h"

#include <fstream>
#include <map>

#include "demo/install/Archives.h"
#include "demo/install/ColourFiles.h"

namespace demo {

namespace {

namespace fs = std::filesystem;

bool WriteFile(const fs::path& path, const std::string& bytes) {
    std::error_code ignored;
    fs::create_directories(path.parent_path(), ignored);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << bytes << std::flush;
    return file.good();
}

// Colours: ten bytes, each a number of the colour tables + 32.
std::string PlayerFile(const char* name, const char* password, const char* colours, const char* description) {
    return std::string("V1.6\nName=") + name + "\nPassword=" + password + "\nColors=" + colours +
           "\nDesc=" + description + "\nSpec=11\n";
}

std::map<std::string, std::string> AllFiles() {
    std::map<std::string, std::string> files = ColourFiles();
    Archives archives;
    files.merge(archives.GameFiles());
    for (const Place& place : MakePlaces()) {
        if (!place.IsDream()) files["maps/default.map"] = Archives::MapFile(place.map);
        if (place.name == tideGardenName) files["dreams/tidegarden.dream"] = archives.TideGarden(place);
        if (place.name == starLibraryName) files["dreams/starlibrary.dream"] = archives.StarLibrary(place);
    }
    files["Ada.ini"] = PlayerFile("Ada", "engine", "+5+\"%$!#+&",
                                  "A traveller with ink on her fingers and a brass key around her neck.");
    files["Bram.ini"] =
        PlayerFile("Bram", "lantern light", "#0#\"%&!#0&", "A tall fellow with a lantern, lit even by day.");
    return files;
}

}  // namespace

bool WriteAddresses(const fs::path& folder, unsigned gamePort, unsigned filePort) {
    return WriteFile(folder / "data/tolv_ip.txt", "127.0.0.1\n" + std::to_string(gamePort) + "\n") &&
           WriteFile(folder / "data/tolvfile_ip.txt", "127.0.0.1\n" + std::to_string(filePort) + "\n");
}

bool WriteInstallation(const InstallationOptions& options, std::string& reason) {
    std::error_code failure;
    fs::create_directories(options.folder / "data", failure);
    if (!failure && !options.clientData.empty())
        fs::copy(options.clientData, options.folder / "data",
                 fs::copy_options::recursive | fs::copy_options::overwrite_existing, failure);
    if (failure) {
        reason = failure.message();
        return false;
    }
    for (const auto& [path, bytes] : AllFiles())
        if (!WriteFile(options.folder / path, bytes)) {
            reason = path + " cannot be written";
            return false;
        }
    if (WriteAddresses(options.folder, options.gamePort, options.filePort)) return true;
    reason = "the addresses cannot be written";
    return false;
}

}  // namespace demo
