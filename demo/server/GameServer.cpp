#include "demo/server/GameServer.h"

namespace demo {

namespace {

constexpr std::size_t playerLimit = 64;
constexpr int loginSeconds = 60;
constexpr auto tickTime = std::chrono::milliseconds(50);

}  // namespace

GameServer::GameServer(asio::io_context& io, std::vector<Place> places, std::vector<Account> accounts,
                       GameOptions options, ServerLog& theLog)
    : door(io, playerLimit),
      timer(io),
      log(theLog),
      game(std::move(places), std::move(accounts), options, *this, theLog) {}

void GameServer::Start() {
    door.Accept(*this, [this](Peer& peer) {
        log.Write("game: client " + std::to_string(peer.Number()) + " connects");
        peer.ExpectWithin(loginSeconds);
        game.Joined(peer.Number());
    });
    lastTick = std::chrono::steady_clock::now();
    TickLater();
}

void GameServer::Close() {
    closed = true;
    timer.cancel();
    door.Close();
}

void GameServer::Send(ClientId client, std::string bytes) {
    if (Peer* peer = door.Find(client)) peer->Send(std::move(bytes));
}

void GameServer::Close(ClientId client) {
    if (Peer* peer = door.Find(client)) peer->CloseAfterSending();
}

void GameServer::OnLine(Peer& peer, std::string_view line) {
    game.Line(peer.Number(), line);
    if (game.IsLoggedIn(peer.Number())) peer.ExpectWithin(0);
}

void GameServer::OnGone(Peer& peer) {
    log.Write("game: client " + std::to_string(peer.Number()) + " is gone");
    game.Left(peer.Number());
    door.Forget(peer);
}

void GameServer::TickLater() {
    timer.expires_after(tickTime);
    timer.async_wait([this](const asio::error_code& cancelled) {
        // A tick that was due already when the server closed is not cancelled any more.
        if (cancelled || closed) return;
        const auto now = std::chrono::steady_clock::now();
        game.Tick(std::chrono::duration<double>(now - lastTick).count());
        lastTick = now;
        TickLater();
    });
}

}  // namespace demo
