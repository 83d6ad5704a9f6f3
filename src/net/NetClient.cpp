#include "net/NetClient.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "platform/Caps.h"
#include "platform/Clock.h"

namespace NET {
namespace {

using platform::SocketStatus;

constexpr unsigned passSleepMs = 20;
constexpr unsigned idleSleepMs = 100;
constexpr std::size_t receiveChunkBytes = 4096;
constexpr unsigned sendRetryMs = 5;

std::atomic<std::uint32_t> liveEndpoints{0};
std::atomic<std::uint32_t> totalSent{0};
std::atomic<std::uint32_t> totalReceived{0};
std::atomic<bool (*)()> connectCancel{nullptr};

bool Cancelled() {
    bool (*const cancelled)() = connectCancel.load();
    return cancelled && cancelled();
}

thread_local std::int64_t connectDeadline = 0;  // of the connect under way on this thread
bool CancelledOrLate() {
    return Cancelled() || platform::CounterValue() > connectDeadline;
}

void Misuse(const std::string& message) {
    ReportMisuse(message, "  -attempt made from:\n");
}

// Digits, points and spaces alone, with exactly three points.
bool IsDottedAddress(const std::string& host) {
    return host.find_first_not_of("0123456789. ") == std::string::npos &&
           std::count(host.begin(), host.end(), '.') == 3;
}

// Four decimal numbers, of which the low bytes count; each stops at its first character that is no digit.
std::uint32_t DottedAddress(const std::string& host) {
    std::uint32_t address = 0;
    std::size_t at = 0;
    for (int part = 0; part < 4; ++part) {
        at = host.find_first_not_of(' ', at);
        std::uint32_t number = 0;
        for (; at < host.size() && host[at] >= '0' && host[at] <= '9'; ++at)
            number = number * 10 + static_cast<std::uint32_t>(host[at] - '0');
        address = address << 8 | (number & 0xFF);
        at = std::min(host.find('.', at), host.size() - 1) + 1;
    }
    return address;
}

std::string LogEntryOfSent(const char* data, std::size_t length) {
    static constexpr char connectCommand[] = "connect ";
    if (std::memcmp(data, connectCommand, std::min<std::size_t>(length, 8)) == 0)
        return "connect (NAME/PASS REMOVED FOR SECURITY)\n";
    if (length >= 4 && std::memcmp(data, "RC ", 3) == 0) return "RC (NAME/PASS REMOVED FOR SECURITY)\n";
    return std::string(data, strnlen(data, length));
}

std::string AmountText(std::uint32_t total) {
    const std::uint32_t kilobytes = total / 1024;
    const std::uint32_t megabytes = kilobytes / 1024;
    if (megabytes >= 8) return std::to_string(megabytes) + "MB";
    if (kilobytes > 100) return std::to_string(kilobytes) + "KB";
    return std::to_string(total) + " bytes";
}

}  // namespace

CriticalSection& NetworkLock() {
    static CriticalSection lock;
    return lock;
}

void SetConnectCancel(bool (*cancelled)()) {
    connectCancel = cancelled;
}

Endpoint::Endpoint() {
    if (liveEndpoints == 0) {
        totalSent = 0;
        totalReceived = 0;
    }
    ++liveEndpoints;
    socketLibraryStarted = platform::StartSocketLibrary();
    if (!socketLibraryStarted) errorLog.Write("Failed to init WinSock library.\n");
}

Endpoint::~Endpoint() {
    if (socketLibraryStarted) platform::StopSocketLibrary();
    if (--liveEndpoints != 0) return;
    statLog.Write("Network connection:\n");
    statLog.Write("  -Total data sent: " + AmountText(totalSent) + "\n");
    statLog.Write("  -Total data received: " + AmountText(totalReceived) + "\n\n");
}

void Endpoint::AddToSent(std::uint32_t count) {
    totalSent += count;
}
void Endpoint::AddToReceived(std::uint32_t count) {
    totalReceived += count;
}

Client::Client(std::size_t mostPendingBytes) : mostPending(mostPendingBytes) {
    if (!SocketLibraryStarted()) return;
    ScopedLock network(NetworkLock());
    if (!OpenFreshSocket()) return;
    worker = new2<CThread>({"CThread", "CThread(ThreadProcedure,\"NetClient\",this)", "NetClient", __LINE__},
                           &Client::ThreadProcedure, "NetClient", this);
    initialised = worker && worker->IsRunning();
}

Client::~Client() {
    if (worker) delete2(worker, "NetClient", __LINE__);
    ScopedLock network(NetworkLock());
    if (socket.IsOpen()) {
        socket.Shutdown();
        socket.Close();
    }
    connected = false;
    initialised = false;
}

bool Client::OpenFreshSocket() {
    socket.Close();
    socketUsed = false;
    if (socket.Open()) return true;
    errorLog.Write("Failed to create socket.\n");
    return false;
}

SocketStatus Client::ConnectSocket(const std::string& host, int port, bool& resolved) {
    std::uint32_t address = 0;
    resolved = true;
    if (IsDottedAddress(host))
        address = DottedAddress(host);
    else
        resolved = platform::ResolveHost(host, address, &Cancelled);
    if (!resolved || port < 0 || port > 0xFFFF) return SocketStatus::Error;
    // A socket that was connected or refused once does not serve again.
    if (socketUsed && !OpenFreshSocket()) return SocketStatus::Error;
    socketUsed = true;
    connectDeadline = platform::CounterValue() + caps::connectSeconds * platform::CounterFrequency();
    return socket.Connect(address, static_cast<std::uint16_t>(port), &CancelledOrLate);
}

bool Client::Connect(const std::string& host, int port) {
    if (!initialised) {
        Misuse("Error: Attempt to call net client Connect when not Init'd.\n");
        return false;
    }
    if (connected) {
        Misuse("Error: Attempt to connect to remove server when already connected.\n");
        return false;
    }
    ScopedLock network(NetworkLock());
    ScopedLock receive(receiveLock);
    bool resolved = false;
    const SocketStatus status = ConnectSocket(host, port, resolved);
    const std::string hostAndPort = host + "\" port " + std::to_string(port) + "\n";
    if (!resolved) {
        errorLog.Write("Unable to resolve host \"" + hostAndPort);
        return false;
    }
    if (status != SocketStatus::Ok) {
        errorLog.Write("Failed to connect to host \"" + hostAndPort);
        netLog.Write("\nFailed to connect to host \"" + hostAndPort + "\n");
        if (status == SocketStatus::NetworkDown) errorLog.Write("  -no network connection available\n");
        if (status == SocketStatus::Refused) errorLog.Write("  -connection refused by server\n");
        return false;
    }
    receiveBuffer = std::vector<char>();
    pending = 0;
    connected = true;
    netLog.Write("\nConnected to host \"" + hostAndPort + "\n");
    return true;
}

bool Client::SendData(const void* data, int length) {
    if (!initialised) {
        Misuse("Error: Attempt to call NETCLIENT::SendData when not Init'd.\n");
        return false;
    }
    if (!connected) {
        Misuse("Error: Attempt to send data to server when not connected.\n");
        return false;
    }
    if (length < 1 || !data) return false;

    const char* const bytes = static_cast<const char*>(data);
    const std::size_t count = static_cast<std::size_t>(length);
    const std::int64_t patience = sendPatienceMs * platform::CounterFrequency() / 1000;
    std::int64_t lastProgress = platform::CounterValue();
    for (std::size_t done = 0; done < count;) {
        std::size_t sent = 0;
        SocketStatus status = SocketStatus::Error;
        {
            ScopedLock network(NetworkLock());
            status = socket.Send(bytes + done, count - done, sent);
        }
        if (status == SocketStatus::Ok && sent > 0) {
            AddToSent(static_cast<std::uint32_t>(sent));
            done += sent;
            lastProgress = platform::CounterValue();
            continue;
        }
        const bool mayWait = connected && !Cancelled() && platform::CounterValue() - lastProgress < patience;
        if (status != SocketStatus::NotYet || !mayWait) {
            Disconnect();
            return false;
        }
        platform::SleepMs(sendRetryMs);
    }
    netLog.Write("{SENT TO SERVER}" + LogEntryOfSent(bytes, count));
    return true;
}

bool Client::ReceiveData(std::vector<char>& out) {
    if (!initialised) {
        Misuse("Error: Attempt to call NETCLIENT::ReceiveData when not Init'd.\n");
        return false;
    }
    if (!connected) {
        Misuse("Error: Attempt to receive data from server when not connected.\n");
        return false;
    }
    {
        ScopedLock receive(receiveLock);
        if (receiveBuffer.empty()) return false;
        out = std::move(receiveBuffer);
        receiveBuffer = std::vector<char>();
        pending = 0;
    }
    const bool endsLine = out.back() == '\n';
    if (!endsLine) out.push_back('\n');
    netLog.Write(out.data(), out.size());
    if (!endsLine) out.pop_back();
    return true;
}

void Client::Disconnect() {
    if (!initialised) {
        Misuse("Error: Attempt to call NETCLIENT::Disconnect when not Init'd.\n");
        return;
    }
    if (!connected) return;
    ScopedLock network(NetworkLock());
    if (socket.IsOpen()) socket.Shutdown();
    connected = false;
}

unsigned Client::PendingBytes() const {
    return initialised && connected ? pending.load() : 0;
}

void Client::ThreadProcedure(CThread& thread, void* parameter) {
    Client& client = *static_cast<Client*>(parameter);
    while (!thread.TerminationRequested()) {
        while (!client.connected && !thread.TerminationRequested())
            platform::SleepMs(idleSleepMs);
        if (!client.ReceivePass()) return;
        platform::SleepMs(passSleepMs);
    }
}

// False when the socket cannot be polled any more.
bool Client::ReceivePass() {
    ScopedLock network(NetworkLock());
    if (!connected) return true;
    if (!DrainSocket()) {
        Disconnect();
        return false;
    }
    const SocketStatus peer = socket.PeerStatus();
    if (peer == SocketStatus::NotConnected || peer == SocketStatus::NetworkDown) Disconnect();
    return true;
}

// Takes what has arrived, disconnecting at the end of the stream; false when the poll itself failed.
bool Client::DrainSocket() {
    std::array<char, receiveChunkBytes> chunk;
    for (std::size_t taken = 0; taken < caps::receivePassBytes && pending < mostPending;) {
        const SocketStatus readable = socket.PollReadable();
        if (readable == SocketStatus::NotYet) return true;
        if (readable != SocketStatus::Ok) return false;
        std::size_t received = 0;
        const SocketStatus status = socket.Receive(chunk.data(), chunk.size(), received);
        if (status == SocketStatus::NotYet) return true;
        if (status != SocketStatus::Ok || received < 1) {
            Disconnect();
            return true;
        }
        {
            ScopedLock receive(receiveLock);
            receiveBuffer.insert(receiveBuffer.end(), chunk.data(), chunk.data() + received);
            pending = static_cast<unsigned>(receiveBuffer.size());
        }
        AddToReceived(static_cast<std::uint32_t>(received));
        taken += received;
    }
    return true;
}

}  // namespace NET
