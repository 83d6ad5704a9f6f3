#pragma once
// Objects of one type, made in large numbers, from blocks of a fixed number of slots.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

#include "diag/CallStack.h"
#include "diag/LogFile.h"

// What follows the message of a programming error: std::abort, unless a test puts something in its place that does not
// return. Null puts std::abort back; returns the one before.
using BlockAllocStop = void (*)();
BlockAllocStop SetBlockAllocStop(BlockAllocStop stop);
[[noreturn]] void StopInBlockAlloc(const char* message);

template <typename T>
class BlockAlloc {
  public:
    explicit BlockAlloc(std::size_t objectsPerBlock) : perBlock(objectsPerBlock) {}
    // Reports objects that are still there; their memory goes, they are not destroyed.
    ~BlockAlloc() {
        if (freeTotal != blocks.size() * perBlock)
            WriteReport(errorLog,
                        "Something leaked that was made with BlockAlloc. That memory is going away now though...\n",
                        "  -call stack of allocator free:\n", false);
    }
    BlockAlloc(const BlockAlloc&) = delete;
    BlockAlloc& operator=(const BlockAlloc&) = delete;

    // A new object in the lowest free slot of the first block that has one.
    T* Alloc();
    // Destroys an object. The program stops for a pointer that is no live object's.
    void Free(T* object);

    [[nodiscard]] std::size_t BlockCount() const { return blocks.size(); }
    [[nodiscard]] std::size_t FreeSlots() const { return freeTotal; }
    [[nodiscard]] std::size_t BlockBytes() const { return perBlock * sizeof(Slot); }

  private:
    struct Slot {
        alignas(T) std::byte bytes[sizeof(T)];
    };
    struct Block {
        std::unique_ptr<Slot[]> slots;
        std::vector<bool> isFree;
        std::size_t freeCount;
    };
    T* Take(Block& block, std::size_t slot);

    const std::size_t perBlock;
    std::vector<Block> blocks;
    std::size_t freeTotal = 0;
};

template <typename T>
T* BlockAlloc<T>::Take(Block& block, std::size_t slot) {
    T* object = ::new (static_cast<void*>(block.slots[slot].bytes)) T();
    block.isFree[slot] = false;
    --block.freeCount;
    --freeTotal;
    return object;
}

template <typename T>
T* BlockAlloc<T>::Alloc() {
    for (Block& block : blocks) {
        if (block.freeCount == 0) continue;
        std::size_t slot = 0;
        while (!block.isFree[slot])
            ++slot;
        return Take(block, slot);
    }
    blocks.push_back({std::make_unique<Slot[]>(perBlock), std::vector<bool>(perBlock, true), perBlock});
    freeTotal += perBlock;
    return Take(blocks.back(), 0);
}

template <typename T>
void BlockAlloc<T>::Free(T* object) {
    // As numbers, because pointers into different arrays cannot be compared.
    const auto address = reinterpret_cast<std::uintptr_t>(object);
    for (Block& block : blocks) {
        const auto start = reinterpret_cast<std::uintptr_t>(block.slots.get());
        if (address < start || address - start >= BlockBytes()) continue;
        if ((address - start) % sizeof(Slot) != 0) break;
        const std::size_t slot = (address - start) / sizeof(Slot);
        if (block.isFree[slot]) StopInBlockAlloc("trying to delete memory that was already free in BlockAlloc.\n");
        object->~T();
        block.isFree[slot] = true;
        ++block.freeCount;
        ++freeTotal;
        return;
    }
    StopInBlockAlloc("trying to delete mem that doesn't exist in BlockAlloc.\n");
}
