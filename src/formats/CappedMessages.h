#pragma once
// A message that a file can cause over and over: written every time, up to a cap on the lines that one file may cost.

#include <cstddef>
#include <string>
#include <string_view>

// Collects the messages and writes them to the error log in large pieces, because every write opens the log. Past the
// cap one closing note is written and the rest is dropped.
class CappedMessages {
  public:
    explicit CappedMessages(std::size_t cap) : left(cap) {}
    ~CappedMessages() { Flush(); }
    CappedMessages(const CappedMessages&) = delete;
    CappedMessages& operator=(const CappedMessages&) = delete;

    void Add(std::string_view message);
    // Call before other messages go to the log, so that the order holds.
    void Flush();

  private:
    std::size_t left;
    bool closed = false;  // the closing note was added
    std::string pending;
};
