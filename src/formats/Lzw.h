#pragma once
// The LZW variant of dream archives: codes of 9 bits and more, most significant bit first, 256 clear, 257 end, no upper
// limit on the width.

#include <cstddef>
#include <string>
#include <string_view>

class CappedMessages;

// Appends the decoded bytes to `out`. A damaged stream is reported and ends the decoding; what was decoded up to there
// stays. A stream of more than `limit` bytes is reported and appends nothing.
void LzwDecode(std::string_view data, std::string& out, std::size_t limit);
// The same for several streams of one file, which share the cap on the message for dictionaries past 12 bits. False
// when the stream goes beyond the limit.
bool LzwDecode(std::string_view data, std::string& out, std::size_t limit, CappedMessages& pastTwelveBits);
