#pragma once
// The program's text logs: files that are opened, appended to and closed by every write. A log that has reached
// caps::logBytes says so and takes no more.

#include <cstddef>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>

// One log. Creation empties or creates its file in the working folder; a file that cannot be opened loses the piece
// silently. Every write may come from any thread; pieces of one log never mix within a piece.
class LogFile {
  public:
    LogFile(std::string fileName, bool echoToDebugger);
    virtual ~LogFile() = default;
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    // Nothing happens for null or an empty text. The text is echoed first when the log does so.
    void Write(const char* text);
    void Write(const std::string& text);  // its characters up to the first zero byte
    void Write(int number);
    void Write(long number);
    void Write(double number);  // as FormatDouble with 20 digits
    // Raw bytes as text, zero bytes left out.
    void Write(const void* bytes, std::size_t count);
    // Several pieces in a row, which no other thread's pieces come between. Each ends at its first zero byte.
    void WriteReport(std::initializer_list<std::string_view> pieces);

  private:
    const std::string fileName;
    const bool echoToDebugger;
    std::mutex lock;  // of the echo and the file's writes; taken last, nothing else is locked under it
};

// `digits` significant digits, fixed notation for decimal exponents from -1 to 19 (below `digits`), else with an
// exponent; trailing zeros go, the decimal point stays: 0.5, "3.", 5.0000000000000002776e-02.
std::string FormatDouble(double number, int digits);

// The process-wide logs, born in this order before the entry point and before every other static object; they die last.
extern LogFile errorLog;      // "_error.txt"
extern LogFile statLog;       // "_stat.txt"
extern LogFile netLog;        // "_netlog.txt"
extern LogFile shaderLog;     // "_shaders.txt"
extern LogFile meshStatsLog;  // "_meshStats.txt"
