#include "fuzz/FuzzEntry.h"
#include "fuzz/GetterFeeder.h"
#include "session/TolvDataManager.h"

namespace {

std::string Block(unsigned number, std::size_t payload) {
    return std::string("SC") + static_cast<char>(number) + std::string(7, '\0') + std::string(payload, 'd');
}

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    return {"10 welcome\n44 150 x 110\n" + Block(0, 100) + Block(1, 100), "10 welcome\n44 5 0 20\n" + Block(0, 10),
            "10 \n45 no\n", "11 busy\n", "10 \n44 30 0 20\n" + Block(0, 10) + Block(1, 10) + Block(2, 10) + "more"};
}

// One getter serves all runs, because ending one waits for the threads of its connection.
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
