#include "graphics/model/BlockAlloc.h"

#include <cstdlib>
#include <utility>

namespace {
BlockAllocStop stopProgram = std::abort;
}

BlockAllocStop SetBlockAllocStop(BlockAllocStop stop) {
    return std::exchange(stopProgram, stop ? stop : std::abort);
}

void StopInBlockAlloc(const char* message) {
    errorLog.Write(message);
    stopProgram();
    std::abort();
}
