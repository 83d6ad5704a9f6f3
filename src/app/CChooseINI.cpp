#include "app/CChooseINI.h"

#include <algorithm>
#include <cmath>

#include "app/CMain.h"
#include "app/SceneManager.h"
#include "diag/CMemMan.h"
#include "diag/LogFile.h"
#include "graphics/device/DXGState.h"
#include "graphics/text/Draw2D.h"
#include "input/KeyboardStateManager.h"
#include "platform/FileSystem.h"
#include "session/PlayerData.h"

namespace {

constexpr std::uint8_t keyEnter = 28;
constexpr std::uint8_t keyUp = 200;
constexpr std::uint8_t keyDown = 208;
constexpr float fullTurn = 6.2831855F;
constexpr std::uint32_t black = 0xFF000000U;

// Settings and editor files of the game's own installation, told apart by their exact names.
constexpr const char* installationFiles[] = {"tolvarin.ini", "settings.ini", "sound.ini",   "skills.ini",
                                             "editor.ini",   "keys.ini",     "default.ini", "desktop.ini"};

bool IsPlayerFileCandidate(const std::string& name) {
    if (name.size() < 4 || name[name.size() - 4] != '.') return false;
    return std::find(std::begin(installationFiles), std::end(installationFiles), name) == std::end(installationFiles);
}

}  // namespace

CChooseINI::CChooseINI() {
    CollectEntries();
    if (entries.empty()) {
        errorLog.Write("No valid player .ini files found.\n");
        listText.SetText(Vary(
            "ERROR: No valid player .ini files found.\n\nPlease verify that you put Kelvane inside of Tolvarin's\n   "
            "Directory, as it relies on some of Tolvarin's data files."));
        listText.SetPosition(200.0F, 300.0F);
    } else {
        std::string list;
        for (const Entry& entry : entries)
            list += entry.display + "\n\n";
        listText.SetText(Vary(list));
        listText.SetPosition(310.0F, 250.0F);
    }
    marker.LoadCC("data\\pickINI.bmp");
    banner.SetFont("times new roman", 48.0F, false);
    banner.SetSize(48.0F);
    banner.SetText(Vary("  Kelvane Client\n"));
    banner.SetPosition(175.0F, 30.0F);
}

void CChooseINI::CollectEntries() {
    for (const std::string& name : platform::ListFiles("", "ini")) {
        if (!IsPlayerFileCandidate(name) || !LoadPlayerIni(name)) continue;
        std::string player;
        GetPlayerName(player);
        entries.push_back({player + " (" + name + ")", name});
    }
}

void CChooseINI::Update(float seconds) {
    if (entries.empty()) return;
    markerPhase = std::fmod(markerPhase + fullTurn * seconds, fullTurn);
    const KeyboardStateManager& keyboard = KeyboardStateManager::Default();
    const int count = static_cast<int>(entries.size());
    if (keyboard.WasKeyPressed(keyUp)) --selected;
    if (keyboard.WasKeyPressed(keyDown)) ++selected;
    if (selected < 0) selected = count - 1;
    if (selected >= count) selected = 0;
    if (keyboard.WasKeyPressed(keyEnter)) Choose();
}

// Listing has filled the player's record with the last file read, so the chosen one is read again.
void CChooseINI::Choose() {
    (void)LoadPlayerIni(entries[static_cast<std::size_t>(selected)].fileName);
    SceneManager::Default().RemoveScene();
    SceneManager::Default().AddScene(new2<CMain>({"CMain", "CMain", "CChooseINI", 146}));
}

void CChooseINI::Render() {
    DXG::Clear(black, true, true, true, 0);
    DXG::Set2DWholeBackBuffer();
    listText.Draw();
    if (!entries.empty() && marker.IsLoaded())
        G::DrawTexture(marker, std::sin(markerPhase) * 8.0F + 270.0F, static_cast<float>(selected * 32 + 250 - 12),
                       1.0F);
    banner.Draw();
}
