#include "demo/server/DemoServer.h"

#include <asio/post.hpp>
#include <csignal>

namespace demo {

DemoServer::DemoServer(const std::filesystem::path& folder, GameOptions options, ServerLog& theLog)
    : log(theLog),
      signals(io),
      accounts(ReadAccounts(folder)),
      game(io, MakePlaces(), accounts, options, log),
      files(io, folder / "dreams", accounts, log) {}

bool DemoServer::Listen(std::uint16_t gamePort, std::uint16_t filePort, std::string& reason) {
    if (!game.Listen(gamePort, reason) || !files.Listen(filePort, reason)) return false;
    log.Write("listening on the loopback address: game port " + std::to_string(game.Port()) + ", file port " +
              std::to_string(files.Port()) + ", " + std::to_string(accounts.size()) + " players may log in");
    return true;
}

void DemoServer::StopOnSignals() {
    asio::error_code ignored;
    signals.add(SIGTERM, ignored);
    signals.add(SIGINT, ignored);
    signals.async_wait([this](const asio::error_code& cancelled, int) {
        if (!cancelled) Stop();
    });
}

void DemoServer::Run() {
    game.Start();
    files.Start();
    io.run();
    log.Write("closed");
}

void DemoServer::Stop() {
    asio::post(io, [this] {
        game.Close();
        files.Close();
        signals.cancel();
    });
}

}  // namespace demo
