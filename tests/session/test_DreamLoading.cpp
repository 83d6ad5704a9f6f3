#include "session/DreamLoading.h"

#include <gtest/gtest.h>

#include <vector>

#include "net/NetClient.h"
#include "platform/MessageBox.h"
#include "session/SessionFixture.h"
#include "session/TolvDataManager.h"
#include "session/TolvSession.h"
#include "support/LoopbackPeer.h"
#include "support/TestFolder.h"

namespace {

using platform::BoxAnswer;
using support::TakeMessages;

TolvDataManager& Data() {
    return TolvDataManager::Default();
}

std::string boxes;
BoxAnswer answer = BoxAnswer::No;

BoxAnswer AnswerBox(const std::string& text, const std::string& caption, platform::BoxKind kind, bool owned) {
    boxes += caption + ": " + text + (kind == platform::BoxKind::YesNo && owned ? "?" : "!");
    return answer;
}

// An archive of one plain file.
std::string Archive(const std::string& name, std::string content) {
    std::string archive = "FR01" + std::string(24, '\0') + "FZ" + name + std::string(48 - name.size(), '\0');
    for (const std::size_t number : {content.size(), std::size_t{0}, std::size_t{1}})
        for (unsigned shift = 0; shift < 32; shift += 8)
            archive += static_cast<char>(number >> shift);
    for (char& c : content)
        c = static_cast<char>(~c);
    return archive + content;
}

struct DreamLoadingTest : testing::Test {
    DreamLoadingTest() {
        TakeMessages();
        boxes.clear();
        folder.Write("data/tolvfile_ip.txt", "127.0.0.1\n" + std::to_string(fileServer.Port()));
        TolvSession::Default().SetNetClient(&client);
        TolvSession::Default().SetWorldPort(&world);
        EXPECT_TRUE(client.Connect("127.0.0.1", game.Port()) && game.Accept());
    }
    ~DreamLoadingTest() override {
        while (!Data().GetTransfers().empty())
            Data().EndTransfer(Data().GetTransfers().front());
        TolvSession::Default().SetNetClient(nullptr);
        TolvSession::Default().SetWorldPort(nullptr);
        platform::SetMessageBoxHandler(before);
    }
    void PutDream(const std::string& name, const std::string& archive) {
        folder.Write("kvn2_tmp/" + name + "/" + name + ".dream", archive);
        folder.Write("kvn2_tmp/" + name + "/" + name + ".dream.size", std::to_string(archive.size()));
    }

    support::TestFolder folder;
    support::LoopbackPeer game;
    support::LoopbackPeer fileServer;
    NET::Client client;
    support::RecordingWorld world;
    platform::MessageBoxHandler before = platform::SetMessageBoxHandler(&AnswerBox);
};

const std::string localCopy = "> Already have dream file, so using local copy.\n";
const std::string loading = "> Decompressing dream...\n> Loading dream...\n";
const std::string aborted = ">  Error loading dream... sequence aborted.\n";
const std::string question =
    "Erp: Dream download failed.  Reset to tessaly island?\n"
    "(If you choose no, you may be temporarily stuck in the dream)?";

TEST_F(DreamLoadingTest, TheNewestDoneDreamLoadsFirstOneAFrame) {
    PutDream("one", Archive("default.map", support::SmallMapFile()));
    PutDream("two", Archive("other.map", support::SmallMapFile()));
    EXPECT_TRUE(Data().StartDreamTransfer("two", "kvn2_tmp\\two"));
    EXPECT_TRUE(Data().StartDreamTransfer("one", "kvn2_tmp\\one"));
    EXPECT_FALSE(Data().StartDreamTransfer("busy", "kvn2_tmp\\busy"));
    UpdateTransfers();
    EXPECT_EQ(TakeMessages(), localCopy + localCopy + loading + "> Dream load succeeded.\n");
    EXPECT_EQ(game.ReadLine(), "vascodagama\n");
    EXPECT_EQ(world.calls, "graphics kvn2_tmp\\one\\\n");
    EXPECT_EQ(TolvMap::Current().GetFloor(0, 4), 0);
    EXPECT_EQ(Data().GetTransfers().size(), 2U);
    EXPECT_EQ(boxes, "");

    answer = BoxAnswer::No;
    UpdateTransfers();
    EXPECT_EQ(TakeMessages(), loading + aborted);
    EXPECT_EQ(boxes, question);
    EXPECT_EQ(game.ReadLine(), "vascodagama\n");
    UpdateTransfers();
    EXPECT_EQ(Data().GetTransfers().size(), 1U);
    EXPECT_TRUE(folder.Has("kvn2_tmp/one/one.dream") && folder.Has("kvn2_tmp/two/two.dream"));
}

TEST_F(DreamLoadingTest, FailuresOfEveryKindAskThePlayer) {
    PutDream("broken", "no archive");
    answer = BoxAnswer::Yes;
    std::vector<std::pair<std::string, std::string>> rows = {
        {"broken", localCopy + "> Decompressing dream...\n" + aborted}};
    for (const char* const refused : {"", "..\\up", "../up", "a\\b", ".", "..", "c:up", "up\t", "up."})
        rows.emplace_back(refused, aborted);
    for (const auto& [name, messages] : rows) {
        boxes.clear();
        EXPECT_TRUE(Data().StartDreamTransfer(name, "kvn2_tmp\\" + name));
        UpdateTransfers();
        EXPECT_EQ(TakeMessages(), messages) << name;
        EXPECT_EQ(boxes, question);
        EXPECT_EQ(game.ReadLine(), "goback\n");
    }
}

TEST_F(DreamLoadingTest, EndingTransfers) {
    for (int i = 0; i < 16; ++i)
        EXPECT_FALSE(Data().StartDreamTransfer("dd", "kvn2_tmp\\dd"));
    support::ClearErrorLog();
    EXPECT_TRUE(Data().StartDreamTransfer("dd", "kvn2_tmp\\dd"));
    Data().EndTransfer({TransferKind::Portrait, TransferDirection::Upload, "dd", nullptr});
    EXPECT_EQ(support::ErrorLogWithoutStacks(),
              "Error: Too many file transfers at once, so another one is refused: dd\n"
              "Attempt to end a transfer that doesn't exist.\n  -transfer type: upload portrait\n"
              "  -transfer ID: dd\n  -call stack:\n\n");
    EXPECT_EQ(Data().GetTransfers().size(), 16U);
}

}  // namespace
