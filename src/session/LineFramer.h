#pragma once
// Cuts a stream of bytes, fed in pieces of any size, into lines at line feeds.

#include <cstring>
#include <string>
#include <string_view>

#include "formats/Caps.h"

// A line longer than the cap is dropped with one message and the stream goes on behind its line feed.
class LineFramer {
  public:
    // Calls visit(std::string_view) for each line that these bytes end, in order and without its line feed; a line is
    // valid during its call. Only what belongs to a line that is not whole yet is copied. `visit` must not feed again.
    template <typename Visit>
    void Feed(std::string_view bytes, Visit visit) {
        while (const void* const feed = bytes.empty() ? nullptr : std::memchr(bytes.data(), '\n', bytes.size())) {
            const auto length = static_cast<std::size_t>(static_cast<const char*>(feed) - bytes.data());
            std::string_view line(bytes.data(), length);
            bytes.remove_prefix(length + 1);
            if (begun || length > caps::serverLineBytes) {
                if (!Complete(line)) continue;
                visit(std::string_view(rest));
                rest.clear();
            } else {
                visit(line);
            }
        }
        if (!bytes.empty()) Keep(bytes);
    }

  private:
    // Adds the bytes to the line that is not whole yet, or drops it.
    void Keep(std::string_view bytes);
    // The same with a line's last bytes; false when the line was dropped.
    bool Complete(std::string_view bytes);

    std::string rest;       // of a line that is not whole yet
    bool begun = false;     // some of its bytes have come
    bool dropping = false;  // and they were too many
};
