#pragma once
// One download of a dream archive from the file server, on a thread of its own.
//
// The protocol (one connection a download, lines end with one line feed):
//   server: welcome line that begins with "10 "
//   client: "RC " name " " password " " id " 0 2 4096"
//   server: "44 " total size " " unused " " block size; any other first field refuses
//   server: blocks of exactly that size; client: "PKOK " number after each, "BYE" after the last
// A block: 0 "SC", 2 block number from 0 as a little-endian 32-bit number, 6 four unused bytes, 10 payload. The last
// block's payload is file data only up to the total size.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "diag/CThread.h"
#include "net/NetClient.h"
#include "platform/FileSystem.h"

namespace TOLV {

class FileGetter {
  public:
    // Connects (which may block), then uses the file `folder` "\" `id` ".dream" when it has the size noted beside it,
    // else starts the download. An id that is no plain file name is refused: done at once and not complete.
    FileGetter(const std::string& id, const std::string& folder);
    // Waits for the thread; deletes the file when it is not complete.
    virtual ~FileGetter();
    FileGetter(const FileGetter&) = delete;
    FileGetter& operator=(const FileGetter&) = delete;

    // Finished, successfully or not; nothing but the destructor touches the file any more.
    [[nodiscard]] bool IsDone() const { return done.load(); }
    [[nodiscard]] bool IsComplete() const { return state.load() == State::Complete; }
    // Bytes of file data written and the size of the file; 1 until the server has told the size. For display.
    void GetProgress(int& receivedBytes, int& totalBytes) const;
    // Of the archive; empty when the id was refused.
    [[nodiscard]] const std::string& GetPath() const { return filePath; }

  private:
    friend struct FileGetterFeeder;  // tests give it the server's bytes without a connection

    enum class State : int { AwaitWelcome, AwaitReply, Receiving, Complete, Failed };

    static void ThreadProcedure(CThread& thread, void* parameter);
    bool SetFilePath(const std::string& folder);
    void ConnectToFileServer();
    bool UseLocalCopy();
    bool Pass();
    bool HasTurn();
    bool CollectBytes();
    void Act();
    bool TakeLine(std::string& line);
    std::string TakeBytes(std::ptrdiff_t count);
    void HandleWelcome(const std::string& line);
    void HandleReply(const std::string& line);
    bool BeginFile(int size, int bytesPerBlock);
    void HandleBlock(std::string_view block);
    void FinishFile();
    void SendText(const std::string& text);
    void Fail(const char* report, const char* message);

    CThread* thread = nullptr;
    NET::Client client{caps::downloadBufferBytes};
    std::atomic<bool> done{false};  // written last
    std::atomic<State> state{State::AwaitWelcome};
    std::deque<char> inbox;  // received, not yet consumed
    std::string id;
    std::uint32_t nextBlock = 0;
    int blockSize = 0;  // bytes on the wire
    std::uint32_t blockCount = 0;
    std::atomic<int> received{0};
    std::atomic<int> totalSize{1};
    std::string filePath;
    bool claimed = false;  // the path is this getter's to write; its thread's, then its destructor's
    platform::File outFile;
};

}  // namespace TOLV
