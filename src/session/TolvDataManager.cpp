#include "session/TolvDataManager.h"

#include <algorithm>

#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "platform/Caps.h"
#include "session/MessageQueue.h"
#include "session/TolvFileGetter.h"

TolvDataManager& TolvDataManager::Default() {
    static TolvDataManager manager;
    return manager;
}

void TolvDataManager::PostMessage(const std::string& text) {
    MessageQueue::Default().Post(text);
}
bool TolvDataManager::PopMessage(std::string& out) {
    return MessageQueue::Default().Pop(out);
}

void TolvDataManager::ClearCharacters() {
    characters.clear();
    characterOfCell.clear();
}

void TolvDataManager::RemoveCharacterAt(int gx, int gy) {
    const auto found = characterOfCell.find({gx, gy});
    if (found == characterOfCell.end()) return;
    characters.erase(found->second);
    characterOfCell.erase(found);
}

Character* TolvDataManager::FindCharacterAt(int gx, int gy) {
    const auto found = characterOfCell.find({gx, gy});
    return found != characterOfCell.end() ? &*found->second : nullptr;
}

void TolvDataManager::MoveCharacter(int oldGx, int oldGy, const Character& character) {
    const Character moved = character;  // the caller's may be the one that is removed
    RemoveCharacterAt(oldGx, oldGy);
    if (Character* const standing = FindCharacterAt(moved.gx, moved.gy))
        *standing = moved;
    else if (characters.size() < caps::characters)
        characterOfCell[{moved.gx, moved.gy}] = characters.insert(characters.end(), moved);
}

void TolvDataManager::AddMarker(const Marker& marker) {
    if (markers.size() >= caps::markers) return;
    markers.push_back(
        {marker.gx, marker.gy, marker.label.substr(0, caps::labelBytes), marker.subLabel.substr(0, caps::labelBytes)});
}

void TolvDataManager::RemoveMarkerAt(int gx, int gy) {
    const auto found = std::find_if(markers.begin(), markers.end(),
                                    [&](const Marker& marker) { return marker.gx == gx && marker.gy == gy; });
    if (found != markers.end()) markers.erase(found);
}

void TolvDataManager::GetViewPosition(int& gx, int& gy) const {
    gx = viewGx;
    gy = viewGy;
}

void TolvDataManager::SetViewPosition(int gx, int gy) {
    viewGx = gx;
    viewGy = gy;
}

bool TolvDataManager::StartDreamTransfer(const std::string& id, const std::string& folder) {
    if (transfers.size() >= caps::transfers) {
        // Once until there is room again: a server can order any number of dreams.
        if (!refusing)
            errorLog.Write("Error: Too many file transfers at once, so another one is refused: " + id + "\n");
        refusing = true;
        return true;
    }
    refusing = false;
    TOLV::FileGetter* const getter = new2<TOLV::FileGetter>(
        {"TOLV::FileGetter", "TOLV::FileGetter(id,path)", "TolvDataManager", __LINE__}, id, folder);
    if (!getter) return true;
    transfers.push_front({TransferKind::Dream, TransferDirection::Download, id, getter});
    return getter->IsDone();
}

void TolvDataManager::EndTransfer(const Transfer& transfer) {
    const auto found = std::find_if(transfers.begin(), transfers.end(), [&](const Transfer& entry) {
        return entry.id == transfer.id && entry.getter == transfer.getter;
    });
    if (found == transfers.end()) {
        std::string report = "Attempt to end a transfer that doesn't exist.\n";
        report += "  -transfer type: ";
        report += transfer.direction == TransferDirection::Download ? "download " : "upload ";
        report += transfer.kind == TransferKind::Dream ? "dream" : "portrait";
        report += "\n";
        report += "  -transfer ID: " + transfer.id + "\n";
        ReportWithStack(report);
        return;
    }
    // `transfer` may be the entry itself.
    TOLV::FileGetter* const getter = found->getter;
    transfers.erase(found);
    delete2(getter, "TolvDataManager", __LINE__);
}
