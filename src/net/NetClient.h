#pragma once
// The TCP client endpoint: raw bytes in and out, received by a worker thread.

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "diag/CThread.h"
#include "platform/Socket.h"

namespace NET {

// The process-wide lock around every socket call. Order: this lock, then a client's receive lock.
CriticalSection& NetworkLock();
// While it answers true, a name lookup or connect under way gives up soon. Null: never. Set by the shell.
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

class Client : public Endpoint {
  public:
    Client();
    ~Client() override;

    bool Connect(const std::string& host, int port);
    bool SendData(const void* data, int length);
    // All bytes pending; false and `out` untouched when there are none.
    bool ReceiveData(std::vector<char>& out);
    void Disconnect();
    [[nodiscard]] bool IsConnected() const { return connected.load(); }
    [[nodiscard]] unsigned PendingBytes() const;  // no lock taken

  private:
    static void ThreadProcedure(CThread& thread, void* self);
    bool DrainSocket();

    std::atomic<bool> initialised{false};
    std::atomic<bool> connected{false};
    platform::Socket socket;  // under the network lock
    CriticalSection receiveLock;
    std::vector<char> receiveBuffer;  // under receiveLock
    std::atomic<unsigned> pending{0}; // its size
    CThread* worker = nullptr;
};

}  // namespace NET
