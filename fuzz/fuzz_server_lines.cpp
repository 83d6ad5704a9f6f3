#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>

#include "demo/formats/ArchiveWriter.h"
#include "demo/formats/MapWriter.h"
#include "demo/formats/PcxWriter.h"
#include "demo/formats/SpriteWriter.h"
#include "formats/TolvMap.h"
#include "fuzz/FuzzEntry.h"
#include "fuzz/FuzzModels.h"
#include "net/NetClient.h"
#include "platform/Clock.h"
#include "session/DreamLoading.h"
#include "session/LineFramer.h"
#include "session/TolvDataManager.h"
#include "session/TolvSession.h"
#include "world/Camera.h"
#include "world/TolvRenderer.h"

namespace {

// The files of a small game: the map that the server names at first, its graphics, and a dream that was downloaded
// before, which is loaded anew by each run that enters it.
void WriteGame() {
    fuzz::WriteFile("data/tolvfile_ip.txt", "127.0.0.1\n1\n");  // where nobody listens
    fuzz::WriteFile("patches/default/start.map", demo::WriteMap(demo::MapDrawing(20, 20)));
    const std::string sprites = demo::WriteTs2({{1, {2, 2, {1, 2, 3, 4}}}});
    fuzz::WriteFile("patches/default/floors.ts2", sprites);
    fuzz::WriteFile("patches/default/wall.ts2", sprites);
    fuzz::WriteFile("patches/default/palette.pcx", demo::WritePcx(1, 1, {1}, demo::RgbPalette()));
}

void WriteDream() {
    static const std::string archive =
        demo::WriteArchive({{"default.map", demo::ArchiveMethod::Plain, demo::WriteMap(demo::MapDrawing(8, 8))},
                            {"floors.ts2", demo::ArchiveMethod::Plain, demo::WriteTs2({{0, {2, 2, {1, 2, 3, 4}}}})}});
    fuzz::RemoveFolder("kvn2_tmp");
    fuzz::WriteFile("kvn2_tmp/isle/isle.dream", archive);
    fuzz::WriteFile("kvn2_tmp/isle/isle.dream.size", std::to_string(archive.size()));
}

// A connection to a peer on the loopback address, and sessions in each state of the login. Sockets are used directly:
// the project's own only connect.
class LiveSession {
  public:
    LiveSession() {
        const int listener = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        if (bind(listener, any, length) != 0 || listen(listener, 1) != 0 || getsockname(listener, any, &length) != 0)
            std::abort();
        if (!client.Connect("127.0.0.1", ntohs(address.sin_port))) std::abort();
        peer = accept(listener, nullptr, nullptr);
        close(listener);
        greeted.SetNetClient(&client);
        BeginLogin(playing);
        playing.SetWorldPort(&TolvRenderer::Port());
        Receive(playing, "&&&&&&&&&&&&&\n");
        if (!client.IsConnected() || !TolvMap::Current().LoadMap("patches\\default\\start.map")) std::abort();
        map = TolvMap::Current();
    }

    // The first byte G or W puts the stream before or into the login.
    void Run(std::string_view bytes) {
        BeginPlace();
        if (bytes.starts_with('W')) {
            TolvSession waiting;
            BeginLogin(waiting);
            Feed(waiting, bytes.substr(1));
        } else if (bytes.starts_with('G')) {
            Feed(greeted, bytes.substr(1));
        } else {
            Feed(playing, bytes);
        }
        while (!TolvDataManager::Default().GetTransfers().empty())
            UpdateTransfers();
        ShowWorld();
        for (std::string message; TolvDataManager::Default().PopMessage(message);) {
        }
        char drained[4096];
        while (recv(peer, drained, sizeof drained, MSG_DONTWAIT) > 0) {
        }
    }

  private:
    static void Feed(TolvSession& session, std::string_view bytes) {
        LineFramer framer;
        framer.Feed(bytes, [&](std::string_view line) { session.HandleServerLine(line); });
    }

    // A look at what the lines have made of the world, once the camera has come there, and at the cell below the mouse.
    static void ShowWorld() {
        constexpr float longEnough = 999.0F;
        TolvRenderer::Update(longEnough);
        int gx = 0;
        int gy = 0;
        ScreenToCell(400, 300, gx, gy);
        TolvRenderer::SetHoverCell(gx, gy);
        (void)TolvSession::Default().SendLook(gx, gy);
        if (!DXG::BeginFrame(0.1F, false, true)) return;
        TolvRenderer::Render();
        DXG::EndFrame0();
    }

    // The map with somebody and a marker on it.
    void BeginPlace() {
        TolvMap::Current() = map;
        TolvDataManager& data = TolvDataManager::Default();
        data.ClearCharacters();
        data.ClearMarkers();
        for (int i = 0; i < 3; ++i) {
            Character somebody;
            somebody.gx = 10 + i;
            somebody.gy = 10;
            data.MoveCharacter(-1, -1, somebody);
        }
        data.AddMarker({10, 11, "xxlabel", "second"});
        data.SetViewPosition(10, 10);
    }

    void BeginLogin(TolvSession& session) {
        session.SetNetClient(&client);
        Receive(session, "END\n");
    }

    void Receive(TolvSession& session, const std::string& bytes) {
        if (send(peer, bytes.data(), bytes.size(), 0) < 0) std::abort();
        while (client.PendingBytes() < bytes.size())
            platform::SleepMs(5);
        session.PollServer();
    }

    NET::Client client;
    TolvSession greeted;
    TolvSession& playing = TolvSession::Default();
    TolvMap map;
    int peer = -1;
};

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    return {"(hello\n[note\n@ 0 0\n1 ! !\"\"\n> ! !\"\"\n",
            "<t)))))))))  ! !  \n/t)))))))))  ! !   ! !\n) ! !\n",
            ";patches\\default\\start.map\n]ccpalette.pcx\n",
            "]s ! !xxlabel second label\n]t ! !\n]q dream name\n",
            "Nope.\n\n]q\n;..\\x\n",
            "]q isle\n",
            "GWelcome\nEND of greeting\n",
            "Wlet me see\n&&&&&&&&&&&&&\n(hello\n@ ( (\n"};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::BeginModels();
    static const bool ready = [] {
        WriteGame();
        const bool made = TolvRenderer::Init();
        std::atexit(TolvRenderer::Shutdown);
        return made;
    }();
    if (!ready) std::abort();
    static LiveSession session;
    const std::string_view bytes = fuzz::Text(data, size);
    if (bytes.find("]q") != std::string_view::npos) WriteDream();
    session.Run(bytes);
    return 0;
}
