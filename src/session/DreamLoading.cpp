#include "session/DreamLoading.h"

#include <algorithm>

#include "diag/PathFiles.h"
#include "formats/DreamArchive.h"
#include "formats/TolvMap.h"
#include "platform/MessageBox.h"
#include "session/TolvDataManager.h"
#include "session/TolvFileGetter.h"
#include "session/TolvSession.h"
#include "session/WorldPort.h"

namespace {

void Post(const std::string& text) {
    TolvDataManager::Default().PostMessage(text);
}

bool IsDoneDream(const Transfer& transfer) {
    return transfer.kind == TransferKind::Dream && transfer.direction == TransferDirection::Download &&
           transfer.getter->IsDone();
}

// Unpacks a downloaded dream and puts it into the world.
bool LoadDream(const std::string& archivePath) {
    Post("> Decompressing dream...");
    if (!UnpackDreamArchive(archivePath)) return false;
    Post("> Loading dream...");
    const std::string folder = DirectoryOf(archivePath);
    if (!TolvMap::Current().LoadMap(folder + "default.map")) return false;
    if (WorldPort* const world = TolvSession::Default().GetWorldPort()) world->LoadDreamGraphics(folder);
    Post("> Dream load succeeded.");
    TolvSession::Default().SendLine("vascodagama");
    return true;
}

// The server waits for an answer either way.
void OfferReturn() {
    Post(">  Error loading dream... sequence aborted.");
    const platform::BoxAnswer answer = platform::ShowMessageBox(
        "Dream download failed.  Reset to tessaly island?\n"
        "(If you choose no, you may be temporarily stuck in the dream)",
        "Erp", platform::BoxKind::YesNo, true);
    TolvSession::Default().SendLine(answer == platform::BoxAnswer::Yes ? "goback" : "vascodagama");
}

}  // namespace

void UpdateTransfers() {
    TolvDataManager& manager = TolvDataManager::Default();
    const std::list<Transfer>& transfers = manager.GetTransfers();
    const auto found = std::find_if(transfers.begin(), transfers.end(), IsDoneDream);
    if (found == transfers.end()) return;
    Transfer transfer = *found;
    if (!transfer.getter->IsComplete() || !LoadDream(transfer.getter->GetPath())) OfferReturn();
    manager.EndTransfer(transfer);
}
