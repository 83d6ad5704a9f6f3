#include "demo/storms/FileStorm.h"

#include <algorithm>

#include "demo/formats/ByteWriter.h"

namespace demo {

namespace {

constexpr std::size_t headerSize = 10;
constexpr double farewellSeconds = 2.0;

}  // namespace

void FileStorm::Connected(StormPeer& thePeer) {
    peer = &thePeer;
    if (manners.welcome) return manners.welcome(*this);
    Welcome();
}

void FileStorm::Line(StormPeer&, std::string_view line) {
    if (line == "BYE") return Peer().Abort();
    if (line.starts_with("RC ") && !asked) {
        asked = true;
        if (manners.reply) return manners.reply(*this);
        return Reply();
    }
    if (!line.starts_with("PKOK ") || !asked) return;
    ++next;
    if (next * (politeBlock - headerSize) < bytes.size()) return NextBlock();
    // A client that still waits was told of more than there is.
    Peer().Pause(farewellSeconds);
    Peer().End(false);
}

void FileStorm::Drained(StormPeer&) {
    if (asked && manners.more) Peer().Send(manners.more(*this));
}

void FileStorm::Welcome() {
    Peer().Send("10 Welcome to the stormy file server\n");
}

void FileStorm::Announce(const std::string& size, const std::string& blockSize) {
    Peer().Send("44 " + size + " 0 " + blockSize + "\n");
    NextBlock();
}

void FileStorm::NextBlock() {
    if (manners.block) return manners.block(*this);
    SendBlock();
}

std::string FileStorm::Block(std::uint32_t number, std::size_t blockSize) const {
    const std::size_t payload = blockSize - std::min(blockSize, headerSize);
    const std::size_t from = std::min<std::size_t>(number * payload, bytes.size());
    const std::string content = bytes.substr(from, payload);
    return ByteWriter()
        .Bytes("SC")
        .U32(number)
        .U32(static_cast<std::uint32_t>(content.size()))
        .Field(content, payload)
        .Str();
}

}  // namespace demo
