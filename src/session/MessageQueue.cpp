#include "session/MessageQueue.h"

MessageQueue& MessageQueue::Default() {
    static MessageQueue queue;
    return queue;
}

void MessageQueue::Post(const std::string& text) {
    std::string copy = text;
    ScopedLock held(lock);
    queue.push_back(std::move(copy));
}

bool MessageQueue::Pop(std::string& out) {
    ScopedLock held(lock);
    if (queue.empty()) return false;
    out = std::move(queue.front());
    queue.pop_front();
    return true;
}
