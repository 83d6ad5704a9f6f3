#include "session/TolvFileGetter.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <memory>

#include "session/PlayerData.h"
#include "session/SessionFixture.h"
#include "support/LoopbackPeer.h"
#include "support/TestFolder.h"

namespace {

using support::LoopbackPeer;

const std::string path = "kvn2_tmp/dd/dd.dream";
const std::string gamePath = "kvn2_tmp\\dd\\dd.dream";
const std::string accepted = "> File Server welcome received.  Requesting transfer...\n";
const std::string begun = accepted + "> Transfer request accepted.  Download beginning.\n";
const std::string deleted = "Note: deleting incompletely transfered file \"" + gamePath + "\"\n";
const std::string notDeleted = deleted + "Failed to delete file \"" + gamePath + "\"\n";
const std::string request = "RC Ab secret dd 0 2 4096\n";

std::string Content(std::size_t size) {
    std::string content;
    for (std::size_t i = 0; i < size; ++i)
        content += static_cast<char>(i * 7 + i / 251);
    return content;
}

// Block `number` of a file of the size of `content`, filled up behind its end.
std::string Block(const std::string& content, unsigned number, std::size_t blockSize) {
    std::string block = "SC";
    for (unsigned shift = 0; shift < 32; shift += 8)
        block += static_cast<char>(number >> shift);
    block += "????" + content.substr(number * (blockSize - 10), blockSize - 10);
    block.resize(blockSize, '#');
    return block;
}

// Sends the file block by block and hears each acknowledgement and the farewell.
void ServeFile(LoopbackPeer& peer, const std::string& content, std::size_t blockSize, unsigned blocks) {
    for (unsigned i = 0; i < blocks; ++i) {
        EXPECT_TRUE(peer.Send(Block(content, i, blockSize)));
        EXPECT_EQ(peer.ReadLine(), "PKOK " + std::to_string(i) + "\n");
    }
    EXPECT_EQ(peer.ReadLine(), "BYE\n");
}

std::string Reply(std::size_t size, std::size_t blockSize) {
    return "44 " + std::to_string(size) + "\t0  " + std::to_string(blockSize) + "\n";
}

struct FileGetterTest : testing::Test {
    FileGetterTest() {
        folder.Write("data/tolvfile_ip.txt", "127.0.0.1\n" + std::to_string(peer.Port()) + "\n");
        GetPlayerData() = {"Ab", "secret", "", "", {0, 0}};
        support::TakeMessages();
    }
    // Runs a transfer of dd against a server that sends the welcome, hears the request and then acts by `serve`.
    bool Transfer(const std::function<void()>& serve, const std::string& welcome = "10 hello\n") {
        std::thread server([&] {
            if (!peer.Accept() || !peer.Send(welcome)) return;
            EXPECT_EQ(welcome == "10 hello\n" ? peer.ReadLine() : request, request);
            serve();
        });
        TOLV::FileGetter getter("dd", "kvn2_tmp\\dd");
        EXPECT_EQ(getter.GetPath(), gamePath);
        EXPECT_TRUE(support::WaitFor([&] { return getter.IsDone(); }));
        getter.GetProgress(received, total);
        server.join();
        return getter.IsComplete();
    }

    support::TestFolder folder;
    LoopbackPeer peer;
    int received = -1;
    int total = -1;
};

TEST_F(FileGetterTest, DownloadsByteForByteAndReusesTheCopy) {
    struct Row {
        std::size_t size;
        std::size_t blockSize;
        unsigned blocks;
    };
    for (const Row row : {Row{10000, 4096, 3}, Row{8172, 4096, 2}, Row{1, 4096, 1}, Row{23, 11, 23}}) {
        folder.Write(path + ".size", "");
        const std::string content = Content(row.size);
        EXPECT_TRUE(Transfer([&] {
            (void)peer.Send(Reply(row.size, row.blockSize));
            ServeFile(peer, content, row.blockSize, row.blocks);
        }));
        EXPECT_EQ(received, total);
        EXPECT_EQ(support::TakeMessages(), begun + "> Download Complete.\n");
        EXPECT_EQ(folder.Read(path), content);
        EXPECT_EQ(folder.Read(path + ".size"), std::to_string(row.size));
    }
    const TOLV::FileGetter again("dd", "kvn2_tmp\\dd");
    EXPECT_TRUE(again.IsDone() && again.IsComplete());
    EXPECT_EQ(support::TakeMessages(), "> Already have dream file, so using local copy.\n");
    EXPECT_EQ(folder.Read("_error.txt"), "");
}

TEST_F(FileGetterTest, AServerThatSendsByteByByte) {
    const std::string content = Content(40);
    EXPECT_TRUE(Transfer([&] {
        for (const char c : Reply(40, 50) + Block(content, 0, 50)) {
            (void)peer.Send(std::string(1, c));
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        EXPECT_EQ(peer.ReadLine(2), "PKOK 0\nBYE\n");
    }));
    EXPECT_EQ(folder.Read(path), content);
}

TEST_F(FileGetterTest, Failures) {
    const std::string welcome = "Anomolous message recieved in response to file server connect.\n";
    const std::string reply = "Anomolous response recieved to RC request.\n";
    const std::string order =
        "Out of order data block received from file server... aborting. (I know, I should handle this "
        "better.... later!)\n";
    struct Row {
        std::string welcome;  // the usual one when empty
        std::string answer;
        std::string log;
        std::string messages;
        bool closes = false;
    };
    const std::string content = Content(100);
    std::vector<Row> rows = {
        {"10\n", "", welcome + notDeleted, "> FAILED\n"},
        {"100 hello\n", "", welcome + notDeleted, "> FAILED\n"},
        {std::string(70000, '1'), "", welcome + notDeleted, "> FAILED\n"},
        {"", Reply(100, 60) + "XC" + std::string(58, ' '),
         "Non-data block recieved while downloading file... aborting.\n" + deleted, begun + "> FAILED\n"},
        {"", Reply(100, 60) + Block(content, 1, 60) + Block(content, 0, 60), order + deleted, begun + "> FAILED\n"},
        {"", Reply(100, 60) + Block(content, 0, 60).substr(0, 59), "Lost connection to file server...\n" + deleted,
         begun + "> Lost connection to file server.\n", true},
    };
    for (const char* const refusal :
         {"045 100 0 60\n", "044 100 0 60\n", "\n", "44 100 60\n", "44 0 0 60\n", "44 -5 0 60\n", "44 x 0 60\n",
          "44 100 0 10\n", "44 100 0 -60\n", "44 100 0 1048577\n", "44 536870913 0 60\n", "44 99999999999999 0 60\n"})
        rows.push_back({"", refusal, reply + notDeleted, accepted + "> FAILED\n"});
    for (const Row& row : rows) {
        support::ClearErrorLog();
        EXPECT_FALSE(Transfer(
            [&] {
                (void)peer.Send(row.answer);
                // Bytes that come together with the end of the stream would be lost with it.
                if (!row.closes) return;
                support::WaitFor([&] { return folder.Has(path); });
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
                peer.CloseConnection();
            },
            row.welcome.empty() ? "10 hello\n" : row.welcome));
        EXPECT_EQ(folder.Read("_error.txt"), row.log) << row.answer;
        EXPECT_EQ(support::TakeMessages(), row.messages) << row.answer;
        EXPECT_FALSE(folder.Has(path));
    }
}

TEST_F(FileGetterTest, ACopyOfAnotherSizeIsDownloadedAgain) {
    folder.Write(path, "old");
    for (const char* const noted : {"", "4", "x3", "-3"}) {
        folder.Write(path + ".size", noted);
        EXPECT_FALSE(Transfer([&] { (void)peer.Send("99 no\n"); })) << noted;
        EXPECT_FALSE(folder.Has(path));
        folder.Write(path, "old");
    }
}

TEST_F(FileGetterTest, WithoutAConnectionOnlyALocalCopyHelps) {
    const std::string port = std::to_string(peer.Port());
    peer.StopListening();
    {
        const TOLV::FileGetter none("dd", "kvn2_tmp\\dd");
        EXPECT_TRUE(none.IsDone() && !none.IsComplete());
    }
    EXPECT_EQ(folder.Read("_error.txt"),
              "Failed to connect to host \"127.0.0.1\" port " + port +
                  "\n  -connection refused by server\nFailed to connect to tolv file server.\n" + notDeleted);
    support::ClearErrorLog();
    folder.Write(path, "old");
    folder.Write(path + ".size", "3");
    std::filesystem::remove("data/tolvfile_ip.txt");
    EXPECT_TRUE(TOLV::FileGetter("dd", "kvn2_tmp\\dd").IsComplete());
    EXPECT_EQ(folder.Read("_error.txt"),
              "Failed to load tolv's file-server ip and port from \\data\\tolvfile_ip.txt file.\n"
              "Unable to resolve host \"Failed to load\" port 0\nFailed to connect to tolv file server.\n");
    EXPECT_EQ(folder.Read(path), "old");
}

TEST_F(FileGetterTest, NamesThatAreNoFileNamesAreRefused) {
    folder.Write("up.dream", "up");
    folder.Write("up.dream.size", "2");
    for (const char* const id : {"", "..\\up", "../up", "a\\b", ".", "..", "c:up", "up\t", "up."}) {
        support::ClearErrorLog();
        {
            const TOLV::FileGetter getter(id, std::string("kvn2_tmp\\") + id);
            EXPECT_TRUE(getter.IsDone() && !getter.IsComplete() && getter.GetPath().empty()) << id;
        }
        EXPECT_NE(folder.Read("_error.txt"), "") << id;
    }
    EXPECT_TRUE(folder.Has("up.dream"));
}

TEST_F(FileGetterTest, AFullDiskIsNoCompleteDownload) {
    // A limit on the size of files stands for the full disk; it cuts the network log as well.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{5000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_FALSE(Transfer([&] {
        (void)peer.Send(Reply(10000, 5010));
        (void)peer.Send(Block(Content(10000), 0, 5010));
        (void)peer.Send(Block(Content(10000), 1, 5010));
    }));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(folder.Read("_error.txt"), "Failed to write downloaded data to the output file.\n" + deleted);
    EXPECT_EQ(support::TakeMessages(), begun + "> FAILED\n");
}

}  // namespace
