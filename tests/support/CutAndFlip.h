#pragma once
// Gives a reader a sound file with every kind of small damage: cut at every byte, every byte flipped, every count
// absurd.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace support {

// A sound file and what its reader promises. Every place of a binary file is taken for a count of one, two and four
// bytes; in a text every run of digits is. A count becomes 0, 1, the largest number and one more than the bytes that
// follow it.
struct SoundFile {
    const char* name;
    std::string bytes;
    // Reads the bytes, which lie in a buffer of exactly their size, and gives what was accepted up again.
    std::function<bool(std::string_view)> read;
    // Whether the file's first bytes, so many, are accepted; empty when either is right.
    std::function<bool(std::size_t)> acceptsCut;
    // A cut is one fault: this many messages tell of it at most, and of a refusal at least one unless it is silent.
    std::size_t mostMessages = 1;
    bool isText = false;
    bool refusesSilently = false;
    bool hasCounts = true;
};

// In the working folder of a TestFolder. Expects of every input that it is read within 2 seconds of processor time, of
// the whole that it takes no more than a few dozen MiB and leaves no block of the checked allocator, and of the sound
// file, before and after, that it is accepted.
void CutAndFlip(const SoundFile& file);

}  // namespace support
