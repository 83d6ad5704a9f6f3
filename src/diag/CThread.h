#pragma once
// Worker threads and locks.

#include <atomic>
#include <mutex>
#include <string>
#include <thread>

// A lock of the process; the owning thread may take it again.
class CriticalSection {
  public:
    CriticalSection() = default;
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;
    void Enter() { mutex.lock(); }
    void Leave() { mutex.unlock(); }

  private:
    std::recursive_mutex mutex;
};

class ScopedLock {
  public:
    explicit ScopedLock(CriticalSection& toHold) : section(&toHold) { section->Enter(); }
    ~ScopedLock() { section->Leave(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

  private:
    CriticalSection* section;
};

// A thread that starts at once. Its procedure runs until TerminationRequested() or the end of its own work, then
// returns.
class CThread {
  public:
    using Procedure = void (*)(CThread& thread, void* parameter);

    // On failure the error log says so and the object stays a no-op with IsRunning() false.
    CThread(Procedure procedure, std::string name, void* parameter);
    // Requests termination and waits without limit, warning once after about 15 s. Never on the thread itself.
    virtual ~CThread();
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;

    [[nodiscard]] bool TerminationRequested() const { return terminationRequested.load(); }
    [[nodiscard]] bool IsRunning() const { return running.load(); }

  private:
    static void Entry(void* startRecord);
    void WarnOfLongWait() const;

    std::atomic<bool> running{false};  // cleared by the thread as the last thing it does to this object
    std::atomic<bool> terminationRequested{false};
    const std::string name;
    std::thread worker;
};
