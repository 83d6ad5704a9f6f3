#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "platform/Clock.h"
#include "platform/Socket.h"
#include "platform/Thread.h"
#include "support/LoopbackPeer.h"

namespace {

using platform::Socket;
using platform::SocketStatus;

constexpr std::uint32_t loopback = 0x7F000001;

double SecondsSince(std::int64_t start) {
    return static_cast<double>(platform::CounterValue() - start) / static_cast<double>(platform::CounterFrequency());
}

bool Always() {
    return true;
}
std::int64_t startedAt = 0;
bool AfterATenth() {
    return SecondsSince(startedAt) > 0.1;
}

// What else a socket does is tested with the client that uses it.
TEST(Socket, SendingToAPeerThatIsGoneRaisesNoSignal) {
    support::LoopbackPeer peer;
    Socket client;
    ASSERT_TRUE(client.Open());
    ASSERT_EQ(client.Connect(loopback, static_cast<std::uint16_t>(peer.Port())), SocketStatus::Ok);
    ASSERT_TRUE(peer.Accept());
    peer.CloseConnection();
    std::size_t count = 0;
    EXPECT_TRUE(support::WaitFor([&] { return client.Send("x", 1, count) == SocketStatus::Closed; }));
}

TEST(Socket, AnUnansweredConnectCanBeCancelled) {
    support::LoopbackPeer peer;
    peer.FillUp();
    Socket client;
    ASSERT_TRUE(client.Open());
    startedAt = platform::CounterValue();
    EXPECT_EQ(client.Connect(loopback, static_cast<std::uint16_t>(peer.Port()), AfterATenth), SocketStatus::Error);
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
