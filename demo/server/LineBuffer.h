#pragma once
// Cuts a client's bytes into lines.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace demo {

class LineBuffer {
  public:
    // A longer line, finished or not, overflows the buffer.
    static constexpr std::size_t lineLimit = 2048;

    void Add(std::string_view bytes) { pending.append(bytes); }
    // The next line without its line feed and a carriage return before it; none when no whole line is there.
    std::optional<std::string> Take();
    // True once a line exceeded the limit; the sender is not worth listening to any longer.
    [[nodiscard]] bool Overflowed() const { return overflowed; }

  private:
    std::string pending;
    bool overflowed = false;
};

}  // namespace demo
