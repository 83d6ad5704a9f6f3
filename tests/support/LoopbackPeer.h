#pragma once
// The other end of a TCP connection on this machine, for tests of the client.

#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace support {

// Waits until `condition()` holds; false after the time limit.
template <typename Condition>
bool WaitFor(Condition condition, int limitMs = 5000) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(limitMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

// Listens on 127.0.0.1 on a port that the system picks and talks to one client at a time. No call waits longer than 5
// seconds.
class LoopbackPeer {
  public:
    LoopbackPeer();
    ~LoopbackPeer();
    LoopbackPeer(const LoopbackPeer&) = delete;
    LoopbackPeer& operator=(const LoopbackPeer&) = delete;

    [[nodiscard]] int Port() const { return port; }
    bool Accept();
    bool Send(const std::string& bytes);
    // The next lines with their line feeds; what there is when the client closes or is silent too long.
    std::string ReadLine(int count = 1);
    void CloseConnection();
    void StopListening();
    // Connects to itself until the system leaves more connects without an answer.
    void FillUp();

  private:
    int listener = -1;
    int connection = -1;
    int port = 0;
    std::vector<int> visitors;
};

}  // namespace support
