#pragma once
// Cuts a stream of bytes, fed in pieces of any size, into lines at line feeds.

#include <cstring>
#include <string>
#include <string_view>

#include "formats/CappedMessages.h"
#include "platform/Caps.h"

// A line longer than the cap is dropped with one message and the stream goes on behind its line feed.
class LineFramer {
  public:
    // Calls visit(std::string_view) for each line that these bytes end, in order and without its line feed; a line is
    // valid during its call. Only what belongs to a line that is not whole yet is copied. `visit` must not feed again.
    template <typename Visit>
    void Feed(std::string_view bytes, Visit visit) {
        (void)FeedWhile(bytes, [&](std::string_view line) {
            visit(line);
            return true;
        });
    }

    // The same, but no further than the line for which `visit` answers false. The count of bytes fed: those behind are
    // to be fed another time.
    template <typename Visit>
    std::size_t FeedWhile(const std::string_view bytes, Visit visit) {
        std::string_view left = bytes;
        while (const void* const feed = left.empty() ? nullptr : std::memchr(left.data(), '\n', left.size())) {
            const auto length = static_cast<std::size_t>(static_cast<const char*>(feed) - left.data());
            std::string_view line(left.data(), length);
            left.remove_prefix(length + 1);
            bool goOn = true;
            if (begun || length > caps::serverLineBytes) {
                if (!Complete(line)) continue;
                goOn = visit(std::string_view(rest));
                rest.clear();
            } else {
                goOn = visit(line);
            }
            if (!goOn) return bytes.size() - left.size();
        }
        if (!left.empty()) Keep(left);
        return bytes.size();
    }

  private:
    // Adds the bytes to the line that is not whole yet, or drops it.
    void Keep(std::string_view bytes);
    // The same with a line's last bytes; false when the line was dropped.
    bool Complete(std::string_view bytes);

    CappedMessages reports{caps::refusalMessages};
    std::string rest;       // of a line that is not whole yet
    bool begun = false;     // some of its bytes have come
    bool dropping = false;  // and they were too many
};
