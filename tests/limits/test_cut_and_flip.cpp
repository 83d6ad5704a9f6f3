// Every reader of foreign bytes against small damage: see support/CutAndFlip.h.

#include <gtest/gtest.h>

#include <filesystem>

#include "demo/formats/ArchiveWriter.h"
#include "demo/formats/ByteWriter.h"
#include "demo/formats/LzwEncoder.h"
#include "demo/formats/MapWriter.h"
#include "demo/formats/PcxWriter.h"
#include "demo/formats/SpriteWriter.h"
#include "formats/DreamArchive.h"
#include "formats/Lzw.h"
#include "formats/Palette.h"
#include "formats/SpriteArchive.h"
#include "formats/TolvMap.h"
#include "fuzz/GetterFeeder.h"
#include "graphics/device/ImageLoader.h"
#include "graphics/model/GBBone.h"
#include "graphics/model/GBMesh.h"
#include "platform/Caps.h"
#include "platform/ImageCodec.h"
#include "platform/MessageBox.h"
#include "session/LineFramer.h"
#include "session/PlayerData.h"
#include "session/ServerAddress.h"
#include "session/SessionFixture.h"
#include "support/CutAndFlip.h"
#include "support/ScriptedFoundation.h"
#include "world/ItemTable.h"

namespace {

using support::CutAndFlip;

platform::BoxAnswer AnswerNo(const std::string&, const std::string&, platform::BoxKind, bool) {
    return platform::BoxAnswer::No;
}

struct Damaged : testing::Test {
    ~Damaged() override { platform::SetMessageBoxHandler(before); }
    // A reader of a file, which is given the bytes under this name.
    template <typename Read>
    auto FromFile(const std::string& name, Read read) {
        return [this, name, read](std::string_view bytes) {
            folder.Write(name, std::string(bytes));
            return read();
        };
    }

    support::TestFolder folder;
    platform::MessageBoxHandler before = platform::SetMessageBoxHandler(&AnswerNo);
};

bool NoCut(std::size_t) {
    return false;
}

TEST_F(Damaged, LzwStream) {
    const auto decode = [](std::string_view bytes) {
        std::string out;
        LzwDecode(bytes, out, 1U << 20);
        return out.size() <= 1U << 20;
    };
    CutAndFlip({"lzw", demo::LzwEncode("abcabcabcabcaaaaaaaa"), decode, [](std::size_t) { return true; }, 0});
}

TEST_F(Damaged, DreamArchive) {
    using demo::ArchiveMethod;
    const std::vector<demo::ArchiveEntry> entries = {{"a.txt", ArchiveMethod::Plain, "abc"},
                                                     {"s\\b.txt", ArchiveMethod::Lzw, std::string(60, 'b')}};
    std::string archive = demo::ArchiveHeader();
    std::vector<std::size_t> ends;
    for (auto last = entries.begin(); last != entries.end(); ++last) {
        ends.push_back(archive.size());
        archive = demo::WriteArchive({entries.begin(), last + 1});
    }
    const auto unpack = [] {
        const bool walked = UnpackDreamArchive("dream\\a.arc");
        std::filesystem::remove_all("dream");
        return walked;
    };
    const auto accepts = [&](std::size_t length) {
        return (length >= 4 && length <= ends[0]) || std::find(ends.begin(), ends.end(), length) != ends.end();
    };
    CutAndFlip({"archive", archive, FromFile("dream/a.arc", unpack), accepts});
    // The buffer of bzip2 entries is too dear to do all of it again.
    const std::string packed = demo::WriteArchive({{"c.txt", ArchiveMethod::Bzip2, "cc"}});
    CutAndFlip({"bzip2", packed, FromFile("dream/a.arc", unpack), {}, 1, false, false, false});
}

TEST_F(Damaged, Map) {
    const std::string file = demo::WriteMap(demo::MapDrawing(3, 2));
    const std::size_t sized = std::max(file.find("width=3"), file.find("height=2") + 1) + 7;
    const auto accepts = [&](std::size_t length) { return length >= sized; };
    CutAndFlip({"map", file, [](std::string_view bytes) { return TolvMap().LoadMapBytes(bytes, "m"); }, accepts, 4});
    CutAndFlip({"map header", "MAP V01.10 Tolvarin\nwidth=3\nencoded=0\nheight=2",
                [](std::string_view bytes) { return TolvMap().LoadMapBytes(bytes, "m"); }, NoCut, 4, true, true});
}

TEST_F(Damaged, SpriteArchives) {
    const demo::IndexedImage image{2, 2, {1, 2, 3, 4}};
    const auto tsh = [](std::string_view bytes) {
        SpriteArchive archive;
        return LoadTshBytes(archive, bytes, "s");
    };
    const auto ts2 = [](std::string_view bytes) {
        SpriteArchive archive;
        return LoadTs2Bytes(archive, bytes, "s", 0);
    };
    // The images before the end are kept; each row of a ts2 image that the end takes is told.
    CutAndFlip(
        {"tsh", demo::WriteTsh({image, image, image}), tsh, [](std::size_t n) { return n > 0; }, 1, false, true});
    CutAndFlip(
        {"ts2", demo::WriteTs2({{1, image}, {3, image}}), ts2, [](std::size_t n) { return n >= 8; }, 3, false, true});
}

TEST_F(Damaged, PalettesAndColors) {
    const auto quiet = [] { return support::ErrorLogText().empty(); };
    const auto palette = [&] { return LoadPcxPalette("p.pcx"), quiet(); };
    CutAndFlip({"palette", std::string(770, 'p'), FromFile("p.pcx", palette), [](std::size_t n) { return n >= 768; }, 1,
                false, false, false});
    ColorNames names;
    const auto nameList = [&] { return LoadColorNames(names), quiet(); };
    CutAndFlip(
        {"color names", "red 1 2 3\nblue 4 5 60\nEnd", FromFile("data/colors/colors.txt", nameList), NoCut, 1, true});
    names = {{"red", {}}, {"blue", {}}};
    const auto numbers = [&] {
        ColorTable table;
        return LoadColorNumbers("f", names, table), quiet();
    };
    CutAndFlip({"color numbers", "3 red\n14 blue\n-1", FromFile("f", numbers), NoCut, 2, true});
}

TEST_F(Damaged, SmallTextFiles) {
    const auto player = [] { return LoadPlayerIni("ab.ini"); };
    CutAndFlip({"player file", "V1.6\nName=Ab\nPassword=p\nColors=#SA\nDesc=d\nSpec=12", FromFile("ab.ini", player),
                NoCut, 2, true});
    const auto address = [] {
        std::string host;
        int port = 0;
        return ReadServerAddress("ip.txt", host, port);
    };
    CutAndFlip(
        {"address", "127.0.0.1\n6500\n", FromFile("ip.txt", address), [](std::size_t) { return true; }, 0, true});
}

TEST_F(Damaged, Images) {
    const std::vector<std::uint32_t> argb{0xFF102030, 0x80405060, 0x00708090, 0x12345678};
    ASSERT_TRUE(platform::WritePng("made.png", argb.data(), 2, 2));
    demo::ByteWriter bmp;
    bmp.Bytes("BM").U32(70).U32(0).U32(54).U32(40).U32(2).U32(2).U16(1).U16(24).U32(0).U32(16).Zeros(16).Zeros(16);
    const auto load = [] { return LoadedImage().Load("image"); };
    for (const auto& [name, bytes] : {std::pair("png", folder.Read("made.png")),
                                      {"bmp", bmp.Str()},
                                      {"pcx", demo::WritePcx(2, 2, {1, 2, 3, 4}, {})}})
        CutAndFlip({name, bytes, FromFile("image", load), {}, 2});
}

// The models have tests of their own, in tests/graphics.
TEST_F(Damaged, ItemTable) {
    const support::ScriptedFoundation foundation;
    const std::vector<std::uint32_t> argb(4, 0xFFFFFFFF);
    for (const char* const name : {"placeholder", "lamp"})
        folder.Write(std::string("data/items/") + name + ".mbm",
                     "Mesh { Name { tri } Chunk { TextureB { 0 t.png } Indices { 3 0 0 0 } Vertices { PNT2 1 "
                     "0 0 0 0 0 1 0 0 } } } Bone { Mesh { tri } }");
    ASSERT_TRUE(platform::WritePng("data\\items\\t.png", argb.data(), 2, 2));
    const auto load = [] {
        ItemTable table;
        table.Load();
        const bool filled = table.Size() > 0;
        table = ItemTable();
        G::EmptyModelRegistry();
        return filled;
    };
    CutAndFlip({"item table", "12\n7 lamp.mbm t.png t.png\n11 lamp.mbm", FromFile("data/items/items.txt", load),
                [](std::size_t n) { return n > 0; }, 8, true});
    EXPECT_EQ(G::LiveBones(), 0U);
    G::DestroyModelBones();
}

struct DamagedTraffic : support::SessionTest {
    DamagedTraffic() { folder.Write("data/tolvfile_ip.txt", "127.0.0.1\n1\n"); }  // where nobody listens
    ~DamagedTraffic() override {
        while (!support::Data().GetTransfers().empty())
            support::Data().EndTransfer(support::Data().GetTransfers().front());
        support::TakeMessages();
    }
};

// Lines are not refused; what they did stays. As many transfers as may be are under way, so that no more begin.
TEST_F(DamagedTraffic, ServerLines) {
    folder.Write("m.map", demo::WriteMap(demo::MapDrawing(2, 2)));
    folder.Write("patches/default/day.pcx", std::string(768, '\3'));
    for (std::size_t i = 0; i < caps::transfers; ++i)
        (void)support::Data().StartDreamTransfer("dd", "kvn2_tmp\\dd");
    TolvSession session;
    Connect(session);
    for (const char* const line : {"END\n", "&&&&&&&&&&&&&\n"}) {
        ASSERT_TRUE(game.Send(line) && support::WaitFor([&] { return client.PendingBytes() > 0; }));
        session.PollServer();
    }
    const auto handle = [&](std::string_view bytes) {
        LineFramer().Feed(bytes, [&](std::string_view line) { session.HandleServerLine(line); });
        support::Data().ClearCharacters();
        support::Data().ClearMarkers();
        support::TakeMessages();
        return true;
    };
    CutAndFlip({"server lines",
                ";m.map\n(hello\n[note\n@ ! !\n1 ! !\"\"\n> ! !\"\"\n<!!!!!!!!!! ! ! !\n/!!!!!!!!!! ! ! ! ! !\n"
                ") ! !\n]ccday.pcx\n]s ! !xxlabel second\n]t ! !\n]q dd more\nNope.\n",
                handle,
                {},
                8});
}

TEST_F(DamagedTraffic, FileServerReplies) {
    TOLV::FileGetter getter("dd", "kvn2_tmp\\dd");
    TOLV::FileGetterFeeder feeder(getter);
    const std::string block("SC\0\0\0\0????0123456789", 20);
    const auto feed = [&](std::string_view bytes) {
        feeder.Feed(bytes);
        support::TakeMessages();
        return getter.IsComplete();
    };
    // A cut is waited for, as the rest may come yet.
    CutAndFlip({"replies", "10 hello\n44 16 0 20\n" + block + std::string("SC\1\0\0\0????0123456789", 20), feed, NoCut,
                1, false, true});
}

}  // namespace
