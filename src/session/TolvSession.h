#pragma once
// The client's side of the game server's line protocol. Main thread.

#include <string>
#include <string_view>

#include "session/LineFramer.h"

class WorldPort;
struct Character;
namespace NET {
class Client;
}

class TolvSession {
  public:
    static TolvSession& Default();

    void SetNetClient(NET::Client* client) { netClient = client; }
    void SetWorldPort(WorldPort* port) { worldPort = port; }
    [[nodiscard]] WorldPort* GetWorldPort() const { return worldPort; }

    void PollServer();
    void HandleServerLine(const std::string& line);
    bool SendLine(const std::string& line);
    bool SendMove(int direction);
    bool SendLook(int gx, int gy);

  private:
    NET::Client* netClient = nullptr;
    WorldPort* worldPort = nullptr;
    bool greetingPhase = true;
    bool loggedIn = false;
    LineFramer lineBuffer;
};
