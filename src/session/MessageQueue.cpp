#include "session/MessageQueue.h"

#include "platform/Caps.h"

MessageQueue& MessageQueue::Default() {
    static MessageQueue queue;
    return queue;
}

void MessageQueue::Post(const std::string& text) {
    std::string copy = text.substr(0, caps::messageBytes);
    ScopedLock held(lock);
    if (queue.size() >= caps::waitingMessages) queue.pop_front();
    queue.push_back(std::move(copy));
}

bool MessageQueue::Pop(std::string& out) {
    ScopedLock held(lock);
    if (queue.empty()) return false;
    out = std::move(queue.front());
    queue.pop_front();
    return true;
}
