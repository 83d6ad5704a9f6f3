#include "platform/MessageBox.h"

#include <atomic>
#include <cstdio>

namespace platform {

namespace {

std::atomic<MessageBoxHandler> current{nullptr};

}  // namespace

BoxAnswer ShowMessageBox(const std::string& text, const std::string& caption, BoxKind kind, bool ownedByMainWindow) {
    if (MessageBoxHandler handler = current.load()) return handler(text, caption, kind, ownedByMainWindow);
    std::fprintf(stderr, "%s: %s\n", caption.c_str(), text.c_str());
    return kind == BoxKind::Ok ? BoxAnswer::Ok : BoxAnswer::No;
}

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) {
    return current.exchange(handler);
}

}  // namespace platform
