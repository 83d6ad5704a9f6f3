#pragma once
// Modal message boxes. Without a window system (and in tests) a handler answers instead.

#include <string>

namespace platform {

enum class BoxKind { Ok, YesNo };
enum class BoxAnswer { Ok, Yes, No };

// Shows a box with the caption as its title and waits for the answer: Return is Yes or OK, Escape is No (or OK).
// With no handler set the text goes to standard error and the answer is Ok or No.
BoxAnswer ShowMessageBox(const std::string& text, const std::string& caption, BoxKind kind, bool ownedByMainWindow);

using MessageBoxHandler = BoxAnswer (*)(const std::string& text, const std::string& caption, BoxKind kind,
                                        bool ownedByMainWindow);
// Set by the window back end at start-up and by tests. Returns the handler before.
MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler);

}  // namespace platform
