#pragma once
// One connected client of either server: lines in, bytes out, with limits on both.

#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "demo/server/LineBuffer.h"

namespace demo {

class Peer : public std::enable_shared_from_this<Peer> {
  public:
    // Bytes that may wait for a client that does not read.
    static constexpr std::size_t outputLimit = 4U << 20;

    class Listener {
      public:
        virtual ~Listener() = default;
        virtual void OnLine(Peer& peer, std::string_view line) = 0;
        // Called once, never from inside another call on the peer.
        virtual void OnGone(Peer& peer) = 0;
    };

    Peer(asio::ip::tcp::socket connected, std::uint64_t number, Listener& listener);

    [[nodiscard]] std::uint64_t Number() const { return number; }
    void Start();
    // Dropped once the peer is closing; a client that lets too much wait is cut off.
    void Send(std::string bytes);
    // Sends what waits, then ends the connection; nothing more is heard from the client.
    void CloseAfterSending();
    void Abort();
    // Cuts the client off unless this is called again in time; 0 seconds: never.
    void ExpectWithin(int seconds);

  private:
    void Read();
    void Heard(std::size_t count);
    void Write();

    asio::ip::tcp::socket socket;
    asio::steady_timer deadline;
    std::uint64_t number;
    Listener& listener;
    LineBuffer lines;
    char input[4096];
    std::deque<std::string> output;
    std::size_t waiting = 0;
    bool writing = false;
    bool closing = false;
    bool gone = false;
};

}  // namespace demo
