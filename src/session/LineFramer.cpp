#include "session/LineFramer.h"

#include <algorithm>

#include "diag/LogFile.h"
#include "formats/Caps.h"

namespace {
void ReportLongLine() {
    errorLog.Write("Error: Line of more than " + std::to_string(caps::serverLineBytes) +
                   " bytes received from a server, so it is dropped.\n");
}
}  // namespace

void LineFramer::Append(std::string_view bytes) {
    // Taken lines leave in bulk, once they are at least half of the buffer, which keeps the whole linear.
    if (begin > 0 && begin >= buffer.size() - begin) {
        buffer.erase(0, begin);
        scanned -= begin;
        begin = 0;
    }
    buffer.append(bytes);
}

bool LineFramer::TakeLine(std::string& line) {
    for (;;) {
        const std::size_t end = buffer.find('\n', scanned);
        const std::size_t length = std::min(end, buffer.size()) - begin;
        const bool tooLong = length > caps::serverLineBytes;
        if (tooLong && !dropping) ReportLongLine();
        if (end == std::string::npos) {
            dropping = dropping || tooLong;
            if (dropping) begin = buffer.size();
            scanned = buffer.size();
            return false;
        }
        const bool keep = !tooLong && !dropping;
        if (keep) line.assign(buffer, begin, length);
        dropping = false;
        begin = scanned = end + 1;
        if (keep) return true;
    }
}
