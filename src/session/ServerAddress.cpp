#include "session/ServerAddress.h"

#include "diag/PathFiles.h"
#include "platform/Caps.h"
#include "platform/FileSystem.h"

bool ReadServerAddress(const std::string& path, std::string& host, int& port) {
    host = "Failed to load";
    port = 0;
    std::string content;
    if (!platform::ReadFileText(path, content, caps::noteBytes)) return false;
    host = content.substr(0, content.find('\n'));
    port = DecimalOf(content.substr(host.size()));
    return true;
}
