#pragma once
// Room for a thread's crash handler, apart from a stack that may be used up.

#include <cstddef>

namespace platform {

// Belongs to the thread that makes it, and must be destroyed on it.
class CrashStack {
  public:
    CrashStack();
    ~CrashStack();
    CrashStack(const CrashStack&) = delete;
    CrashStack& operator=(const CrashStack&) = delete;

  private:
    void* memory = nullptr;
};

}  // namespace platform
