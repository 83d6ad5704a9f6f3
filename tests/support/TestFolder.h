#pragma once
// A fresh working folder for a test, and what the logs say in it.

#include <string>

namespace support {

// Makes a temporary folder the working folder for the object's life, with empty logs in it; removes it at the end.
class TestFolder {
  public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    [[nodiscard]] const std::string& Path() const { return path; }
    // Writes a file below the folder, making its parents; slashes divide.
    void Write(const std::string& name, const std::string& bytes) const;
    // Content of a file below the folder, empty when there is none.
    [[nodiscard]] std::string Read(const std::string& name) const;
    [[nodiscard]] bool Has(const std::string& name) const;

  private:
    std::string before;
    std::string path;
};

// The content of a log in the working folder, for example ErrorLogText() of "_error.txt".
std::string LogText(const std::string& fileName);
std::string ErrorLogText();
// Empties it.
void ClearLog(const std::string& fileName);
void ClearErrorLog();
// The error log without the lines of call stacks, so that whole reports can be compared.
std::string ErrorLogWithoutStacks();

}  // namespace support
