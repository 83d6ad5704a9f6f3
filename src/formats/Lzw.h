#pragma once
// The LZW variant of dream archives: codes of 9 bits and more, most significant bit first, 256 clear, 257 end, no upper limit on
// the width.

#include <string>
#include <string_view>

// Appends the decoded bytes to `out`; anomalies are reported and end the decoding with what was decoded so far. Never
// appends more than `limit` bytes.
void LzwDecode(std::string_view data, std::string& out, std::size_t limit);
