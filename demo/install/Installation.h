#pragma once
// Writes the folder of a game installation, as the client expects to find itself in.

#include <filesystem>
#include <string>

namespace demo {

struct InstallationOptions {
    std::filesystem::path folder;
    std::filesystem::path clientData;  // the client's own data, copied to data\; nothing is copied when it is empty
    unsigned gamePort = 0;
    unsigned filePort = 0;
};

// Makes the folder and everything in it, over what is there. False, with the reason, when something cannot be written.
[[nodiscard]] bool WriteInstallation(const InstallationOptions& options, std::string& reason);

// The two address files in the folder's data.
[[nodiscard]] bool WriteAddresses(const std::filesystem::path& folder, unsigned gamePort, unsigned filePort);

}  // namespace demo
