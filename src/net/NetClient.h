#pragma once
// The TCP client endpoint: raw bytes in and out, received by a worker thread.

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "diag/CThread.h"
#include "platform/Caps.h"
#include "platform/Socket.h"

namespace NET {

// The process-wide lock around every socket call. Order: this lock, then a client's receive lock.
CriticalSection& NetworkLock();
// While it answers true, a name lookup, a connect or a send that waits for the peer gives up soon. Null: never. Set by
// the shell; asked from the thread that connects or sends.
void SetConnectCancel(bool (*cancelled)());

class Endpoint {
  public:
    Endpoint();
    virtual ~Endpoint();  // the last one writes the traffic report
    Endpoint(const Endpoint&) = delete;
    Endpoint& operator=(const Endpoint&) = delete;
    [[nodiscard]] bool SocketLibraryStarted() const { return socketLibraryStarted; }

  protected:
    static void AddToSent(std::uint32_t count);
    static void AddToReceived(std::uint32_t count);

  private:
    bool socketLibraryStarted = false;
};

// A failed or misused operation says so in the error log and answers false. Everything sent and received is copied to
// the network log, but for the lines that carry the player's name and password.
class Client : public Endpoint {
  public:
    // Beyond this many bytes that the owner has not taken, what comes stays in the system's buffers: the peer has to
    // wait then.
    explicit Client(std::size_t mostPendingBytes = caps::receiveBufferBytes);
    ~Client() override;

    // `host` is a name or four numbers divided by points; a port outside 0 to 65535 fails. Blocks through lookup and
    // connect, which may take 5 seconds, with the network lock held. A client that was disconnected connects again on a
    // fresh socket.
    bool Connect(const std::string& host, int port);
    // All of the bytes; false, and disconnected, when the peer is gone or has taken nothing for as long as the patience
    // lasts: 5 seconds unless it was set. False for fewer than one byte.
    bool SendData(const void* data, int length);
    // All bytes pending; false and `out` untouched when there are none.
    bool ReceiveData(std::vector<char>& out);
    // The system's buffers hold many lines, so that a sender who must not stand still may wait for less.
    void SetSendPatience(unsigned ms) { sendPatienceMs = ms; }
    void Disconnect();
    [[nodiscard]] bool IsConnected() const { return connected.load(); }
    // Bytes that ReceiveData would give now; 0 when not connected. No lock is taken.
    [[nodiscard]] unsigned PendingBytes() const;

  private:
    static void ThreadProcedure(CThread& thread, void* parameter);
    bool ReceivePass();
    bool DrainSocket();
    bool OpenFreshSocket();
    platform::SocketStatus ConnectSocket(const std::string& host, int port, bool& resolved);

    std::atomic<bool> initialised{false};
    std::atomic<bool> connected{false};
    platform::Socket socket;  // under the network lock
    bool socketUsed = false;  // a connect was tried on it; under the network lock
    const std::size_t mostPending;
    unsigned sendPatienceMs = caps::sendPatienceMs;
    CriticalSection receiveLock;
    std::vector<char> receiveBuffer;   // under receiveLock
    std::atomic<unsigned> pending{0};  // its size
    CThread* worker = nullptr;
};

}  // namespace NET
