#pragma once
// The client's side of the game server's line protocol. Main thread.

#include <string>
#include <string_view>
#include <vector>

#include "session/LineFramer.h"

class WorldPort;
struct Character;
namespace NET {
class Client;
}

class TolvSession {
  public:
    static TolvSession& Default();

    // The game connection; null when no game scene exists.
    void SetNetClient(NET::Client* client) { netClient = client; }
    void SetWorldPort(WorldPort* port) { worldPort = port; }
    [[nodiscard]] WorldPort* GetWorldPort() const { return worldPort; }

    // Once per frame: handles every line that has arrived, however many, and tells the player of a lost connection.
    // Only a server that goes on giving orders (maps, palettes, markers, dreams) for longer than a tenth of a second is
    // not heard out: the picture goes on and the rest is handled in the polls that follow, before anything new is
    // taken.
    void PollServer();
    // Whether a poll has left lines to the next one.
    [[nodiscard]] bool HasUnhandled() const { return handled < received.size(); }
    // Applies one line, without its line feed. Any bytes are allowed; a line that means nothing is ignored.
    void HandleServerLine(std::string_view line);
    // Sends the line and a line feed; false when not connected or not sent.
    bool SendLine(const std::string& line);
    // Directions 0 to 3 walk, 4 and 5 turn; any other sends nothing and is false.
    bool SendMove(int direction);
    // Looks at a grid cell; false also for one so far outside the map that its numbers would break the line.
    bool SendLook(int gx, int gy);

  private:
    void HandleReceived();
    void HandleGreeting(std::string_view line);
    void HandleLoginWait(std::string_view line);
    void HandleGameLine(std::string_view line);
    void ChangeFloor(std::string_view line);
    void ChangeMap(std::string_view line);

    NET::Client* netClient = nullptr;
    WorldPort* worldPort = nullptr;
    bool greetingPhase = true;
    bool loggedIn = false;
    std::vector<char> received;
    std::size_t handled = 0;  // of the bytes received
    LineFramer lineFramer;
};
