#include "platform/Socket.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/Thread.h"

namespace platform {

namespace {

constexpr int waitStepMs = 50;

SocketStatus StatusOf(int error) {
    switch (error) {
        case EAGAIN:
        case EINPROGRESS:
        case ENOBUFS:
            return SocketStatus::NotYet;
        case ECONNREFUSED:
            return SocketStatus::Refused;
        case ENETDOWN:
        case ENETUNREACH:
            return SocketStatus::NetworkDown;
        case ENOTCONN:
            return SocketStatus::NotConnected;
        case EPIPE:
        case ECONNRESET:
            return SocketStatus::Closed;
        default:
            return SocketStatus::Error;
    }
}

// Waits for `events` at most `timeoutMs`; below 0 on an error, 0 when nothing came.
int WaitFor(int handle, short events, int timeoutMs) {
    pollfd watched{handle, events, 0};
    const int ready = poll(&watched, 1, timeoutMs);
    return ready < 0 && errno == EINTR ? 0 : ready;
}

bool LookUp(const std::string& host, std::uint32_t& address) {
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &wanted, &found) != 0) return false;
    const bool any = found && found->ai_addr && found->ai_family == AF_INET;
    if (any) address = ntohl(reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr.s_addr);
    freeaddrinfo(found);
    return any;
}

// A look-up that its asker may abandon; both sides hold it.
struct Inquiry {
    std::string host;
    std::mutex lock;
    std::condition_variable answered;
    bool done = false;
    bool found = false;
    std::uint32_t address = 0;
};

void Inquire(void* argument) {
    const std::unique_ptr<std::shared_ptr<Inquiry>> own(static_cast<std::shared_ptr<Inquiry>*>(argument));
    Inquiry& inquiry = **own;
    std::uint32_t address = 0;
    const bool found = LookUp(inquiry.host, address);
    const std::lock_guard<std::mutex> hold(inquiry.lock);
    inquiry.found = found;
    inquiry.address = address;
    inquiry.done = true;
    inquiry.answered.notify_all();
}

}  // namespace

bool StartSocketLibrary() {
    return true;
}
void StopSocketLibrary() {}

bool ResolveHost(const std::string& host, std::uint32_t& address, bool (*cancelled)()) {
    if (host.empty() || host.find('\0') != std::string::npos) return false;
    in_addr numeric{};
    if (inet_pton(AF_INET, host.c_str(), &numeric) == 1) {
        address = ntohl(numeric.s_addr);
        return true;
    }
    if (!cancelled) return LookUp(host, address);
    auto inquiry = std::make_shared<Inquiry>();
    inquiry->host = host;
    auto handOver = std::make_unique<std::shared_ptr<Inquiry>>(inquiry);
    std::thread worker;
    if (!StartThread(worker, Inquire, handOver.get())) return LookUp(host, address);
    static_cast<void>(handOver.release());
    worker.detach();
    std::unique_lock<std::mutex> hold(inquiry->lock);
    while (!inquiry->answered.wait_for(hold, std::chrono::milliseconds(waitStepMs), [&] { return inquiry->done; }))
        if (cancelled()) return false;
    if (inquiry->found) address = inquiry->address;
    return inquiry->found;
}

Socket::~Socket() {
    Close();
}

Socket::Socket(Socket&& other) noexcept : handle(std::exchange(other.handle, -1)) {}

Socket& Socket::operator=(Socket&& other) noexcept {
    if (this == &other) return *this;
    Close();
    handle = std::exchange(other.handle, -1);
    return *this;
}

bool Socket::Open() {
    Close();
    handle = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_TCP);
    return handle >= 0;
}

bool Socket::IsOpen() const {
    return handle >= 0;
}

SocketStatus Socket::Connect(std::uint32_t address, std::uint16_t port, bool (*cancelled)()) {
    if (handle < 0) return SocketStatus::Error;
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(port);
    peer.sin_addr.s_addr = htonl(address);
    if (connect(handle, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == 0) return SocketStatus::Ok;
    if (errno != EINPROGRESS && errno != EINTR) return StatusOf(errno);
    for (;;) {
        const int ready = WaitFor(handle, POLLOUT, waitStepMs);
        if (ready < 0) return SocketStatus::Error;
        if (ready > 0) break;
        if (cancelled && cancelled()) return SocketStatus::Error;
    }
    int error = 0;
    socklen_t length = sizeof error;
    if (getsockopt(handle, SOL_SOCKET, SO_ERROR, &error, &length) != 0) return SocketStatus::Error;
    return error == 0 ? SocketStatus::Ok : StatusOf(error);
}

SocketStatus Socket::Send(const void* data, std::size_t count, std::size_t& sent) {
    sent = 0;
    if (handle < 0) return SocketStatus::NotConnected;
    const auto* bytes = static_cast<const char*>(data);
    while (sent < count) {
        const ssize_t taken = send(handle, bytes + sent, count - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (taken > 0) {
            sent += static_cast<std::size_t>(taken);
            continue;
        }
        if (taken < 0 && errno == EINTR) continue;
        const SocketStatus status = taken < 0 ? StatusOf(errno) : SocketStatus::NotYet;
        if (status != SocketStatus::NotYet) return status;
        if (sent > 0) return SocketStatus::Ok;
        if (WaitFor(handle, POLLOUT, waitStepMs) <= 0) return SocketStatus::NotYet;
    }
    return SocketStatus::Ok;
}

SocketStatus Socket::PollReadable() {
    if (handle < 0) return SocketStatus::NotConnected;
    const int ready = WaitFor(handle, POLLIN, 0);
    if (ready < 0) return SocketStatus::Error;
    return ready > 0 ? SocketStatus::Ok : SocketStatus::NotYet;
}

SocketStatus Socket::Receive(void* out, std::size_t capacity, std::size_t& received) {
    received = 0;
    if (handle < 0) return SocketStatus::NotConnected;
    ssize_t count = 0;
    do {
        count = recv(handle, out, capacity, MSG_DONTWAIT);
    } while (count < 0 && errno == EINTR);
    if (count < 0) return StatusOf(errno);
    received = static_cast<std::size_t>(count);
    return count == 0 && capacity > 0 ? SocketStatus::Closed : SocketStatus::Ok;
}

SocketStatus Socket::PeerStatus() {
    if (handle < 0) return SocketStatus::NotConnected;
    sockaddr_in peer{};
    socklen_t length = sizeof peer;
    if (getpeername(handle, reinterpret_cast<sockaddr*>(&peer), &length) == 0) return SocketStatus::Ok;
    const SocketStatus status = StatusOf(errno);
    return status == SocketStatus::NotConnected || status == SocketStatus::NetworkDown ? status : SocketStatus::Error;
}

void Socket::Shutdown() {
    if (handle >= 0) shutdown(handle, SHUT_RDWR);
}

void Socket::Close() {
    if (handle >= 0) close(handle);
    handle = -1;
}

}  // namespace platform
