#pragma once
// The game server and the file server of the demo world in one thread, on the loopback address only.

#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <filesystem>

#include "demo/server/FileServer.h"
#include "demo/server/GameServer.h"

namespace demo {

class DemoServer {
  public:
    // `folder` is an installation folder: its player files say who may log in, its dreams folder holds the archives.
    DemoServer(const std::filesystem::path& folder, GameOptions options, ServerLog& log);

    // Port 0: the system picks one. False, with the reason, when a port cannot be had.
    [[nodiscard]] bool Listen(std::uint16_t gamePort, std::uint16_t filePort, std::string& reason);
    [[nodiscard]] std::uint16_t GamePort() const { return game.Port(); }
    [[nodiscard]] std::uint16_t FilePort() const { return files.Port(); }
    // The termination and interrupt signals end Run.
    void StopOnSignals();
    // Serves until Stop is called.
    void Run();
    // From any thread.
    void Stop();

  private:
    ServerLog& log;
    asio::io_context io;
    asio::signal_set signals;
    std::vector<Account> accounts;
    GameServer game;
    FileServer files;
};

}  // namespace demo
