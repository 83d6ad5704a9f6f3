#pragma once
// One client of a server that misbehaves: bytes go out at the pace and in the pieces that are wanted.

#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "demo/server/LineBuffer.h"

namespace demo {

class StormPeer;

// What the server does with one client.
class Storm {
  public:
    virtual ~Storm() = default;
    virtual void Connected(StormPeer& peer) = 0;
    // A whole line of the client, without the line feed.
    virtual void Line(StormPeer& peer, std::string_view line) = 0;
    // Everything ordered so far is done; more may be ordered. Not called again before something was.
    virtual void Drained(StormPeer& peer) = 0;
};

// Orders are carried out one after the other. One thread.
class StormPeer : public std::enable_shared_from_this<StormPeer> {
  public:
    StormPeer(asio::ip::tcp::socket connected, std::unique_ptr<Storm> what);

    // Stays alive until the connection ends.
    void Start();
    void Send(std::string bytes);
    void Pause(double seconds);
    // Says nothing more, with the connection open.
    void FallSilent();
    // Ends the connection with a reset (true), which drops what the client has not taken, or in good order (false).
    void End(bool reset);
    // Takes nothing more of what the client sends.
    void StopReading() { deaf = true; }
    // From now on each byte is a packet of its own.
    void DripBytes() { dripping = true; }
    // A byte of urgent data, which overtakes the others.
    void SendUrgent(char byte);
    [[nodiscard]] bool IsGone() const { return gone; }
    void Abort();

  private:
    enum class Kind { Bytes, Pause, Silence, End, Reset };
    struct Order {
        Kind kind = Kind::Bytes;
        std::string bytes;
        double seconds = 0.0;
    };

    void Add(Order order);
    void Next();
    void Write();
    void WaitThenNext(double seconds);
    void Read();
    void Heard(std::size_t count);

    asio::ip::tcp::socket socket;
    asio::steady_timer timer;
    std::unique_ptr<Storm> storm;
    LineBuffer lines;
    char input[4096];
    std::deque<Order> orders;
    std::size_t written = 0;  // of the first order's bytes
    bool busy = false;
    bool deaf = false;
    bool dripping = false;
    bool gone = false;
};

}  // namespace demo
