#pragma once
// The file server's side of a misbehaving server: a polite download in which single steps are replaced.

#include <cstdint>
#include <string>
#include <string_view>

#include "demo/storms/StormPeer.h"

namespace demo {

class FileStorm;

// The steps of a download. A mode replaces those at which it misbehaves.
struct FileManners {
    using Step = void (*)(FileStorm&);

    Step welcome = nullptr;                     // the client has connected; null: the welcome
    Step reply = nullptr;                       // it has asked for a dream; null: the announcement and the first block
    Step block = nullptr;                       // the block `next` is due; null: it is sent
    std::string (*more)(FileStorm&) = nullptr;  // as of GameManners, once the dream was asked for
};

class FileStorm : public Storm {
  public:
    static constexpr std::size_t politeBlock = 4096;

    // `archive`: what is handed out under every name. `theTurn` counts the downloads of this server, from 0.
    FileStorm(const std::string& archive, const FileManners& theManners, int theTurn)
        : turn(theTurn), bytes(archive), manners(theManners) {}

    void Connected(StormPeer& peer) override;
    void Line(StormPeer& peer, std::string_view line) override;
    void Drained(StormPeer& peer) override;

    // The polite steps.
    void Welcome();
    void Reply() { Announce(std::to_string(bytes.size()), std::to_string(politeBlock)); }
    void SendBlock() { Peer().Send(Block(next, politeBlock)); }

    // The reply with these sizes, and the first block.
    void Announce(const std::string& size, const std::string& blockSize);
    // A block of `blockSize` bytes whose header has `number`.
    [[nodiscard]] std::string Block(std::uint32_t number, std::size_t blockSize) const;
    [[nodiscard]] const std::string& Archive() const { return bytes; }
    [[nodiscard]] StormPeer& Peer() { return *peer; }

    const int turn;
    std::uint32_t next = 0;

  private:
    void NextBlock();

    const std::string& bytes;
    const FileManners& manners;
    StormPeer* peer = nullptr;
    bool asked = false;
};

}  // namespace demo
