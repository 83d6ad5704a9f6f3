#include "session/TolvSession.h"

#include <algorithm>
#include <vector>

#include "diag/PathFiles.h"
#include "formats/Palette.h"
#include "formats/TolvMap.h"
#include "net/NetClient.h"
#include "platform/Caps.h"
#include "platform/Clock.h"
#include "session/CharacterCode.h"
#include "session/PlayerData.h"
#include "session/TolvDataManager.h"
#include "session/WireNumbers.h"
#include "session/WorldPort.h"

namespace {

// An order handled later in a poll than one part in so many of a second leaves the lines behind it to the next poll.
constexpr std::int64_t pollsPerSecond = 10;
constexpr const char* defaultFolder = "patches\\default\\";

struct GridCell {
    int gx = 0;
    int gy = 0;
};

TolvDataManager& Data() {
    return TolvDataManager::Default();
}

int TwoDigits(std::string_view line, std::size_t at) {
    return DecodeBase95(line.substr(at, 2));
}

// A position: two digits of x and two of y in the columns of the map file.
GridCell CellAt(std::string_view line, std::size_t at) {
    GridCell cell;
    TolvMap::Current().FileToGrid(TwoDigits(line, at), TwoDigits(line, at + 2), cell.gx, cell.gy);
    return cell;
}

// A colour code at 1, the position at 11 and a frame code at 15.
Character CharacterOf(std::string_view line) {
    Character character;
    DecodeCharacter(line.substr(1, 10), line.substr(15, 2), character);
    const GridCell cell = CellAt(line, 11);
    character.gx = cell.gx;
    character.gy = cell.gy;
    return character;
}

void RemoveCharacter(std::string_view line) {
    const GridCell cell = CellAt(line, 1);
    Data().RemoveCharacterAt(cell.gx, cell.gy);
}

void MoveCharacter(std::string_view line) {
    const GridCell old = CellAt(line, 17);
    Data().MoveCharacter(old.gx, old.gy, CharacterOf(line));
}

void ShowCharacter(std::string_view line) {
    const Character character = CharacterOf(line);
    Data().MoveCharacter(character.gx, character.gy, character);
}

void ChangeObject(std::string_view line) {
    const GridCell cell = CellAt(line, 1);
    TolvMap::Current().SetObject(cell.gx, cell.gy, static_cast<std::uint16_t>(TwoDigits(line, 5)));
}

void MoveView(std::string_view line) {
    const GridCell cell = CellAt(line, 1);
    Data().SetViewPosition(cell.gx, cell.gy);
}

// The place of a file that the server named, empty for a name that is refused, which is said so often and no more.
std::string FileOfServer(const std::string& folder, std::string_view name) {
    static std::size_t reports = caps::refusalMessages;
    const std::string path = ContainedPath(folder, std::string(name), reports > 0);
    if (path.empty() && reports > 0) --reports;
    return path;
}

void ChangePalette(std::string_view line) {
    const std::string path = FileOfServer(defaultFolder, line.substr(3));
    if (!path.empty()) LoadPcxPalette(path);
}

// The position at 2, two bytes of unknown meaning at 6, then the label, a space and the second label.
void AddMarker(std::string_view line) {
    const GridCell cell = CellAt(line, 2);
    const std::size_t labelEnd = std::min(line.find(' ', 8), line.size());
    Marker marker{cell.gx, cell.gy, std::string(line.substr(8, labelEnd - 8)), std::string(line.substr(labelEnd))};
    std::erase(marker.subLabel, ' ');
    Data().AddMarker(marker);
}

void RemoveMarker(std::string_view line) {
    const GridCell cell = CellAt(line, 2);
    Data().RemoveMarkerAt(cell.gx, cell.gy);
}

void LeaveMap() {
    Data().ClearCharacters();
    Data().ClearMarkers();
}

// A name that must not become a file name ends as a failed transfer, so that the player is asked what to do.
void EnterDream(std::string_view line) {
    const std::string name(line.substr(3, line.find(' ', 3) - 3));
    LeaveMap();
    if (!Data().StartDreamTransfer(name, "kvn2_tmp\\" + name)) Data().PostMessage("> Downloading Dream...");
}

// Lines that can make the client read files, search all markers or, in the greeting, answer. The others take a
// microsecond or two, however many there are.
bool IsOrder(std::string_view line) {
    return !line.empty() && (line[0] == ';' || line[0] == ']');
}

void HandleBracketLine(std::string_view line) {
    if (line.size() >= 4 && line[1] == 'c' && line[2] == 'c')
        ChangePalette(line);
    else if (line.size() >= 8 && line[1] == 's')
        AddMarker(line);
    else if (line.size() >= 6 && line[1] == 't')
        RemoveMarker(line);
    else if (line.size() >= 6 && line[1] == 'q')
        EnterDream(line);
}

}  // namespace

TolvSession& TolvSession::Default() {
    static TolvSession session;
    return session;
}

void TolvSession::PollServer() {
    if (!netClient) return;
    if (HasUnhandled() || netClient->PendingBytes() > 0) {
        if (HasUnhandled() || netClient->ReceiveData(received)) HandleReceived();
        if (HasUnhandled()) return;
        received = std::vector<char>();
        handled = 0;
        greetingPhase = false;
    }
    if (loggedIn && !netClient->IsConnected()) {
        loggedIn = false;
        Data().PostMessage("(Lost Connection to game server)");
    }
}

void TolvSession::HandleReceived() {
    const std::int64_t end = platform::CounterValue() + platform::CounterFrequency() / pollsPerSecond;
    const std::string_view rest = std::string_view(received.data(), received.size()).substr(handled);
    handled += lineFramer.FeedWhile(rest, [&](std::string_view line) {
        HandleServerLine(line);
        return !(greetingPhase || IsOrder(line)) || platform::CounterValue() < end;
    });
}

void TolvSession::HandleServerLine(std::string_view line) {
    if (greetingPhase)
        HandleGreeting(line);
    else if (!loggedIn)
        HandleLoginWait(line);
    else if (!line.empty())
        HandleGameLine(line);
}

void TolvSession::HandleGreeting(std::string_view line) {
    Data().PostMessage(std::string(line));
    const PlayerData& player = GetPlayerData();
    if (line.find("END") != std::string::npos) SendLine("connect " + player.name + " " + player.password);
}

void TolvSession::HandleLoginWait(std::string_view line) {
    if (line.find("&&&&&&&&&&&&&") == std::string::npos) return;
    const PlayerData& player = GetPlayerData();
    SendLine("desc " + player.desc);
    SendLine("color " + player.colors + EncodeBase95(player.spec[0], false) + EncodeBase95(player.spec[1], false) +
             " ");
    loggedIn = true;
}

void TolvSession::HandleGameLine(std::string_view line) {
    if (line == "Nope." || line == "Invalid Name or password.") {
        Data().PostMessage("Server reported error while trying to log in.");
        return;
    }
    const std::size_t length = line.size();
    switch (line[0]) {
        case '(':
        case '[':
            if (length > 1) Data().PostMessage(StripControlChars(line.substr(1)));
            break;
        case ')':
            if (length >= 5) RemoveCharacter(line);
            break;
        case '/':
            if (length >= 21) MoveCharacter(line);
            break;
        case '1':
            if (length >= 7) ChangeFloor(line);
            break;
        case '<':
            if (length >= 17) ShowCharacter(line);
            break;
        case ';':
            if (length >= 6) ChangeMap(line);
            break;
        case '>':
            if (length >= 7) ChangeObject(line);
            break;
        case '@':
            if (length >= 5) MoveView(line);
            break;
        case ']':
            HandleBracketLine(line);
            break;
        default:
            break;
    }
}

void TolvSession::ChangeFloor(std::string_view line) {
    const GridCell cell = CellAt(line, 1);
    TolvMap::Current().SetFloor(cell.gx, cell.gy, static_cast<std::uint16_t>(TwoDigits(line, 5)));
    if (worldPort) worldPort->MarkFloorsDirtyNear(cell.gx, cell.gy);
}

void TolvSession::ChangeMap(std::string_view line) {
    LeaveMap();
    const std::string path = FileOfServer("", line.substr(1));
    // A refused name is a map that cannot be loaded, which leaves none.
    if (path.empty())
        TolvMap::Current() = TolvMap();
    else
        (void)TolvMap::Current().LoadMap(path);
    if (worldPort) worldPort->LoadDreamGraphics(defaultFolder);
}

bool TolvSession::SendLine(const std::string& line) {
    if (!netClient || !netClient->IsConnected()) return false;
    const std::string bytes = line + "\n";
    return netClient->SendData(bytes.data(), static_cast<int>(bytes.size()));
}

bool TolvSession::SendMove(int direction) {
    static constexpr const char* lines[] = {"m 9", "m 7", "m 1", "m 3", ">", "<"};
    if (direction < 0 || direction >= static_cast<int>(std::size(lines))) return false;
    return SendLine(lines[direction]);
}

bool TolvSession::SendLook(int gx, int gy) {
    int fx = 0;
    int fy = 0;
    TolvMap::Current().GridToFile(gx, gy, fx, fy);
    const std::string position = EncodeBase95(fx, true) + EncodeBase95(fy, true);
    // Numbers below 0 can give a byte that would end the line early.
    if (position.find('\n') != std::string::npos) return false;
    return SendLine("l " + position);
}
