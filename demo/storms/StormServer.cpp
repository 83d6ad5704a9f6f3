#include "demo/storms/StormServer.h"

#include <asio/post.hpp>
#include <csignal>
#include <fstream>
#include <iterator>

#include "demo/server/Loopback.h"

namespace demo {

namespace {

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

StormServer::StormServer(const std::filesystem::path& folder, std::vector<const Misbehaviour*> theModes,
                         ServerLog& theLog)
    : log(theLog),
      town(MakePlaces().front()),
      archive(ReadFile(folder / "dreams" / (std::string(tideGardenName) + ".dream"))),
      modes(std::move(theModes)),
      mode(modes.front()),
      signals(io),
      game(io),
      files(io) {}

bool StormServer::Door::Listen(std::uint16_t wanted, std::string& reason) {
    return ListenOnLoopback(acceptor, wanted, port, reason);
}

void StormServer::Door::Accept(const std::function<std::unique_ptr<Storm>()>& visit) {
    acceptor.async_accept([this, visit](const asio::error_code& failure, asio::ip::tcp::socket socket) {
        if (!acceptor.is_open()) return;
        if (!failure) {
            std::erase_if(peers, [](const auto& peer) { return peer->IsGone(); });
            const auto peer = std::make_shared<StormPeer>(std::move(socket), visit());
            peers.push_back(peer);
            peer->Start();
        }
        Accept(visit);
    });
}

bool StormServer::Listen(std::uint16_t gamePort, std::uint16_t filePort, std::string& reason) {
    if (!game.Listen(gamePort, reason) || !files.Listen(filePort, reason)) return false;
    log.Write("listening on the loopback address to misbehave: game port " + std::to_string(game.port) +
              ", file port " + std::to_string(files.port));
    return true;
}

void StormServer::StopOnSignals() {
    asio::error_code ignored;
    signals.add(SIGTERM, ignored);
    signals.add(SIGINT, ignored);
    signals.async_wait([this](const asio::error_code& cancelled, int) {
        if (!cancelled) Stop();
    });
}

void StormServer::Run() {
    game.Accept([this] { return NewGame(); });
    files.Accept([this] { return NewDownload(); });
    io.run();
    log.Write("closed");
}

void StormServer::Stop() {
    asio::post(io, [this] {
        asio::error_code ignored;
        for (Door* const door : {&game, &files}) {
            door->acceptor.close(ignored);
            for (const auto& peer : door->peers)
                peer->Abort();
        }
        signals.cancel();
    });
}

std::unique_ptr<Storm> StormServer::NewGame() {
    mode = modes[games++ % modes.size()];
    log.Write("game: a client meets " + std::string(mode->name));
    return std::make_unique<GameStorm>(town, mode->game);
}

std::unique_ptr<Storm> StormServer::NewDownload() {
    log.Write("file: a client meets " + std::string(mode->name) + ", download " + std::to_string(downloads));
    return std::make_unique<FileStorm>(archive, mode->files, downloads++);
}

}  // namespace demo
