#pragma once
// Cuts a stream of bytes, fed in pieces of any size, into lines at line feeds.

#include <string>
#include <string_view>

// A line longer than the cap is dropped with one message and the stream goes on behind its line feed.
class LineFramer {
  public:
    void Append(std::string_view bytes);
    // The next whole line without its line feed; false when none is there yet. Linear over any number of lines.
    bool TakeLine(std::string& line);

  private:
    std::string buffer;
    std::size_t begin = 0;    // of the first line not yet taken
    std::size_t scanned = 0;  // no line feed lies before here
    bool dropping = false;    // inside an over-long line
};
