#include <cstdlib>
#include <iostream>

#include "fuzz/FuzzEntry.h"
#include "session/LineFramer.h"

namespace {

// What the framer has to give for a whole stream: the lines that are ended, without those above the cap.
std::vector<std::string> LinesOf(std::string_view stream) {
    std::vector<std::string> lines;
    for (std::size_t feed = stream.find('\n'); feed != std::string_view::npos; feed = stream.find('\n')) {
        if (feed <= caps::serverLineBytes) lines.emplace_back(stream.substr(0, feed));
        stream.remove_prefix(feed + 1);
    }
    return lines;
}

// Puts a piece into its own memory, so that a read past its end is seen.
void Feed(LineFramer& framer, std::string_view piece, std::vector<std::string>& lines) {
    const std::vector<char> exact(piece.begin(), piece.end());
    framer.Feed({exact.data(), exact.size()}, [&](std::string_view line) { lines.emplace_back(line); });
}

}  // namespace

// A byte of 0x80 and more says where the next cut lies; 0x01 stands for 8 KiB of the letter before it; all else is the
// stream.
std::vector<std::string> fuzz::Seeds() {
    return {"a\nb\n\nc",
            "a\x83"
            "bcd\n\x81\x81\n\xFF"
            "efg\n",
            "x\1\1\1\1\1\1\1\1\1\ny\n", "x\1\1\1\1\x90y\1\1\1\n\x81z\1\1\1\1\n"};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t mostBytes = 1U << 18;
    fuzz::BeginRun();
    std::string stream;
    std::vector<std::size_t> cuts;
    for (std::size_t i = 0; i < size && stream.size() < mostBytes; ++i) {
        if (data[i] >= 0x80)
            cuts.push_back(stream.size() + data[i] - 0x80);
        else if (data[i] == 1 && !stream.empty())
            stream.append(8192, stream.back());
        else
            stream.push_back(static_cast<char>(data[i]));
    }
    LineFramer framer;
    std::vector<std::string> lines;
    std::size_t done = 0;
    for (const std::size_t cut : cuts)
        if (cut >= done && cut <= stream.size()) {
            Feed(framer, std::string_view(stream).substr(done, cut - done), lines);
            done = cut;
        }
    Feed(framer, std::string_view(stream).substr(done), lines);
    if (lines == LinesOf(stream)) return 0;
    std::cerr << "other lines than the stream holds\n";
    std::abort();
}
