#include "diag/CThread.h"

#include <utility>

#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "platform/Clock.h"
#include "platform/Thread.h"

namespace {

constexpr unsigned waitStepMs = 25;
constexpr int passesBeforeWarning = 600;

struct ParamData {
    CThread* owner;
    CThread::Procedure procedure;
    void* parameter;
};

}  // namespace

CThread::CThread(Procedure procedure, std::string threadName, void* parameter) : name(std::move(threadName)) {
    auto* start = new2<ParamData>({"ParamData", "ParamData", "CThread", 40}, ParamData{this, procedure, parameter});
    running.store(true);
    if (start && platform::StartThread(worker, Entry, start)) return;
    running.store(false);
    WriteReport(errorLog, "CreateThread failed...?!?!\nCall stack:\n", "", false);
    if (start) delete2(start, "CThread", 50);
}

void CThread::Entry(void* startRecord) {
    auto* start = static_cast<ParamData*>(startRecord);
    CThread& owner = *start->owner;
    start->procedure(owner, start->parameter);
    // Freed before the owner hears of the end, so that a leak report right after cannot find it.
    delete2(start, "CThread", 31);
    owner.running.store(false);
}

CThread::~CThread() {
    for (int pass = 1; running.load(); ++pass) {
        terminationRequested.store(true);
        if (running.load()) platform::SleepMs(waitStepMs);
        if (pass == passesBeforeWarning) WarnOfLongWait();
    }
    // The last step of the thread is over in no time; joining makes sure that nothing of it is left.
    if (worker.joinable()) worker.join();
}

void CThread::WarnOfLongWait() const {
    errorLog.WriteReport({"Warning: Thread still going ~15 seconds after termination request.  It may be stuck.\n",
                          "  -Thread name: ", name, "\n", "Call stack of dtor waiting loop:\n", CallStack(), "\n"});
}
