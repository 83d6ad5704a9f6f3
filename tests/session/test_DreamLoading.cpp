#include "session/DreamLoading.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "demo/formats/ArchiveWriter.h"
#include "demo/formats/MapWriter.h"
#include "formats/TolvMap.h"
#include "platform/MessageBox.h"
#include "session/SessionFixture.h"

namespace {

using platform::BoxAnswer;
using support::Data;
using support::TakeMessages;

std::string boxes;
BoxAnswer answer = BoxAnswer::No;

BoxAnswer AnswerBox(const std::string& text, const std::string& caption, platform::BoxKind kind, bool owned) {
    boxes += caption + ": " + text + (kind == platform::BoxKind::YesNo && owned ? "?" : "!");
    return answer;
}

struct DreamLoadingTest : support::SessionTest {
    DreamLoadingTest() {
        boxes.clear();
        folder.Write("data/tolvfile_ip.txt", "127.0.0.1\n" + std::to_string(fileServer.Port()));
        Connect(TolvSession::Default());
    }
    ~DreamLoadingTest() override {
        while (!Data().GetTransfers().empty())
            Data().EndTransfer(Data().GetTransfers().front());
        TolvSession::Default().SetNetClient(nullptr);
        TolvSession::Default().SetWorldPort(nullptr);
        platform::SetMessageBoxHandler(before);
    }
    // A local copy of a dream of one file.
    void PutDream(const std::string& name, const std::string& file) {
        const std::string archive =
            demo::WriteArchive({{file, demo::ArchiveMethod::Plain, demo::WriteMap(demo::MapDrawing(2, 2))}});
        folder.Write("kvn2_tmp/" + name + "/" + name + ".dream", archive);
        folder.Write("kvn2_tmp/" + name + "/" + name + ".dream.size", std::to_string(archive.size()));
    }

    support::LoopbackPeer fileServer;
    platform::MessageBoxHandler before = platform::SetMessageBoxHandler(&AnswerBox);
};

const std::string localCopy = "> Already have dream file, so using local copy.\n";
const std::string loading = "> Decompressing dream...\n> Loading dream...\n";
const std::string aborted = ">  Error loading dream... sequence aborted.\n";
const std::string question =
    "Erp: Dream download failed.  Reset to tessaly island?\n"
    "(If you choose no, you may be temporarily stuck in the dream)?";

TEST_F(DreamLoadingTest, TheNewestDoneDreamLoadsFirstOneAFrame) {
    PutDream("one", "default.map");
    PutDream("two", "other.map");
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
}

TEST_F(DreamLoadingTest, FailuresOfEveryKindAskThePlayer) {
    folder.Write("kvn2_tmp/broken/broken.dream", "no archive");
    folder.Write("kvn2_tmp/broken/broken.dream.size", "10");
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
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(Data().StartDreamTransfer("dd", "kvn2_tmp\\dd"));
    Data().EndTransfer({TransferKind::Portrait, TransferDirection::Upload, "dd", nullptr});
    EXPECT_EQ(support::ErrorLogWithoutStacks(),
              "Error: Too many file transfers at once, so another one is refused: dd\n"
              "Attempt to end a transfer that doesn't exist.\n  -transfer type: upload portrait\n"
              "  -transfer ID: dd\n  -call stack:\n\n");
    EXPECT_EQ(Data().GetTransfers().size(), 16U);
}

}  // namespace
