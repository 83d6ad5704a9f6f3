#pragma once
// Plays the part of a getter's thread with the bytes that a server sent.

#include <string_view>

#include "diag/CMemMan.h"
#include "session/TolvFileGetter.h"

namespace TOLV {

struct FileGetterFeeder {
    // The getter has no connection, so its thread has nothing to do.
    explicit FileGetterFeeder(FileGetter& toFeed) : getter(toFeed) {
        if (getter.thread) delete2(getter.thread, "GetterFeeder", __LINE__);
        getter.thread = nullptr;
    }

    void Feed(std::string_view bytes) {
        if (getter.filePath.empty()) return;  // refused
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
