#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/Clock.h"
#include "platform/Socket.h"
#include "platform/Thread.h"

namespace {

using platform::Socket;
using platform::SocketStatus;

constexpr std::uint32_t loopback = 0x7F000001;

// A listening socket on a port that the system picks, and the peer it accepted.
struct Server {
    explicit Server(int backlog = 4) : handle(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in own{};
        own.sin_family = AF_INET;
        own.sin_addr.s_addr = htonl(loopback);
        socklen_t length = sizeof own;
        if (bind(handle, reinterpret_cast<sockaddr*>(&own), length) == 0 && listen(handle, backlog) == 0 &&
            getsockname(handle, reinterpret_cast<sockaddr*>(&own), &length) == 0)
            port = ntohs(own.sin_port);
    }
    ~Server() {
        close(handle);
        if (peer >= 0) close(peer);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    void Accept() { peer = accept(handle, nullptr, nullptr); }

    int handle;
    int peer = -1;
    std::uint16_t port = 0;
};

double SecondsSince(std::int64_t start) {
    return static_cast<double>(platform::CounterValue() - start) / static_cast<double>(platform::CounterFrequency());
}

// Waits at most five seconds for something to receive.
SocketStatus Await(Socket& socket) {
    SocketStatus status = socket.PollReadable();
    for (int i = 0; i < 5000 && status == SocketStatus::NotYet; ++i) {
        platform::SleepMs(1);
        status = socket.PollReadable();
    }
    return status;
}

bool Always() {
    return true;
}
std::int64_t startedAt = 0;
bool AfterATenth() {
    return SecondsSince(startedAt) > 0.1;
}

TEST(Socket, ConnectsSendsReceivesAndHearsTheEnd) {
    Server server;
    Socket client;
    ASSERT_TRUE(client.Open());
    EXPECT_EQ(client.PeerStatus(), SocketStatus::NotConnected);
    ASSERT_EQ(client.Connect(loopback, server.port), SocketStatus::Ok);
    server.Accept();
    EXPECT_EQ(client.PeerStatus(), SocketStatus::Ok);
    EXPECT_EQ(client.PollReadable(), SocketStatus::NotYet);
    char bytes[8] = {};
    std::size_t count = 9;
    EXPECT_EQ(client.Receive(bytes, sizeof bytes, count), SocketStatus::NotYet);
    EXPECT_EQ(client.Send("hello", 5, count), SocketStatus::Ok);
    ASSERT_EQ(recv(server.peer, bytes, 5, MSG_WAITALL), 5);
    ASSERT_EQ(send(server.peer, bytes, 5, 0), 5);
    Socket moved(std::move(client));
    EXPECT_FALSE(client.IsOpen());
    EXPECT_EQ(Await(moved), SocketStatus::Ok);
    EXPECT_EQ(moved.Receive(bytes, 8, count), SocketStatus::Ok);
    EXPECT_EQ(std::string(bytes, count), "hello");
    close(std::exchange(server.peer, -1));
    EXPECT_EQ(Await(moved), SocketStatus::Ok);
    EXPECT_EQ(moved.Receive(bytes, 8, count), SocketStatus::Closed);
    // The first bytes make the peer answer that it is gone; sending on raises no signal.
    SocketStatus status = SocketStatus::Ok;
    for (int i = 0; i < 1000 && status == SocketStatus::Ok; ++i) {
        status = moved.Send("x", 1, count);
        platform::SleepMs(1);
    }
    EXPECT_EQ(status, SocketStatus::Closed);
}

TEST(Socket, APeerThatDoesNotReadHoldsNobodyUp) {
    Server server;
    Socket client;
    ASSERT_TRUE(client.Open());
    ASSERT_EQ(client.Connect(loopback, server.port), SocketStatus::Ok);
    server.Accept();
    const std::string block(1 << 20, 'x');
    const std::int64_t start = platform::CounterValue();
    std::size_t total = 0;
    SocketStatus status = SocketStatus::Ok;
    for (int i = 0; i < 1000 && status == SocketStatus::Ok; ++i) {
        std::size_t sent = 0;
        status = client.Send(block.data(), block.size(), sent);
        total += sent;
    }
    EXPECT_EQ(status, SocketStatus::NotYet);
    EXPECT_GT(total, 0U);
    EXPECT_LT(SecondsSince(start), 5.0);
}

TEST(Socket, ConnectTellsWhyItFailed) {
    std::uint16_t closedPort = 0;
    {
        const Server gone;
        closedPort = gone.port;
    }
    Socket client;
    EXPECT_EQ(client.Connect(loopback, closedPort), SocketStatus::Error) << "not open";
    ASSERT_TRUE(client.Open());
    EXPECT_EQ(client.Connect(loopback, closedPort), SocketStatus::Refused);
}

TEST(Socket, AnUnansweredConnectCanBeCancelled) {
    // A listener that accepts nobody stops answering when its queue is full.
    const Server server(0);
    std::vector<Socket> clients(8);
    SocketStatus status = SocketStatus::Ok;
    for (Socket& client : clients) {
        ASSERT_TRUE(client.Open());
        startedAt = platform::CounterValue();
        status = client.Connect(loopback, server.port, AfterATenth);
        if (status != SocketStatus::Ok) break;
    }
    EXPECT_EQ(status, SocketStatus::Error);
    EXPECT_LT(SecondsSince(startedAt), 1.0);
}

TEST(ResolveHost, FindsNamesAndNumbers) {
    std::uint32_t address = 0;
    for (bool (*cancelled)() : {static_cast<bool (*)()>(nullptr), +[] { return false; }})
        EXPECT_TRUE(platform::ResolveHost("localhost", address, cancelled) && address == loopback);
    EXPECT_TRUE(platform::ResolveHost("10.2.3.4", address, Always));
    EXPECT_EQ(address, 0x0A020304U);
    for (const std::string& bad : {std::string(), std::string("a\0b", 3), std::string("host name")})
        EXPECT_FALSE(platform::ResolveHost(bad, address));
    EXPECT_EQ(address, 0x0A020304U);
}

TEST(ResolveHost, CanBeAbandoned) {
    static std::thread slow;
    platform::SetThreadStarter([](std::thread& out, void (*entry)(void*), void* argument) {
        slow = std::thread([entry, argument] {
            platform::SleepMs(500);
            entry(argument);
        });
        out = std::thread([] {});
        return true;
    });
    const std::int64_t start = platform::CounterValue();
    std::uint32_t address = 7;
    EXPECT_FALSE(platform::ResolveHost("localhost", address, Always));
    EXPECT_LT(SecondsSince(start), 0.4);
    slow.join();
    EXPECT_EQ(address, 7U);
    platform::SetThreadStarter(nullptr);
}

}  // namespace
