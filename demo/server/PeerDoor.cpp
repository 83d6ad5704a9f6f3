#include "demo/server/PeerDoor.h"

#include <vector>

#include "demo/server/Loopback.h"

namespace demo {

bool PeerDoor::Listen(std::uint16_t wantedPort, std::string& reason) {
    return ListenOnLoopback(acceptor, wantedPort, port, reason);
}

void PeerDoor::Accept(Peer::Listener& theListener, std::function<void(Peer&)> theWelcome) {
    listener = &theListener;
    welcome = std::move(theWelcome);
    AcceptNext();
}

void PeerDoor::AcceptNext() {
    acceptor.async_accept([this](const asio::error_code& failure, asio::ip::tcp::socket socket) {
        if (!acceptor.is_open()) return;
        if (!failure && peers.size() < peerLimit) {
            auto peer = std::make_shared<Peer>(std::move(socket), ++lastNumber, *listener);
            peers[peer->Number()] = peer;
            welcome(*peer);
            peer->Start();
        }
        AcceptNext();
    });
}

Peer* PeerDoor::Find(std::uint64_t number) {
    const auto found = peers.find(number);
    return found == peers.end() ? nullptr : found->second.get();
}

void PeerDoor::Close() {
    asio::error_code ignored;
    acceptor.close(ignored);
    std::vector<std::shared_ptr<Peer>> leaving;
    for (const auto& [number, peer] : peers)
        leaving.push_back(peer);
    for (const auto& peer : leaving)
        peer->Abort();
}

}  // namespace demo
