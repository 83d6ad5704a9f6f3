#include "demo/server/LineBuffer.h"

#include <algorithm>

namespace demo {

std::optional<std::string> LineBuffer::Take() {
    if (overflowed) return std::nullopt;
    const std::size_t end = pending.find('\n');
    if (std::min(end, pending.size()) > lineLimit) {
        overflowed = true;
        pending.clear();
    }
    if (overflowed || end == std::string::npos) return std::nullopt;
    std::string line = pending.substr(0, end);
    pending.erase(0, end + 1);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

}  // namespace demo
