#pragma once
// A game server and a file server that misbehave on purpose, in one thread and on the loopback address only, to see
// what a client makes of it.

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/signal_set.hpp>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "demo/server/ServerLog.h"
#include "demo/storms/Misbehaviour.h"

namespace demo {

class StormServer {
  public:
    // Each client of the game server gets the next of the modes, which must not be empty, in turn. The file server goes
    // by the mode of the game server's last client. `folder` is an installation folder with a dream to hand out.
    StormServer(const std::filesystem::path& folder, std::vector<const Misbehaviour*> modes, ServerLog& log);

    // Port 0: the system picks one. False, with the reason, when a port cannot be had.
    [[nodiscard]] bool Listen(std::uint16_t gamePort, std::uint16_t filePort, std::string& reason);
    [[nodiscard]] std::uint16_t GamePort() const { return game.port; }
    [[nodiscard]] std::uint16_t FilePort() const { return files.port; }
    // The termination and interrupt signals end Run.
    void StopOnSignals();
    // Serves until Stop is called.
    void Run();
    // From any thread.
    void Stop();

  private:
    struct Door {
        explicit Door(asio::io_context& io) : acceptor(io) {}
        [[nodiscard]] bool Listen(std::uint16_t wanted, std::string& reason);
        void Accept(const std::function<std::unique_ptr<Storm>()>& visit);

        asio::ip::tcp::acceptor acceptor;
        std::uint16_t port = 0;
        std::vector<std::shared_ptr<StormPeer>> peers;
    };

    std::unique_ptr<Storm> NewGame();
    std::unique_ptr<Storm> NewDownload();

    ServerLog& log;
    Scene town;
    std::string archive;
    std::vector<const Misbehaviour*> modes;
    const Misbehaviour* mode;
    std::size_t games = 0;
    int downloads = 0;
    asio::io_context io;
    asio::signal_set signals;
    Door game;
    Door files;
};

}  // namespace demo
