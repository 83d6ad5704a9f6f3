#include "demo/server/ServerLog.h"

#include <ctime>
#include <iostream>

namespace demo {

ServerLog::ServerLog(const std::string& path) {
    if (!path.empty()) file.open(path, std::ios::app);
}

void ServerLog::Write(std::string_view text) {
    if (silent) return;
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    char stamp[32] = "";
    if (gmtime_r(&now, &parts)) std::strftime(stamp, sizeof stamp, "%H:%M:%S ", &parts);
    std::ostream& out = file.is_open() ? static_cast<std::ostream&>(file) : std::cout;
    out << stamp << text << '\n' << std::flush;
}

}  // namespace demo
