#pragma once
// UTF-8 text to bytes of the Windows western code page (1252).

#include <string>
#include <string_view>

namespace platform {

// Characters that the code page lacks are left out, as are bytes that are no UTF-8.
std::string WindowsBytesOf(std::string_view utf8);

}  // namespace platform
