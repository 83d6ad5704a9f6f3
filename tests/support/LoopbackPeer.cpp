#include "support/LoopbackPeer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <utility>

namespace support {
namespace {
constexpr timeval limit{5, 0};
}

LoopbackPeer::LoopbackPeer() : listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in own{};
    own.sin_family = AF_INET;
    own.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof own;
    if (bind(listener, reinterpret_cast<sockaddr*>(&own), length) != 0 || listen(listener, 32) != 0) return;
    getsockname(listener, reinterpret_cast<sockaddr*>(&own), &length);
    port = ntohs(own.sin_port);
}

LoopbackPeer::~LoopbackPeer() {
    CloseConnection();
    StopListening();
    for (const int visitor : visitors)
        close(visitor);
}

bool LoopbackPeer::Accept() {
    CloseConnection();
    pollfd waiting{listener, POLLIN, 0};
    if (poll(&waiting, 1, limit.tv_sec * 1000) != 1) return false;
    connection = accept(listener, nullptr, nullptr);
    setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    setsockopt(connection, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    return connection >= 0;
}

void LoopbackPeer::FillUp() {
    listen(listener, 0);
    sockaddr_in own{};
    socklen_t length = sizeof own;
    getsockname(listener, reinterpret_cast<sockaddr*>(&own), &length);
    for (int i = 0; i < 3; ++i) {
        visitors.push_back(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        static_cast<void>(connect(visitors.back(), reinterpret_cast<sockaddr*>(&own), length));
    }
}

bool LoopbackPeer::Send(const std::string& bytes) {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) return false;
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

std::string LoopbackPeer::ReadLine(int count) {
    std::string lines;
    char c = 0;
    while (count > 0 && recv(connection, &c, 1, 0) == 1) {
        lines += c;
        if (c == '\n') --count;
    }
    return lines;
}

void LoopbackPeer::CloseConnection() {
    if (connection >= 0) close(std::exchange(connection, -1));
}

void LoopbackPeer::StopListening() {
    if (listener >= 0) close(std::exchange(listener, -1));
}

}  // namespace support
