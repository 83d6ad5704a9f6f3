#include "net/NetClient.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/LoopbackPeer.h"
#include "support/TestFolder.h"

namespace {

using support::WaitFor;

struct NetClientTest : testing::Test {
    bool Join() { return client->Connect("127.0.0.1", peer.Port()) && peer.Accept(); }
    std::string Received() {
        std::vector<char> bytes;
        EXPECT_TRUE(client->ReceiveData(bytes));
        return {bytes.begin(), bytes.end()};
    }

    support::TestFolder folder;
    support::LoopbackPeer peer;
    std::unique_ptr<NET::Client> client = std::make_unique<NET::Client>();
};

TEST_F(NetClientTest, WhatArrivesInPiecesComesOutWholeAndUnchanged) {
    // On a client that has lost its peer before.
    ASSERT_TRUE(Join());
    peer.CloseConnection();
    ASSERT_TRUE(WaitFor([&] { return !client->IsConnected(); }));
    ASSERT_TRUE(Join());
    std::vector<char> untouched = {'x'};
    EXPECT_FALSE(client->ReceiveData(untouched));
    EXPECT_EQ(untouched.size(), 1U);
    ASSERT_TRUE(peer.Send(std::string("one\r\ntw") + '\0'));
    ASSERT_TRUE(WaitFor([&] { return client->PendingBytes() == 8; }));
    const std::string big(20000, 'b');
    ASSERT_TRUE(peer.Send(big));
    ASSERT_TRUE(WaitFor([&] { return client->PendingBytes() == 20008; }));
    support::ClearLog("_netlog.txt");
    EXPECT_EQ(Received(), std::string("one\r\ntw") + '\0' + big);
    EXPECT_EQ(folder.Read("_netlog.txt"), "one\r\ntw" + big + "\n");
}

TEST_F(NetClientTest, TheNetworkLogNeverShowsNameAndPassword) {
    const std::string connectMask = "connect (NAME/PASS REMOVED FOR SECURITY)\n";
    const std::string requestMask = "RC (NAME/PASS REMOVED FOR SECURITY)\n";
    const std::pair<std::string, std::string> rows[] = {
        {"connect Ab secret\n", connectMask},
        {"conn", connectMask},
        {"connected\n", "connected\n"},
        {"RC \n", requestMask},
        {"RC ", "RC "},
        {std::string("a\0b", 3), "a"},
    };
    ASSERT_TRUE(Join());
    for (const auto& [sent, logged] : rows) {
        support::ClearLog("_netlog.txt");
        EXPECT_TRUE(client->SendData(sent.data(), static_cast<int>(sent.size())));
        EXPECT_EQ(folder.Read("_netlog.txt"), "{SENT TO SERVER}" + logged);
    }
    EXPECT_FALSE(client->SendData("x", 0) || client->SendData(nullptr, 4));
    EXPECT_EQ(peer.ReadLine(), "connect Ab secret\n");
}

TEST_F(NetClientTest, Connects) {
    // Four numbers need no lookup.
    for (const char* const host :
         {"127.0.0.1", " 127 . 0. 0 .1 ", "383.0.256.257", "127...1", "18446744073709551743.0.0.1"}) {
        EXPECT_TRUE(client->Connect(host, peer.Port()) && peer.Accept()) << host;
        client->Disconnect();
    }
    EXPECT_FALSE(client->Connect("Failed to load", 0));
    EXPECT_FALSE(client->Connect("127.0.0.1", 65536 + 80));
    support::ClearLog("_netlog.txt");
    peer.StopListening();
    EXPECT_FALSE(client->Connect("127.0.0.1", peer.Port()));
    const std::string refused = "Failed to connect to host \"127.0.0.1\" port " + std::to_string(peer.Port()) + "\n";
    EXPECT_EQ(folder.Read("_error.txt"),
              "Unable to resolve host \"Failed to load\" port 0\n"
              "Failed to connect to host \"127.0.0.1\" port 65616\n" +
                  refused + "  -connection refused by server\n");
    EXPECT_EQ(folder.Read("_netlog.txt"), "\n" + refused + "\n");
}

TEST_F(NetClientTest, MisuseIsReportedWithItsCaller) {
    std::vector<char> bytes;
    EXPECT_FALSE(client->SendData("a", 1));
    EXPECT_FALSE(client->ReceiveData(bytes));
    client->Disconnect();
    ASSERT_TRUE(Join());
    EXPECT_FALSE(client->Connect("127.0.0.1", peer.Port()));
    EXPECT_EQ(support::ErrorLogWithoutStacks(),
              "Error: Attempt to send data to server when not connected.\n  -attempt made from:\n\n"
              "Error: Attempt to receive data from server when not connected.\n  -attempt made from:\n\n"
              "Error: Attempt to connect to remove server when already connected.\n  -attempt made from:\n\n");
}

TEST_F(NetClientTest, ASendToAPeerThatDoesNotReadEndsWhenTheWindowCloses) {
    ASSERT_TRUE(Join());
    NET::SetConnectCancel([] { return true; });
    const std::string much(64U << 20, 'm');
    EXPECT_FALSE(client->SendData(much.data(), static_cast<int>(much.size())));
    NET::SetConnectCancel(nullptr);
    EXPECT_FALSE(client->IsConnected());
}

TEST_F(NetClientTest, APeerThatDoesNotReadIsLostWhenThePatienceEnds) {
    ASSERT_TRUE(Join());
    client->SetSendPatience(50);
    const std::string much(64U << 20, 'm');
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(client->SendData(much.data(), static_cast<int>(much.size())));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
    EXPECT_FALSE(client->IsConnected());
}

TEST_F(NetClientTest, AConnectThatNobodyAnswersFailsInTime) {
    peer.FillUp();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(client->Connect("127.0.0.1", peer.Port()));
    const auto took = std::chrono::steady_clock::now() - begin;
    EXPECT_TRUE(took > std::chrono::seconds(4) && took < std::chrono::seconds(15));
}

TEST_F(NetClientTest, AFloodKeepsNeitherTheLockNorTheMemory) {
    ASSERT_TRUE(Join());
    std::thread flood([&] { (void)peer.Send(std::string(20U << 20, 'f')); });
    ASSERT_TRUE(WaitFor([&] { return client->PendingBytes() >= 8U << 20; }, 60000));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_LT(client->PendingBytes(), 9U << 20);
    EXPECT_TRUE(client->SendData("m 9\n", 4));
    std::size_t total = 0;
    EXPECT_TRUE(WaitFor(
        [&] {
            if (client->PendingBytes() > 0) total += Received().size();
            return total == 20U << 20;
        },
        60000));
    flood.join();
}

TEST_F(NetClientTest, TheLastEndpointReportsTheTraffic) {
    const std::pair<unsigned, std::string> rows[] = {
        {0, "0 bytes"}, {103423, "103423 bytes"}, {103424, "101KB"}, {8388607, "8191KB"}, {8388608, "8MB"}};
    for (const auto& [count, amount] : rows) {
        ASSERT_TRUE(Join());
        ASSERT_TRUE(client->SendData("abc\n", 4));
        auto second = std::make_unique<NET::Client>();
        ASSERT_TRUE(peer.Send(std::string(count, 'r')));
        ASSERT_TRUE(WaitFor([&] { return client->PendingBytes() == count; }));
        support::ClearLog("_stat.txt");
        client.reset();
        EXPECT_EQ(folder.Read("_stat.txt"), "");
        second.reset();
        EXPECT_EQ(folder.Read("_stat.txt"),
                  "Network connection:\n  -Total data sent: 4 bytes\n  -Total data received: " + amount + "\n\n");
        client = std::make_unique<NET::Client>();
    }
}

}  // namespace
