// Every cap of platform/Caps.h: at it the thing works, in time and memory that are stated here; past it by one it is
// refused with its message. Each half runs in a process of its own, whose time and peak memory it prints.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>

#include "demo/formats/ArchiveWriter.h"
#include "demo/formats/ByteWriter.h"
#include "demo/formats/MapWriter.h"
#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "formats/DreamArchive.h"
#include "formats/Palette.h"
#include "formats/SpriteArchive.h"
#include "formats/TolvMap.h"
#include "graphics/model/GBMesh.h"
#include "graphics/model/GBMesh_BMBM.h"
#include "platform/Caps.h"
#include "platform/FileSystem.h"
#include "platform/ImageCodec.h"
#include "platform/ShaderCompiler.h"
#include "session/PlayerData.h"
#include "session/ServerAddress.h"
#include "session/SessionFixture.h"
#include "support/ScriptedFoundation.h"
#include "world/ItemTable.h"

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

using Size = std::uint64_t;

struct Row {
    const char* cap;
    double seconds;
    long mib;                        // of the whole process, which takes some 30 for itself
    const char* refusal;             // in the error log
    std::function<bool(Size)> take;  // false: refused
};

void Put(const std::string& name, const std::string& bytes) {
    std::filesystem::create_directories("data/items");
    std::ofstream(name, std::ios::binary) << bytes;
    platform::ForgetListings();
}

// A file that begins with these bytes; the rest are zeros that take no room on the disk.
std::string Sparse(Size size, const std::string& bytes) {
    Put("f.tsh", bytes);
    std::filesystem::resize_file("f.tsh", size);
    return "f.tsh";
}

std::string Repeated(const std::string& text, Size count) {
    std::string all;
    while (count-- > 0)
        all += text;
    return all;
}

std::string Padded(std::string text, Size size) {
    text.resize(size, ' ');
    return text;
}

bool Logged(const char* text) {
    return support::ErrorLogText().find(text) != std::string::npos;
}

bool LoadsMap(const std::string& header) {
    return TolvMap().LoadMapBytes("MAP V01.10 Tolvarin\n" + header + "\nBODY\n", "m");
}

bool Unpacks(Size count, std::uint32_t method, const std::string& stored) {
    std::string archive = demo::ArchiveHeader();
    for (Size i = 0; i < count; ++i)
        archive +=
            demo::ArchiveEntryHeader("e" + std::to_string(i), static_cast<std::uint32_t>(stored.size()), method) +
            stored;
    Put("a.arc", archive);
    return UnpackDreamArchive("a.arc");
}

bool UnpacksWhole(demo::ArchiveMethod method, Size size) {
    std::filesystem::remove("e0");
    const std::string stored = demo::StoredData(method, std::string(size, 'b'));
    return Unpacks(1, static_cast<std::uint32_t>(method), stored) && FileSize("e0") == size;
}

// Images of no pixels, each of as many rows as it can have.
bool LoadsRows(Size rows) {
    demo::ByteWriter bytes;
    const auto count = static_cast<unsigned>((rows + 254) / 255);
    bytes.U16(count).Zeros(std::size_t{2} * count);
    for (; rows > 0; rows -= std::min<Size>(rows, 255))
        bytes.U8(0).U8(static_cast<unsigned>(std::min<Size>(rows, 255))).U16(0);
    SpriteArchive archive;
    return LoadTshBytes(archive, bytes.Str(), "s") && archive.images.back();
}

bool LoadsColors(Size size) {
    ColorTable table;
    Put("colors", Padded(Repeated("0 x ", size / 4 - 1), size - 3) + " -1");
    LoadColorNumbers("colors", {{"red", {}}}, table);
    return !Logged("Failed to open colors") && !Logged("Error in file colors");
}

std::string Bmp(Size side) {
    const auto wide = static_cast<std::uint32_t>(side);
    demo::ByteWriter bytes;
    bytes.Bytes("BM").U32(0).U32(0).U32(1078).U32(40).U32(wide).U32(wide).U16(1).U16(8);
    return bytes.Zeros(24).Zeros(1024).Str();
}

bool LoadsModel(const std::string& text) {
    Put("m.mbm", text);
    const support::ScriptedFoundation foundation;
    G::Mesh model;
    const bool loaded = model.Load("m.mbm", false, false, true);
    model.Release();
    G::EmptyModelRegistry();
    G::DestroyModelBones();
    return loaded;
}

bool LoadsMesh(const std::string& constructs) {
    return LoadsModel("Mesh { Name { m } " + constructs + "} Bone { Name { b } Mesh { m } }\n");
}

bool LoadsVertices(Size size) {
    const std::string vertex = "0 0 0 0 0 1 0 0 ";
    const Size count = size / vertex.size() - 20;
    const std::string numbers = std::to_string(count) + " " + Repeated(vertex, count);
    const std::string mesh = "Mesh { Name { m } Chunk { Vertices { PNT2 " + numbers + "} Indices { 3 0 1 2 } } } ";
    return LoadsModel(Padded(mesh + "Bone { Name { b } Mesh { m } }", size));
}

// A chain, so that the tree is as deep as it has bones.
bool LoadsBones(Size count) {
    std::string text;
    for (Size i = 1; i <= count; ++i)
        text += "Bone { Name { " + std::to_string(i) + " } " +
                (i < count ? "Child { " + std::to_string(i + 1) + " } }\n" : "}\n");
    return LoadsModel(text);
}

bool LoadsCache(Size size) {
    (void)LoadsModel("RandomID { 0.5 } Bone { Name { b } }\n");
    std::filesystem::resize_file("gen/m.bmbm", size);
    platform::ForgetListings();
    const support::ScriptedFoundation foundation;
    G::ModelHeader header;
    return G::LoadMeshBMBM("gen\\m.bmbm", false, header);
}

bool LoadsItems(const std::string& list) {
    Put("data/items/items.txt", list);
    const support::ScriptedFoundation foundation;
    ItemTable table;
    table.Load();
    return table.Size() > 0 && !Logged("as the max number");
}

bool LoadsVolume(const std::string& list) {
    const std::uint32_t texel = 0;
    (void)platform::WritePng("t.png", &texel, 1, 1);
    Put("v.t3d", list);
    const support::ScriptedFoundation foundation;
    return DXG::Texture().Load("v.t3d", DXG::TextureType::AsFile, false, false);
}

// Whether the compiler gets to see it and comes back; what it says of it is not asked.
bool SeesShader(const std::string& before, const std::string& statements) {
    platform::CompiledShader shader;
    std::string messages;
    const std::string main = "float4 main(float4 c : COLOR) : COLOR { float4 r = c; " + statements + " return r; }";
    (void)platform::CompileShader(before + main, "s", "main", "ps_2_a", shader, messages);
    const char* const refusals[] = {"nested too deeply", "is larger than", "expand to too much", "broke down"};
    return std::none_of(std::begin(refusals), std::end(refusals),
                        [&](const char* refusal) { return messages.find(refusal) != std::string::npos; });
}

bool HoldsCharacters(Size count) {
    Character character;
    for (; character.gx < static_cast<int>(count); ++character.gx)
        support::Data().MoveCharacter(character.gx, 0, character);
    return support::Data().GetCharacters().size() == count;
}

bool HoldsMarkers(Size count) {
    for (Size i = 0; i < count; ++i)
        support::Data().AddMarker({});
    return support::Data().GetMarkers().size() == count;
}

bool HoldsMessages(Size count, const std::string& first) {
    std::string oldest;
    MessageQueue queue;
    for (Size i = 0; i < count; ++i)
        queue.Post(i == 0 ? first : "another");
    return queue.Pop(oldest) && oldest == first;
}

bool HoldsLog(Size size) {
    LogFile log("full.txt", false);
    std::filesystem::resize_file("full.txt", size - 2);
    log.Write("x");
    return FileSize("full.txt") == size - 1;
}

bool LoadsImage(const std::string& path) {
    platform::ImagePixels pixels;
    return platform::DecodeImageFile(path, pixels) == platform::ImageStatus::Ok;
}

bool LoadsSprites(const std::string& path) {
    SpriteArchive archive;
    return LoadTsh(archive, path);
}

bool ReadsAddress(const std::string& path) {
    std::string host;
    int port = 0;
    return ReadServerAddress(path, host, port);
}

// One entry of an unknown method, which is passed over.
bool WalksArchive(Size size) {
    const auto stored = static_cast<std::uint32_t>(size) - 90;
    return UnpackDreamArchive(Sparse(size, demo::ArchiveHeader() + demo::ArchiveEntryHeader("x", stored, 3)));
}

std::string MapOfSide(Size cells) {
    const auto side = static_cast<Size>(std::ceil(std::sqrt(static_cast<double>(cells))));
    return "height=1\nwidth=" + std::to_string((side + 1) / 2 - 1);
}

const std::string smallMap = demo::WriteMap(demo::MapDrawing(2, 2));
const std::string player = "V1.6\nName=A\nPassword=p\nColors=c\nSpec=12\nDesc=d";
const std::string address = "127.0.0.1\n1\n";
constexpr const char* badMap = "map dimensions loaded from file are bad: ";
constexpr const char* badVolume = "There was a problem loading 3D texture file: v.t3d";

const Row rows[] = {
    {"mapBytes", 1, 150, "Failed to load tolv .map file",
     [](Size n) { return TolvMap().LoadMap(Sparse(n, smallMap)); }},
    {"mapGridCells", 2, 450, badMap, [](Size n) { return LoadsMap(MapOfSide(n)); }},
    {"mapHeaderLineBytes", 1, 50, badMap, [](Size n) { return LoadsMap("height=2\n" + Padded("width=2", n)); }},
    {"archiveBytes", 6, 560, "Unable to begin decompression of file", &WalksArchive},
    {"archiveEntries", 6, 50, "Error in file entry header", [](Size n) { return Unpacks(n, 1, "x"); }},
    {"entryBytes", 5, 350, "Error: lzw data decodes to more than 67108864 bytes.",
     [](Size n) { return UnpacksWhole(demo::ArchiveMethod::Lzw, n); }},
    {"entryBytes", 5, 350, "No decompressed data generated for file: e0",
     [](Size n) { return UnpacksWhole(demo::ArchiveMethod::Bzip2, n); }},
    {"unpackedBytes", 1, 50, "Error: too much data unpacked from dream file",
     [](Size n) { return Unpacks((n - 1) / caps::entryBytes + 1, 2, "damaged"); }},
    {"spriteArchiveBytes", 1, 200, "Unable to open f.tsh to load TSH data",
     [](Size n) { return LoadsSprites(Sparse(n, "")); }},
    {"spriteRows", 1, 120, "Warning: EOF hit, but only 4096 of the 4097 images were loaded", &LoadsRows},
    {"colourFileBytes", 2, 50, "Failed to open colors to load color indices from", &LoadsColors},
    {"playerFileBytes", 1, 50, "Failed to open player ini file",
     [](Size n) { return LoadPlayerIni(Sparse(n, player)); }},
    {"noteBytes", 1, 50, "", [](Size n) { return ReadsAddress(Sparse(n, address)); }},
    {"itemNumbers", 1, 120, "as the max number, but no map has more than 65535",
     [](Size n) { return LoadsItems(std::to_string(n)); }},
    {"itemTableBytes", 5, 900, "Failed to load item table",
     [](Size n) { return LoadsItems(Padded("1\n" + Repeated("x\n", n / 2 - 1), n)); }},
    {"modelTextBytes", 10, 900, "Failed to open file: m.mbm", &LoadsVertices},
    {"modelCacheBytes", 2, 260, "Could not open file \"gen\\m.bmbm\" for LoadMeshBMBM", &LoadsCache},
    {"modelBones", 3, 60, "Error parsing mesh: more than 2048 bones", &LoadsBones},
    {"modelMeshes", 2, 60, "Error parsing mesh: more than 2048 meshes",
     [](Size n) { return LoadsMesh(Repeated("} Mesh { Name { n } ", n - 1)); }},
    {"modelChunks", 3, 250, "Error parsing mesh: more than 4096 chunks",
     [](Size n) { return LoadsMesh(Repeated("Chunk { } ", n)); }},
    {"modelTextures", 5, 60, "Error parsing mesh: more than 4096 textures",
     [](Size n) { return LoadsMesh("Chunk { " + Repeated("TextureB { 0 x.png } ", n) + "} "); }},
    {"modelTokenBytes", 1, 50, "Error parsing mesh: a word of 1025 characters is too long",
     [](Size n) { return LoadsModel("Bone { Name { " + std::string(n, 'n') + " } }\n"); }},
    {"imageFileBytes", 4, 350, "", [](Size n) { return LoadsImage(Sparse(n, Bmp(1))); }},
    {"imageSide", 3, 550, "", [](Size n) { return LoadsImage(Sparse(1078 + n * n, Bmp(n))); }},
    {"volumeListBytes", 1, 50, badVolume, [](Size n) { return LoadsVolume(Padded("t.png t.png", n)); }},
    {"volumeLayers", 3, 50, badVolume, [](Size n) { return LoadsVolume(Repeated("t.png ", n)); }},
    {"shaderBytes", 1, 100, "", [](Size n) { return SeesShader(Padded("//", n - 67) + "\n", ""); }},
    {"shaderNesting", 1, 100, "",
     [](Size n) { return SeesShader("", "r = " + std::string(n - 2, '(') + "c" + std::string(n - 2, ')') + ";"); }},
    {"shaderStatementTokens", 1, 100, "",
     [](Size n) { return SeesShader("", "r = c" + Repeated("+c", (n - 3) / 2) + ";"); }},
    {"shaderElseChain", 2, 100, "",
     [](Size n) { return SeesShader("", Repeated("if (c.x > 1) r = c; else ", n) + "r = c;"); }},
    {"shaderMacroTokens", 10, 300, "",
     [](Size n) { return SeesShader("#define m r=c\n", Repeated("m;", (n - 17) / 4)); }},
    {"characters", 1, 50, "", &HoldsCharacters},
    {"markers", 1, 50, "", &HoldsMarkers},
    {"waitingMessages", 1, 50, "", [](Size n) { return HoldsMessages(n, "first"); }},
    {"messageBytes", 1, 50, "", [](Size n) { return HoldsMessages(1, std::string(n, 'm')); }},
    {"textFileBytes", 1, 70, "", [](Size n) { return ReadWholeFile(Sparse(n, ""), true).size() == n; }},
    {"logBytes", 1, 50, "", &HoldsLog},
};

// Caps that other tests hold the program to, and those that none does, with the reason.
const char* const elsewhere[][2] = {
    {"modelErrorStackBytes", "none: no text is known that reaches it"},
    {"volumePixels", "test_device_texture, past it: at it a texture of 1 GiB is made"},
    {"textureBytes", "test_gl_device, past it: at it a card gives 1 GiB or not"},
    {"bufferBytes", "test_gl_device, past it: at it a card gives 1 GiB or not"},
    {"shaderMacroDepth", "test_shader_compiler, past it: the cap on the size is met first"},
    {"shaderRounds", "test_shader_compiler, past it"},
    {"shaderSeconds", "none: no source is known that takes the compiler so long"},
    {"serverLineBytes", "test_LineFramer"},
    {"receiveBufferBytes", "test_NetClient"},
    {"receivePassBytes", "test_NetClient, by what the lock lets through"},
    {"labelBytes", "test_TolvSession"},
    {"gameBufferBytes", "test_NetClient, as another number"},
    {"downloadBufferBytes", "test_NetClient, as another number"},
    {"connectSeconds", "test_NetClient"},
    {"postureMessages", "test_TolvSession"},
    {"sendPatienceMs", "below"},
    {"gameSendPatienceMs", "test_NetClient, as another patience"},
    {"refusalMessages", "test_TolvSession"},
    {"drawnMarkers", "test_TolvRenderer"},
    {"drawnLabelCharacters", "test_TolvRenderer"},
    {"typedLineBytes", "test_shell"},
    {"textCharacters", "none: the quads of a text at it take 2 GiB; messageBytes keeps texts far below"},
    {"transfers", "test_DreamLoading"},
    {"downloadBytes", "test_TolvFileGetter, past it"},
    {"downloadBlockBytes", "test_TolvFileGetter, past it"},
    {"fileNameBytes", "test_path_files"},
    {"repeatedMessages", "test_formats, by the lines of one LZW stream"},
    {"keptNotices", "none: past it less is told"},
    {"keptFolders", "none: past it the same is read again"},
};

struct Usage {
    bool passed = false;
    double seconds = 0;  // of the processor, so that other work on the machine hardly counts
    long mib = 0;
};

// Runs in a copy of the process, in the same folder.
Usage Measure(const std::function<bool()>& work) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) _exit(work() ? 0 : 1);
    int status = -1;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {WIFEXITED(status) && WEXITSTATUS(status) == 0, seconds(usage.ru_utime) + seconds(usage.ru_stime),
            usage.ru_maxrss >> 10};
}

TEST(Caps, HoldAtTheLimitAndRefuseOneMore) {
    std::set<std::string> untested;
    for (const caps::Cap& cap : caps::table)
        untested.insert(cap.name);
    for (const auto& [cap, test] : elsewhere)
        EXPECT_EQ(untested.erase(cap), 1U) << cap << ", tested in " << test;
    for (const Row& row : rows) {
        untested.erase(row.cap);
        const auto* const cap =
            std::find_if(std::begin(caps::table), std::end(caps::table),
                         [&](const caps::Cap& known) { return row.cap == std::string(known.name); });
        ASSERT_NE(cap, std::end(caps::table)) << row.cap;
        for (const Size past : {0, 1}) {
            const support::TestFolder folder;
            const Usage usage = Measure([&] {
                const bool accepted = row.take(cap->value + past);
                return accepted == (past == 0) && (!*row.refusal || Logged(row.refusal) == (past == 1));
            });
            EXPECT_TRUE(usage.passed) << row.cap << (past ? " and one more" : "") << "\n"
                                      << support::ErrorLogText().substr(0, 2000);
            std::printf("%-22s %s %6.2f s %5ld MiB\n", row.cap, past ? "past" : "at  ", usage.seconds, usage.mib);
            // The sanitizer is several times slower and keeps freed memory.
            EXPECT_LT(usage.seconds, row.seconds * (sanitized ? 10 : 1)) << row.cap;
            EXPECT_TRUE(sanitized || usage.mib < row.mib) << row.cap;
        }
    }
    EXPECT_EQ(untested, std::set<std::string>());
}

using Stalled = support::SessionTest;

TEST_F(Stalled, ASendIsGivenUpAfterItsTime) {
    TolvSession session;
    Connect(session);
    const std::string much(64U << 20, 'm');
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(client.SendData(much.data(), static_cast<int>(much.size())));
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_GE(taken.count() * 1000, caps::sendPatienceMs);
    EXPECT_LT(taken.count() * 1000, caps::sendPatienceMs + 5000);
    EXPECT_FALSE(client.IsConnected());
}

}  // namespace
