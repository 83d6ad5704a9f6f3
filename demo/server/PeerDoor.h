#pragma once
// A port on the loopback address whose visitors become peers.

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "demo/server/Peer.h"

namespace demo {

class PeerDoor {
  public:
    // More clients than this at once are turned away.
    PeerDoor(asio::io_context& io, std::size_t mostPeers) : acceptor(io), peerLimit(mostPeers) {}

    // Port 0: the system picks one. False, with the reason, when the port cannot be had.
    [[nodiscard]] bool Listen(std::uint16_t port, std::string& reason);
    [[nodiscard]] std::uint16_t Port() const { return port; }
    // `welcome` is called with every new peer before anything is read from it.
    void Accept(Peer::Listener& listener, std::function<void(Peer&)> welcome);
    // Null once the peer has gone.
    Peer* Find(std::uint64_t number);
    void Forget(const Peer& peer) { peers.erase(peer.Number()); }
    // Takes no more visitors and cuts off those that are there.
    void Close();

  private:
    void AcceptNext();

    asio::ip::tcp::acceptor acceptor;
    std::size_t peerLimit;
    std::uint16_t port = 0;
    std::uint64_t lastNumber = 0;
    Peer::Listener* listener = nullptr;
    std::function<void(Peer&)> welcome;
    std::map<std::uint64_t, std::shared_ptr<Peer>> peers;
};

}  // namespace demo
