#include "support/TestFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/FileSystem.h"

namespace support {

namespace fs = std::filesystem;

TestFolder::TestFolder() : before(fs::current_path()) {
    std::string pattern = (fs::temp_directory_path() / "kelvane-test-XXXXXX").string();
    path = mkdtemp(pattern.data()) ? pattern : std::string();
    fs::current_path(path);
    platform::ForgetListings();
}

TestFolder::~TestFolder() {
    fs::current_path(before);
    std::error_code ignored;
    fs::remove_all(path, ignored);
    platform::ForgetListings();
}

void TestFolder::Write(const std::string& name, const std::string& bytes) const {
    const fs::path file = fs::path(path) / name;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
    platform::ForgetListings();
}

std::string TestFolder::Read(const std::string& name) const {
    std::ifstream file(fs::path(path) / name, std::ios::binary);
    std::stringstream content;
    content << file.rdbuf();
    return content.str();
}

bool TestFolder::Has(const std::string& name) const {
    return fs::exists(fs::path(path) / name);
}

std::string LogText(const std::string& fileName) {
    std::ifstream file(fileName, std::ios::binary);
    std::stringstream content;
    content << file.rdbuf();
    return content.str();
}

std::string ErrorLogText() {
    return LogText("_error.txt");
}
void ClearLog(const std::string& fileName) {
    std::ofstream(fileName, std::ios::trunc).flush();
}
void ClearErrorLog() {
    ClearLog("_error.txt");
}

std::string ErrorLogWithoutStacks() {
    std::istringstream lines(ErrorLogText());
    std::string kept;
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("   ", 0) != 0 && line.rfind("  (", 0) != 0) kept += line + "\n";
    return kept;
}

}  // namespace support
