#pragma once
// One IPv4 stream socket and host lookup, as far as a client needs them.

#include <cstddef>
#include <cstdint>
#include <string>

namespace platform {

enum class SocketStatus { Ok, NotYet, Closed, Refused, NetworkDown, NotConnected, Error };

// Starts or ends the system's socket library for one user; counts.
[[nodiscard]] bool StartSocketLibrary();
void StopSocketLibrary();

// First IPv4 address of a host, most significant byte first in the number (127.0.0.1 is 0x7F000001). May block for
// long; gives up early with false when `cancelled` (if not null) answers true, asked about every 50 ms.
[[nodiscard]] bool ResolveHost(const std::string& host, std::uint32_t& address, bool (*cancelled)() = nullptr);

class Socket {
  public:
    Socket() = default;
    ~Socket();
    Socket(Socket&& other) noexcept;
    Socket& operator=(Socket&& other) noexcept;
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    [[nodiscard]] bool Open();
    [[nodiscard]] bool IsOpen() const;
    // Blocks until connected or refused; gives up with Error when `cancelled` answers true.
    SocketStatus Connect(std::uint32_t address, std::uint16_t port, bool (*cancelled)() = nullptr);
    // Hands the system what it takes at once; `sent` counts the bytes, and Ok may be for a part of them. NotYet when
    // nothing could be taken for about 50 ms (the peer does not read): callers hold locks around this call, so how long
    // to go on trying is theirs to say. Closed when the peer is gone. Never raises a signal.
    SocketStatus Send(const void* data, std::size_t count, std::size_t& sent);
    // Ok when a receive would not block, NotYet when it would.
    SocketStatus PollReadable();
    // Closed at the end of the stream.
    SocketStatus Receive(void* out, std::size_t capacity, std::size_t& received);
    // Ok while the socket knows its peer, else NotConnected, NetworkDown or Error.
    SocketStatus PeerStatus();
    void Shutdown();
    void Close();

  private:
    int handle = -1;
};

}  // namespace platform
