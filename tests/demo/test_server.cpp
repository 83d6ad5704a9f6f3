// The demo's servers over real loopback connections.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <sstream>
#include <thread>

#include "demo/DemoClient.h"
#include "demo/server/DemoServer.h"
#include "support/TestFolder.h"

namespace demo {
namespace {

using support::DemoClient;

class ServerTest : public testing::Test {
  protected:
    ServerTest() {
        folder.Write("Ada.ini", "V1.6\nName=Ada\nPassword=pw\n");
        folder.Write("Bram.ini", "V1.6\r\nName=Bram\r\nPassword=a b\r\n");
        for (int i = 0; i < 10000; ++i)
            archive += static_cast<char>(i * i / 7);
        folder.Write("dreams/deep.dream", archive);
        folder.Write("secret.dream", "not to be had");
        log.Silence();
        server = std::make_unique<DemoServer>(folder.Path(), GameOptions{.still = true}, log);
        std::string reason;
        EXPECT_TRUE(server->Listen(0, 0, reason)) << reason;
        worker = std::thread([this] { server->Run(); });
    }
    ~ServerTest() override {
        server->Stop();
        worker.join();
    }

    support::TestFolder folder;
    std::string archive;
    ServerLog log;
    std::unique_ptr<DemoServer> server;
    std::thread worker;
};

TEST_F(ServerTest, ADreamArrivesInAcknowledgedBlocks) {
    DemoClient client(server->FilePort());
    EXPECT_TRUE(client.TakeLine().starts_with("10 "));
    client.Send("RC Bram a b deep 0 2 4096\n");
    EXPECT_EQ(client.TakeLine(), "44 10000 0 4096\n");
    std::string content;
    for (unsigned block = 0; block < 3; ++block) {
        ASSERT_TRUE(client.WaitForBytes(4096));
        // The next block waits for the acknowledgement of this one.
        EXPECT_EQ(client.received.size(), 4096U);
        const std::string bytes = client.TakeBytes(4096);
        EXPECT_EQ(bytes.substr(0, 6), (std::string{'S', 'C', static_cast<char>(block), 0, 0, 0}));
        content += bytes.substr(10);
        client.Send("PKOK " + std::to_string(block) + "\n");
    }
    EXPECT_EQ(content.substr(0, 10000), archive);
    client.Send("BYE\n");
    EXPECT_TRUE(client.WaitForEnd());
}

TEST_F(ServerTest, RefusesOtherRequests) {
    const std::pair<const char*, const char*> rows[] = {{"RC Bram wrong deep 0 2 4096\n", "51"},
                                                        {"RC Ada pw ../secret 0 2 4096\n", "50"},
                                                        {"RC Ada pw nothing 0 2 4096\n", "52"},
                                                        {"RC Ada pw deep 0 2 many\n", "50"},
                                                        {"RC deep 0 2 4096\n", "50"},
                                                        {"PKOK 0\n", "50"},
                                                        {"RC Ada pw deep 0 2 4096\nPKOK 7\n", "44"}};
    for (const auto& [request, answer] : rows) {
        DemoClient client(server->FilePort());
        client.TakeLine();
        client.Send(request);
        EXPECT_TRUE(client.TakeLine().starts_with(answer)) << request;
    }
}

TEST_F(ServerTest, ServesSeveralDownloadsAtOnceAndForgetsBrokenOnes) {
    {
        DemoClient leaver(server->FilePort());
        leaver.TakeLine();
        leaver.Send("RC Ada pw deep 0 2 64\n");
        EXPECT_TRUE(leaver.WaitForBytes(64));
    }
    DemoClient clients[] = {DemoClient(server->FilePort()), DemoClient(server->FilePort())};
    std::string contents[2];
    for (DemoClient& client : clients) {
        client.TakeLine();
        // A block size below the least one is raised to it.
        client.Send("RC Ada pw deep 0 2 1\n");
        EXPECT_EQ(client.TakeLine(), "44 10000 0 64\n");
    }
    for (unsigned block = 0; block < 186; ++block)
        for (std::size_t i = 0; i < 2; ++i) {
            ASSERT_TRUE(clients[i].WaitForBytes(64)) << block;
            contents[i] += clients[i].TakeBytes(64).substr(10);
            clients[i].Send("PKOK " + std::to_string(block) + "\n");
        }
    for (const std::string& content : contents)
        EXPECT_EQ(content.substr(0, 10000), archive);
}

TEST_F(ServerTest, TurnsACrowdAway) {
    std::vector<std::unique_ptr<DemoClient>> crowd;
    for (int i = 0; i < 64; ++i) {
        crowd.push_back(std::make_unique<DemoClient>(server->GamePort()));
        ASSERT_TRUE(crowd.back()->WaitForText("END\n")) << i;
    }
    DemoClient oneMore(server->GamePort());
    EXPECT_TRUE(oneMore.WaitForEnd());
    EXPECT_EQ(oneMore.received, "");
    crowd.pop_back();
    // The place becomes free as soon as the server has seen the other one go.
    EXPECT_TRUE(crowd.front()->WaitFor([&] {
        DemoClient next(server->GamePort());
        return next.WaitFor([&] { return !next.received.empty() || next.HasEnded(); }) && !next.received.empty();
    }));
}

// The program itself: ports written once it listens, a clean end on a signal, no start with bad arguments.
TEST(ServerProgram, WritesItsPortsAndEndsOnASignal) {
    const support::TestFolder folder;
    const std::string program = KELVANE_DEMO_SERVER;
    folder.Write("run.sh", program +
                               " --folder . --ports-file ports.txt --write-addresses --log log.txt & pid=$!\n"
                               "for i in $(seq 200); do [ -s ports.txt ] && break; sleep 0.05; done\n"
                               "kill -TERM $pid; wait $pid; echo $? > status.txt\n");
    folder.Write("data/keep", "");
    ASSERT_EQ(std::system("sh run.sh"), 0);
    EXPECT_EQ(folder.Read("status.txt"), "0\n");
    std::istringstream ports(folder.Read("ports.txt"));
    std::string word;
    int gamePort = 0;
    int filePort = 0;
    ports >> word >> gamePort >> word >> filePort;
    EXPECT_NE(gamePort, filePort);
    EXPECT_EQ(folder.Read("data/tolv_ip.txt"), "127.0.0.1\n" + std::to_string(gamePort) + "\n");
    EXPECT_EQ(folder.Read("data/tolvfile_ip.txt"), "127.0.0.1\n" + std::to_string(filePort) + "\n");
    EXPECT_TRUE(folder.Read("log.txt").ends_with("closed\n"));
    for (const char* arguments :
         {"", " --folder", " --folder . --game-port 70000", " --folder . --seed x", " --what 1"})
        EXPECT_NE(std::system((program + arguments + " 2>/dev/null").c_str()), 0) << arguments;
}

TEST_F(ServerTest, SurvivesAnyBytes) {
    std::mt19937 random(7);
    DemoClient witness(server->GamePort());
    ASSERT_TRUE(witness.LogIn("Ada pw"));
    const std::string starts[] = {"connect ", "RC ", "l ", "\"", "m ", "wh ", "color ", "desc ", "PKOK ", ""};
    for (int round = 0; round < 40; ++round) {
        DemoClient visitor(round % 2 ? server->FilePort() : server->GamePort());
        if (round % 4 == 0) visitor.LogIn("Bram a b");
        for (int line = 0; line < 50; ++line) {
            std::string bytes = starts[random() % std::size(starts)];
            for (unsigned left = random() % 60; left > 0; --left)
                bytes += static_cast<char>(random());
            visitor.Send(bytes + "\n");
        }
        if (round % 5 == 0) {
            // A line without an end.
            visitor.Send(std::string(100000, 'x'));
            EXPECT_TRUE(visitor.WaitForEnd());
        }
    }
    witness.Send("who\n");
    EXPECT_TRUE(witness.WaitForText("((Players: "));
}

}  // namespace
}  // namespace demo
