#include "session/TolvFileGetter.h"

#include <algorithm>
#include <vector>

#include "diag/CMemMan.h"
#include "diag/LogFile.h"
#include "diag/PathFiles.h"
#include "formats/ByteCursor.h"
#include "platform/Caps.h"
#include "platform/Clock.h"
#include "session/MessageQueue.h"
#include "session/PlayerData.h"
#include "session/ServerAddress.h"

namespace TOLV {
namespace {

constexpr unsigned passSleepMs = 5;
constexpr unsigned emptySleepMs = 25;
constexpr int blockHeaderBytes = 10;
constexpr std::string_view sizeExtension = ".size";

constexpr const char* badWelcome = "Anomolous message recieved in response to file server connect.\n";
constexpr const char* badReply = "Anomolous response recieved to RC request.\n";
constexpr const char* failed = "> FAILED";

void Post(const std::string& text) {
    MessageQueue::Default().Post(text);
}

// The files that some getter writes, so that two transfers of one dream do not write into the same one.
class PathClaims {
  public:
    bool Take(const std::string& path) {
        ScopedLock held(lock);
        if (Find(path) != paths.end()) return false;
        paths.push_back(path);
        return true;
    }
    void Release(const std::string& path) {
        ScopedLock held(lock);
        paths.erase(Find(path));
    }

  private:
    std::vector<std::string>::iterator Find(const std::string& path) {
        return std::find_if(paths.begin(), paths.end(), [&](const auto& p) { return EqualsIgnoringCase(p, path); });
    }

    CriticalSection lock;
    std::vector<std::string> paths;  // under lock
};
PathClaims claims;

}  // namespace

FileGetter::FileGetter(const std::string& transferId, const std::string& folder) : id(transferId) {
    if (!SetFilePath(folder)) {
        done = true;
        return;
    }
    ConnectToFileServer();
    if (UseLocalCopy()) return;
    thread = new2<CThread>({"CThread", "CThread(ThreadProcedure,\"TolvFileGetter\",this)", "TolvFileGetter", __LINE__},
                           &FileGetter::ThreadProcedure, "TolvFileGetter", this);
    const bool started = thread && thread->IsRunning();
    if (started || done) return;
    // Nothing else would ever end this transfer.
    state = State::Failed;
    done = true;
}

FileGetter::~FileGetter() {
    if (thread) delete2(thread, "TolvFileGetter", __LINE__);
    outFile.Close();
    // A file that another getter is writing stays.
    if (!IsComplete() && !filePath.empty() && !claimed) claimed = claims.Take(filePath);
    if (!IsComplete() && claimed) {
        errorLog.Write("Note: deleting incompletely transfered file \"" + filePath + "\"\n");
        if (!platform::RemoveFile(filePath)) errorLog.Write("Failed to delete file \"" + filePath + "\"\n");
    }
    if (claimed) claims.Release(filePath);
}

void FileGetter::GetProgress(int& receivedBytes, int& totalBytes) const {
    receivedBytes = received;
    totalBytes = totalSize;
}

// The server chose the id, which becomes the names of a folder and two files; false, with a message, when it may not.
bool FileGetter::SetFilePath(const std::string& folder) {
    if (id.find_first_of("\\/") != std::string::npos) {
        errorLog.Write("Error: Name of a file to transfer has a path in it, so it is refused: " + id + "\n");
        return false;
    }
    const std::string inFolder = folder + "\\";
    const std::string archive = id + ".dream";
    if (ContainedPath(DirectoryOf(folder), id).empty()) return false;
    if (ContainedPath(inFolder, archive + std::string(sizeExtension)).empty()) return false;
    filePath = ContainedPath(inFolder, archive);
    return !filePath.empty();
}

void FileGetter::ConnectToFileServer() {
    std::string host;
    int port = 0;
    if (!ReadServerAddress("data\\tolvfile_ip.txt", host, port))
        errorLog.Write("Failed to load tolv's file-server ip and port from \\data\\tolvfile_ip.txt file.\n");
    if (client.Connect(host, port)) return;
    errorLog.Write("Failed to connect to tolv file server.\n");
    done = true;
}

// A copy counts as whole when its size is the one noted when its download began.
bool FileGetter::UseLocalCopy() {
    const std::uint64_t size = FileSize(filePath);
    if (size == 0 || size > static_cast<std::uint64_t>(caps::downloadBytes)) return false;
    const int noted = DecimalOf(ReadWholeFile(filePath + std::string(sizeExtension), false, caps::noteBytes));
    if (noted < 0 || static_cast<std::uint64_t>(noted) != size) return false;
    Post("> Already have dream file, so using local copy.");
    received = static_cast<int>(size);
    state = State::Complete;
    done = true;
    return true;
}

void FileGetter::ThreadProcedure(CThread& thread, void* parameter) {
    FileGetter& getter = *static_cast<FileGetter*>(parameter);
    while (!thread.TerminationRequested() && getter.Pass()) {
    }
}

// One step of the work; false when the thread has nothing left to do.
bool FileGetter::Pass() {
    if (done && !client.IsConnected()) return false;
    if (!done) {
        if (!HasTurn() || !CollectBytes()) {
            platform::SleepMs(emptySleepMs);
            return true;
        }
        Act();
    }
    platform::SleepMs(passSleepMs);
    return true;
}

// False while another getter has the file; what that one leaves may be the copy wanted.
bool FileGetter::HasTurn() {
    if (claimed) return true;
    claimed = claims.Take(filePath);
    return claimed && !UseLocalCopy();
}

// Moves what has arrived into the inbox; false when there is nothing to act on.
bool FileGetter::CollectBytes() {
    if (client.PendingBytes() > 0) {
        // The inbox never needs more than one block; the rest waits in the client.
        if (inbox.size() >= static_cast<std::size_t>(caps::downloadBlockBytes)) return true;
        std::vector<char> bytes;
        if (client.ReceiveData(bytes)) inbox.insert(inbox.end(), bytes.begin(), bytes.end());
        return true;
    }
    if (!client.IsConnected()) {
        Fail("Lost connection to file server...\n", "> Lost connection to file server.");
        return true;
    }
    return !inbox.empty();
}

// At most one line or one block.
void FileGetter::Act() {
    std::string line;
    if (state == State::AwaitWelcome) {
        if (TakeLine(line)) HandleWelcome(line);
    } else if (state == State::AwaitReply) {
        if (TakeLine(line)) HandleReply(line);
    } else if (state == State::Receiving && inbox.size() >= static_cast<std::size_t>(blockSize)) {
        HandleBlock(TakeBytes(blockSize));
    }
}

// `count` bytes, which have to be there.
std::string FileGetter::TakeBytes(std::ptrdiff_t count) {
    std::string bytes(inbox.begin(), inbox.begin() + count);
    inbox.erase(inbox.begin(), inbox.begin() + count);
    return bytes;
}

// With its line feed. A line that does not end within the cap counts as ended there, which no state accepts.
bool FileGetter::TakeLine(std::string& line) {
    const auto limit = inbox.begin() + static_cast<std::ptrdiff_t>(std::min(inbox.size(), caps::serverLineBytes + 1));
    const auto end = std::find(inbox.begin(), limit, '\n');
    if (end != limit) {
        line = TakeBytes(end - inbox.begin() + 1);
        return true;
    }
    if (inbox.size() <= caps::serverLineBytes) return false;
    line.clear();
    inbox.clear();
    return true;
}

void FileGetter::HandleWelcome(const std::string& line) {
    if (!line.starts_with("10 ")) {
        Fail(badWelcome, failed);
        return;
    }
    Post("> File Server welcome received.  Requesting transfer...");
    const PlayerData& player = GetPlayerData();
    SendText("RC " + player.name + " " + player.password + " " + id + " 0 2 4096" + "\n");
    state = State::AwaitReply;
}

void FileGetter::HandleReply(const std::string& line) {
    const std::vector<std::string> fields = SplitTokens(line, " \t\n");
    if (fields.size() < 4 || fields[0] != "44") {
        Fail(badReply, failed);
        return;
    }
    const int size = DecimalOf(fields[1]);
    const int bytesPerBlock = DecimalOf(fields[3]);
    if (size <= 0 || size > caps::downloadBytes || bytesPerBlock <= blockHeaderBytes ||
        bytesPerBlock > caps::downloadBlockBytes) {
        Fail(badReply, failed);
        return;
    }
    if (!BeginFile(size, bytesPerBlock)) {
        Fail("Failed to open output file, to download dream into.\n", nullptr);
        return;
    }
    Post("> Transfer request accepted.  Download beginning.");
    state = State::Receiving;
}

bool FileGetter::BeginFile(int size, int bytesPerBlock) {
    const int payload = bytesPerBlock - blockHeaderBytes;
    received = 0;
    totalSize = size;
    blockSize = bytesPerBlock;
    blockCount = static_cast<std::uint32_t>((size - 1) / payload + 1);
    MakePathDirectories(filePath);
    // Without the note the copy is only downloaded again the next time.
    const std::string sizeText = std::to_string(size);
    platform::File note(filePath + std::string(sizeExtension), platform::OpenMode::Write);
    if (!note.Write(sizeText.data(), sizeText.size()) || !note.Close())
        errorLog.Write("Warning: Failed to write the size of file \"" + filePath + "\"\n");
    outFile = platform::File(filePath, platform::OpenMode::Write);
    return outFile.IsOpen();
}

void FileGetter::HandleBlock(std::string_view block) {
    ByteCursor header(block);
    if (header.Bytes(2) != "SC") {
        Fail("Non-data block recieved while downloading file... aborting.\n", failed);
        return;
    }
    if (header.U32() != nextBlock) {
        Fail(
            "Out of order data block received from file server... aborting. "
            "(I know, I should handle this better.... later!)\n",
            failed);
        return;
    }
    int payload = blockSize - blockHeaderBytes;
    if (nextBlock == blockCount - 1) payload = totalSize - received;
    if (!outFile.Write(block.data() + blockHeaderBytes, static_cast<std::size_t>(payload))) {
        Fail("Failed to write downloaded data to the output file.\n", failed);
        return;
    }
    received += payload;
    SendText("PKOK " + std::to_string(nextBlock) + "\n");
    if (++nextBlock == blockCount) FinishFile();
}

void FileGetter::FinishFile() {
    SendText("BYE\n");
    // A full disk may show only now.
    if (!outFile.Close()) {
        Fail("Failed to write downloaded data to the output file.\n", failed);
        return;
    }
    Post("> Download Complete.");
    state = State::Complete;
    done = true;
}

// A connection lost meanwhile is noticed by the next pass.
void FileGetter::SendText(const std::string& text) {
    if (client.IsConnected()) client.SendData(text.data(), static_cast<int>(text.size()));
}

void FileGetter::Fail(const char* report, const char* message) {
    errorLog.Write(report);
    if (message) Post(message);
    state = State::Failed;
    done = true;
}

}  // namespace TOLV
