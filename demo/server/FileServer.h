#pragma once
// Hands dream archives out in numbered blocks, each of which the client acknowledges.

#include <asio/io_context.hpp>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "demo/server/Accounts.h"
#include "demo/server/PeerDoor.h"
#include "demo/server/ServerLog.h"

namespace demo {

class FileServer : private Peer::Listener {
  public:
    // Archives are the files NAME.dream in `dreamFolder`.
    FileServer(asio::io_context& io, std::filesystem::path dreamFolder, std::vector<Account> accounts, ServerLog& log);

    [[nodiscard]] bool Listen(std::uint16_t port, std::string& reason) { return door.Listen(port, reason); }
    [[nodiscard]] std::uint16_t Port() const { return door.Port(); }
    void Start();
    void Close() { door.Close(); }

  private:
    struct Transfer {
        std::string dream;
        std::string bytes;
        std::size_t blockSize = 0;
        std::size_t nextBlock = 0;

        [[nodiscard]] std::size_t BlockCount() const;
        // The block with its header, filled up to the block size.
        [[nodiscard]] std::string Block(std::size_t number) const;
    };

    void OnLine(Peer& peer, std::string_view line) override;
    void OnGone(Peer& peer) override;
    void Request(Peer& peer, std::string_view request);
    void Acknowledged(Peer& peer, Transfer& transfer, std::string_view number);
    void SendNextBlock(Peer& peer, Transfer& transfer);
    void Refuse(Peer& peer, const std::string& answer);

    PeerDoor door;
    std::filesystem::path dreamFolder;
    std::vector<Account> accounts;
    ServerLog& log;
    std::map<std::uint64_t, Transfer> transfers;  // by peer
};

}  // namespace demo
