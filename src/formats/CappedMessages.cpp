#include "formats/CappedMessages.h"

#include "diag/LogFile.h"

namespace {
constexpr std::size_t pieceBytes = 64U << 10;
}

void CappedMessages::Add(std::string_view message) {
    if (closed) return;
    if (left == 0) {
        closed = true;
        pending += "(more messages like the last one are left out)\n";
        return;
    }
    --left;
    pending += message;
    if (pending.size() >= pieceBytes) Flush();
}

void CappedMessages::Flush() {
    if (pending.empty()) return;
    errorLog.Write(pending);
    pending.clear();
}
