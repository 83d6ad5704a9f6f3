#include "diag/CMemMan.h"
#include "fuzz/FuzzEntry.h"
#include "session/TolvDataManager.h"
#include "session/TolvFileGetter.h"

namespace TOLV {

// Plays the part of a getter's thread with the bytes that a server sent. One getter serves all runs, because ending one
// waits for the threads of its connection.
struct FileGetterFeeder {
    explicit FileGetterFeeder(FileGetter& toFeed) : getter(toFeed) {
        delete2(getter.thread, "fuzz_file_server", __LINE__);  // it had no connection, so it has nothing to do
        getter.thread = nullptr;
    }

    void Feed(std::string_view bytes) {
        getter.outFile.Close();
        getter.state = FileGetter::State::AwaitWelcome;
        getter.done = false;
        getter.nextBlock = 0;
        getter.inbox.assign(bytes.begin(), bytes.end());
        std::size_t before = 0;
        do {
            before = getter.inbox.size();
            getter.Act();
        } while (!getter.done && getter.inbox.size() < before);
    }

    FileGetter& getter;
};

}  // namespace TOLV

namespace {

std::string Block(unsigned number, std::size_t payload) {
    return std::string("SC") + static_cast<char>(number) + std::string(7, '\0') + std::string(payload, 'd');
}

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    return {"10 welcome\n44 150 x 110\n" + Block(0, 100) + Block(1, 100), "10 welcome\n44 5 0 20\n" + Block(0, 10),
            "10 \n45 no\n", "11 busy\n"};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    static bool addressWritten = false;
    if (!addressWritten) fuzz::WriteFile("data/tolvfile_ip.txt", "127.0.0.1\n1\n");  // where nobody listens
    addressWritten = true;
    static TOLV::FileGetter getter("dream", "kvn2_tmp\\dream");
    static TOLV::FileGetterFeeder feeder(getter);
    feeder.Feed(fuzz::Text(data, size));
    fuzz::RemoveFolder("kvn2_tmp");
    for (std::string message; TolvDataManager::Default().PopMessage(message);) {
    }
    return 0;
}
