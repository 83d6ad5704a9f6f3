#pragma once
// What the server did, a line each.

#include <fstream>
#include <string>
#include <string_view>

namespace demo {

// Writes time-stamped lines to a file, or to the standard output when no file is named.
class ServerLog {
  public:
    ServerLog() = default;
    explicit ServerLog(const std::string& path);

    void Write(std::string_view text);
    // Nothing is written any more (tests).
    void Silence() { silent = true; }

  private:
    std::ofstream file;
    bool silent = false;
};

}  // namespace demo
