#include "demo/server/Loopback.h"

namespace demo {

bool ListenOnLoopback(asio::ip::tcp::acceptor& acceptor, std::uint16_t wanted, std::uint16_t& port,
                      std::string& reason) {
    const asio::ip::tcp::endpoint here(asio::ip::address_v4::loopback(), wanted);
    asio::error_code failure;
    acceptor.open(here.protocol(), failure);
    if (!failure) acceptor.set_option(asio::socket_base::reuse_address(true), failure);
    if (!failure) acceptor.bind(here, failure);
    if (!failure) acceptor.listen(asio::socket_base::max_listen_connections, failure);
    if (!failure) port = acceptor.local_endpoint(failure).port();
    if (failure) reason = failure.message();
    return !failure;
}

}  // namespace demo
