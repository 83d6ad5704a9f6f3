#include "session/LineFramer.h"

#include <utility>

void LineFramer::Keep(std::string_view bytes) {
    begun = true;
    if (dropping) return;
    if (bytes.size() <= caps::serverLineBytes - rest.size()) {
        rest.append(bytes);
        return;
    }
    dropping = true;
    rest.clear();
    reports.Add("Error: Line of more than " + std::to_string(caps::serverLineBytes) +
                " bytes received from a server, so it is dropped.\n");
    reports.Flush();
}

bool LineFramer::Complete(std::string_view bytes) {
    Keep(bytes);
    begun = false;
    return !std::exchange(dropping, false);
}
