#pragma once
// The game behind a port.

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>

#include "demo/server/Game.h"
#include "demo/server/PeerDoor.h"

namespace demo {

class GameServer : private Outbox, private Peer::Listener {
  public:
    GameServer(asio::io_context& io, std::vector<Place> places, std::vector<Account> accounts, GameOptions options,
               ServerLog& log);

    [[nodiscard]] bool Listen(std::uint16_t port, std::string& reason) { return door.Listen(port, reason); }
    [[nodiscard]] std::uint16_t Port() const { return door.Port(); }
    void Start();
    void Close();

  private:
    void Send(ClientId client, std::string bytes) override;
    void Close(ClientId client) override;
    void OnLine(Peer& peer, std::string_view line) override;
    void OnGone(Peer& peer) override;
    void TickLater();

    PeerDoor door;
    asio::steady_timer timer;
    ServerLog& log;
    Game game;
    std::chrono::steady_clock::time_point lastTick;
    bool closed = false;
};

}  // namespace demo
