#include "session/PlayerData.h"

#include <string_view>

#include "diag/LogFile.h"
#include "platform/Caps.h"
#include "platform/FileSystem.h"

namespace {

constexpr std::string_view knownVersion = "V1.6";
constexpr std::string_view specKey = "Spec=";

// The next line of the text, which loses it; empty at the end as well.
std::string_view TakeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(line.size() < text.size() ? line.size() + 1 : text.size());
    return line;
}

int SpecDigit(char c) {
    return static_cast<signed char>(c) - 48;
}

}  // namespace

PlayerData& GetPlayerData() {
    static PlayerData data;
    return data;
}

void GetPlayerName(std::string& out) {
    out = GetPlayerData().name;
}

bool LoadPlayerIni(const std::string& path) {
    std::string content;
    if (!platform::ReadFileText(path, content, caps::playerFileBytes)) {
        errorLog.Write("Failed to open player ini file: " + path + "\n");
        return false;
    }
    std::string_view rest = content;
    if (!TakeLine(rest).starts_with(knownVersion))
        errorLog.Write("Warning: player ini file \"" + path + "\" not a recognized version.\n");

    PlayerData& player = GetPlayerData();
    struct TextKey {
        std::string_view key;
        std::string& field;
        bool seen;
    };
    TextKey keys[] = {{"Desc=", player.desc, false},
                      {"Colors=", player.colors, false},
                      {"Name=", player.name, false},
                      {"Password=", player.password, false}};
    bool specSeen = false;
    for (std::string_view line = TakeLine(rest); !line.empty(); line = TakeLine(rest)) {
        for (TextKey& key : keys) {
            if (!line.starts_with(key.key)) continue;
            const std::string_view value = line.substr(key.key.size());
            key.field = value.substr(0, value.find('\0'));
            key.seen = true;
        }
        if (!line.starts_with(specKey) || line.size() < specKey.size() + 2) continue;
        player.spec[0] = SpecDigit(line[5]);
        player.spec[1] = SpecDigit(line[6]);
        specSeen = true;
    }
    bool allSeen = specSeen;
    for (const TextKey& key : keys)
        allSeen = allSeen && key.seen;
    if (!allSeen) errorLog.Write("Error: Could not load all vital data fields from player .ini: " + path + "\n");
    return allSeen;
}
