#pragma once
// Listening on the loopback address.

#include <asio/ip/tcp.hpp>
#include <cstdint>
#include <string>

namespace demo {

// Port 0: the system picks one; `port` gets the one that it is. False, with the reason, when the port cannot be had.
[[nodiscard]] bool ListenOnLoopback(asio::ip::tcp::acceptor& acceptor, std::uint16_t wanted, std::uint16_t& port,
                                    std::string& reason);

}  // namespace demo
