#pragma once
// Addresses as the text of a call stack. Apart from CallStack.h, because a program that only names addresses must not
// have the logs, which would be emptied at its start.

#include <cstdint>
#include <string>
#include <vector>

// The lines of CallStack() for these return addresses, innermost first: at most 64, then one that says so.
std::string StackText(const std::vector<std::uintptr_t>& returnAddresses);

// The system's message for the calling thread's last error, without its last three characters.
std::string LastErrorText();
