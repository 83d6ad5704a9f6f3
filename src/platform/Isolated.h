#pragma once
// Work that may end the process it runs in, such as a library fed with what it was not made for.

#include <functional>
#include <string>

namespace platform {

// Runs `work` in a copy of the process and gives its answer. False when the copy crashed or took longer than `seconds`.
// The copy has only the calling thread and shares nothing that it changes; it must not draw or use the network.
[[nodiscard]] bool RunIsolated(const std::function<std::string()>& work, unsigned seconds, std::string& answer);

}  // namespace platform
