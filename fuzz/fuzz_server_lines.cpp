#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>

#include "demo/formats/MapWriter.h"
#include "fuzz/FuzzEntry.h"
#include "net/NetClient.h"
#include "platform/Clock.h"
#include "session/DreamLoading.h"
#include "session/LineFramer.h"
#include "session/TolvDataManager.h"
#include "session/TolvSession.h"

namespace {

// A session that is logged in to a peer on the loopback address. Sockets are used directly: the project's own only
// connect.
class LoggedInSession {
  public:
    LoggedInSession() {
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
        session.SetNetClient(&client);
        Receive("END\n");
        Receive("&&&&&&&&&&&&&\n");
        if (!client.IsConnected()) std::abort();
    }

    void Run(std::string_view bytes) {
        LineFramer framer;
        framer.Feed(bytes, [this](std::string_view line) { session.HandleServerLine(line); });
        TolvDataManager& data = TolvDataManager::Default();
        while (!data.GetTransfers().empty())
            UpdateTransfers();
        data.ClearCharacters();
        data.ClearMarkers();
        for (std::string message; data.PopMessage(message);) {
        }
        char drained[4096];
        while (recv(peer, drained, sizeof drained, MSG_DONTWAIT) > 0) {
        }
    }

  private:
    void Receive(const std::string& bytes) {
        if (send(peer, bytes.data(), bytes.size(), 0) < 0) std::abort();
        while (client.PendingBytes() < bytes.size())
            platform::SleepMs(5);
        session.PollServer();
    }

    NET::Client client;
    TolvSession session;
    int peer = -1;
};

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    return {"(hello\n[note\n@ 0 0\n1 ! !\"\"\n> ! !\"\"\n", "<t)))))))))  ! !  \n/t)))))))))  ! !   ! !\n) ! !\n",
            ";patches\\default\\start.map\n]ccpalette.pcx\n", "]s ! !xxlabel second label\n]t ! !\n]q dream name\n",
            "Nope.\n\n]q\n;..\\x\n"};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    static LoggedInSession* session = nullptr;
    if (!session) {
        fuzz::WriteFile("patches/default/start.map", demo::WriteMap(demo::MapDrawing(20, 20)));
        fuzz::WriteFile("data/tolvfile_ip.txt", "127.0.0.1\n1\n");  // where nobody listens
        static LoggedInSession loggedIn;
        session = &loggedIn;
    }
    session->Run(fuzz::Text(data, size));
    fuzz::RemoveFolder("kvn2_tmp");
    return 0;
}
