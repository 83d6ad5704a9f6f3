#pragma once
// Texts on their way to the chat window, posted from any thread.

#include <deque>
#include <string>

#include "diag/CThread.h"

class MessageQueue {
  public:
    static MessageQueue& Default();

    // When too many wait already the oldest is dropped, and the end of a text that is too long.
    void Post(const std::string& text);
    // False, `out` untouched, when there is none.
    bool Pop(std::string& out);

  private:
    CriticalSection lock;  // of the queue; nothing else is called under it
    std::deque<std::string> queue;
};
