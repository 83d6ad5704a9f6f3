#include "session/TolvFileGetter.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <memory>

#include "platform/Thread.h"
#include "session/PlayerData.h"
#include "session/SessionFixture.h"

namespace {

const std::string path = "kvn2_tmp/dd/dd.dream";
const std::string gamePath = "kvn2_tmp\\dd\\dd.dream";
const std::string accepted = "> File Server welcome received.  Requesting transfer...\n";
const std::string begun = accepted + "> Transfer request accepted.  Download beginning.\n";
const std::string deleted = "Note: deleting incompletely transfered file \"" + gamePath + "\"\n";
const std::string notDeleted = deleted + "Failed to delete file \"" + gamePath + "\"\n";
const std::string cut = "(the connection ends)";

std::string Content(std::size_t size) {
    std::string content;
    for (std::size_t i = 0; i < size; ++i)
        content += static_cast<char>(i * 7 + i / 251);
    return content;
}

// Block `number` of a file of the size of `content`, filled up behind its end.
std::string Block(const std::string& content, unsigned number, std::size_t blockSize) {
    std::string block = "SC";
    block += {static_cast<char>(number), 0, 0, 0};
    block += "????" + content.substr(number * (blockSize - 10), blockSize - 10);
    block.resize(blockSize, '#');
    return block;
}

std::string Reply(std::size_t size, std::size_t blockSize) {
    return "44 " + std::to_string(size) + "\t0  " + std::to_string(blockSize) + "\n";
}

struct FileGetterTest : support::SessionTest {
    FileGetterTest() {
        folder.Write("data/tolvfile_ip.txt", "127.0.0.1\n" + std::to_string(peer.Port()) + "\n");
        GetPlayerData() = {"Ab", "secret", "", "", {0, 0}};
    }
    // A server that sends the welcome, hears the request, sends its answer, and hears the acknowledgements.
    bool Transfer(const std::string& answer, const std::string& acknowledged = "", const char* welcome = "10 hello\n") {
        TOLV::FileGetter getter("dd", "kvn2_tmp\\dd");
        EXPECT_EQ(getter.GetPath(), gamePath);
        EXPECT_TRUE(peer.Accept() && peer.Send(welcome));
        if (!answer.empty()) {
            EXPECT_EQ(peer.ReadLine(), "RC Ab secret dd 0 2 4096\n");
            EXPECT_TRUE(peer.Send(answer));
        }
        const auto lines = std::count(acknowledged.begin(), acknowledged.end(), '\n');
        EXPECT_EQ(peer.ReadLine(static_cast<int>(lines)), acknowledged);
        if (answer.ends_with(cut)) peer.CloseConnection();
        EXPECT_TRUE(support::WaitFor([&] { return getter.IsDone(); }));
        getter.GetProgress(received, total);
        return getter.IsComplete();
    }

    support::LoopbackPeer peer;
    int received = -1;
    int total = -1;
};

TEST_F(FileGetterTest, DownloadsByteForByteAndReusesTheCopy) {
    using Row = std::array<unsigned, 3>;
    for (const auto [size, blockSize, blocks] :
         {Row{10000, 4096, 3}, Row{8172, 4096, 2}, Row{1, 4096, 1}, Row{13, 11, 13}}) {
        folder.Write(path + ".size", "");
        const std::string content = Content(size);
        std::string answer = Reply(size, blockSize);
        std::string acknowledged;
        for (unsigned i = 0; i < blocks; ++i) {
            answer += Block(content, i, blockSize);
            acknowledged += "PKOK " + std::to_string(i) + "\n";
        }
        EXPECT_TRUE(Transfer(answer, acknowledged + "BYE\n"));
        EXPECT_EQ(received, total);
        EXPECT_EQ(support::TakeMessages(), begun + "> Download Complete.\n");
        EXPECT_EQ(folder.Read(path), content);
        EXPECT_EQ(folder.Read(path + ".size"), std::to_string(size));
    }
    const TOLV::FileGetter again("dd", "kvn2_tmp\\dd");
    EXPECT_TRUE(again.IsDone() && again.IsComplete());
    EXPECT_EQ(support::TakeMessages(), "> Already have dream file, so using local copy.\n");
    EXPECT_EQ(folder.Read("_error.txt"), "");
}

TEST_F(FileGetterTest, TwoTransfersOfOneDreamDoNotShareTheFile) {
    const std::string content = Content(40);
    auto first = std::make_unique<TOLV::FileGetter>("dd", "kvn2_tmp\\dd");
    ASSERT_TRUE(peer.Accept() && peer.Send("10 \n"));
    (void)peer.ReadLine();
    // Byte by byte, as a slow server sends.
    for (const char c : Reply(40, 30) + Block(content, 0, 30)) {
        ASSERT_TRUE(peer.Send(std::string(1, c)));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(peer.ReadLine(), "PKOK 0\n");
    TOLV::FileGetter second("DD", "kvn2_tmp\\DD");
    { const TOLV::FileGetter third("dd", "kvn2_tmp\\dd"); }
    ASSERT_TRUE(peer.Send(Block(content, 1, 30)));
    EXPECT_EQ(peer.ReadLine(2), "PKOK 1\nBYE\n");
    ASSERT_TRUE(support::WaitFor([&] { return first->IsComplete(); }));
    EXPECT_FALSE(second.IsDone());
    first.reset();
    EXPECT_TRUE(support::WaitFor([&] { return second.IsComplete(); }));
    EXPECT_EQ(folder.Read(path), content);
}

TEST_F(FileGetterTest, Failures) {
    const std::string content = Content(100);
    // The server's answer, the error log, the messages, the acknowledgements.
    std::vector<std::array<std::string, 4>> rows = {
        {Reply(100, 60) + "XC" + std::string(58, ' '),
         "Non-data block recieved while downloading file... aborting.\n" + deleted, begun + "> FAILED\n", ""},
        {Reply(100, 60) + Block(content, 1, 60) + Block(content, 0, 60),
         "Out of order data block received from file server... aborting. (I know, I should handle this better.... later!)\n" +
             deleted,
         begun + "> FAILED\n", ""},
        {Reply(100, 60) + Block(content, 0, 60) + cut, "Lost connection to file server...\n" + deleted,
         begun + "> Lost connection to file server.\n", "PKOK 0\n"},
    };
    for (const char* const refusal :
         {"045 100 0 60\n", "044 100 0 60\n", "\n", "44 100 60\n", "44 0 0 60\n", "44 -5 0 60\n", "44 x 0 60\n",
          "44 100 0 10\n", "44 100 0 -60\n", "44 100 0 1048577\n", "44 536870913 0 60\n", "44 99999999999999 0 60\n"})
        rows.push_back(
            {refusal, "Anomolous response recieved to RC request.\n" + notDeleted, accepted + "> FAILED\n", ""});
    for (const auto& [answer, log, messages, acknowledged] : rows) {
        support::ClearErrorLog();
        EXPECT_FALSE(Transfer(answer, acknowledged));
        EXPECT_EQ(folder.Read("_error.txt") + support::TakeMessages(), log + messages) << answer;
        EXPECT_FALSE(folder.Has(path));
    }
    for (const std::string& bad : {std::string("10\n"), std::string("100 hello\n"), std::string(70000, '1')}) {
        support::ClearErrorLog();
        EXPECT_FALSE(Transfer("", "", bad.c_str()));
        EXPECT_EQ(folder.Read("_error.txt"),
                  "Anomolous message recieved in response to file server connect.\n" + notDeleted);
        EXPECT_EQ(support::TakeMessages(), "> FAILED\n");
    }
    for (const char* const noted : {"", "4", "x3", "-3"}) {
        folder.Write(path, "old");
        folder.Write(path + ".size", noted);
        EXPECT_FALSE(Transfer("99 no\n")) << "a copy with the size " << noted << " must not be used";
    }
}

TEST_F(FileGetterTest, WithoutAConnectionOnlyALocalCopyHelps) {
    const auto unresolved = [](const std::string& host) {
        return "Unable to resolve host \"" + host + "\" port 0\nFailed to connect to tolv file server.\n";
    };
    folder.Write("data/tolvfile_ip.txt", "");
    const auto none = std::make_unique<TOLV::FileGetter>("dd", "kvn2_tmp\\dd");
    EXPECT_TRUE(none->IsDone() && !none->IsComplete());
    folder.Write(path, "old");
    folder.Write(path + ".size", "3");
    std::filesystem::remove("data/tolvfile_ip.txt");
    EXPECT_TRUE(TOLV::FileGetter("dd", "kvn2_tmp\\dd").IsComplete());
    EXPECT_EQ(folder.Read(path) + folder.Read("_error.txt"),
              "old" + unresolved("") +
                  "Failed to load tolv's file-server ip and port from \\data\\tolvfile_ip.txt file.\n" +
                  unresolved("Failed to load"));
}

TEST_F(FileGetterTest, WithoutAThreadATransferFailsAtOnce) {
    // First the connection's receiver does not start, then the getter's own thread.
    static int startsLeft = 0;
    for (const int refused : {0, 1}) {
        startsLeft = refused;
        platform::SetThreadStarter([](std::thread& out, void (*entry)(void*), void* argument) {
            if (startsLeft-- == 0) return false;
            out = std::thread(entry, argument);
            return true;
        });
        const TOLV::FileGetter getter("dd", "kvn2_tmp\\dd");
        platform::SetThreadStarter(nullptr);
        EXPECT_TRUE(getter.IsDone() && !getter.IsComplete()) << refused;
    }
}

TEST_F(FileGetterTest, AFullDiskIsNoCompleteDownload) {
    // A limit on the size of files stands for the full disk; it cuts the network log as well.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    // The small file fails when it is closed, the large one when it is written.
    for (const std::size_t size : {2500, 9000}) {
        support::ClearErrorLog();
        const rlimit small{2000, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        EXPECT_FALSE(Transfer(Reply(size, size + 10) + Block(Content(size), 0, size + 10)));
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(folder.Read("_error.txt"), "Failed to write downloaded data to the output file.\n" + deleted);
        EXPECT_EQ(support::TakeMessages(), begun + "> FAILED\n");
    }
}

}  // namespace
