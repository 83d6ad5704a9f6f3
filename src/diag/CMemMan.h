#pragma once
// The checked allocator: every object that outlives one function is made by new2 and freed by delete2.
//
// A block in memory: 8 guard bytes 0xA5, the user's bytes, 8 guard bytes 0xA5. Each live block has a record with its
// declaration text and the place that made it; what is left at the end of the run is listed in the error log.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

// Where and as what a block is made. The declaration spells the constructor call and begins with the type name.
struct AllocationSite {
    const char* typeName;
    const char* declaration;
    const char* module;
    unsigned line;
};

class MemoryManager {
  public:
    enum class Kind : int { None = 0, Object = 1, Array = 2 };
    struct Release {
        Kind kind = Kind::None;
        void* raw = nullptr;
        std::size_t count = 0;
    };
    static constexpr std::size_t guardBytes = 8;

    MemoryManager() = default;
    ~MemoryManager();  // the final report
    MemoryManager(const MemoryManager&) = delete;
    MemoryManager& operator=(const MemoryManager&) = delete;

    // The process-wide registry.
    static MemoryManager& Default();

    void CheckDeclaration(const AllocationSite& site);
    void Register(Kind kind, void* user, void* raw, std::size_t userBytes, std::size_t count,
                  const AllocationSite& site);
    // Checks a delete and forgets the block; says what to destroy and free. Kind::None: nothing.
    Release CheckDelete(Kind expected, void* user, const char* module, unsigned line);
    void CheckAll();
    // The final report; afterwards nothing is registered or checked.
    void Finish();

    [[nodiscard]] bool HasCriticalError() const;
    [[nodiscard]] std::size_t LiveBlocks() const;
    // True when the address lies within the user bytes of a live block.
    [[nodiscard]] bool Holds(const void* address) const;

  private:
    struct Record {
        Kind kind;
        void* user;
        void* raw;
        std::uint32_t userBytes;
        std::string declaration;
        std::string module;
        std::uint32_t line;
        std::size_t count;
        std::string stack;  // of the allocation; nothing fills it
        Record* next;
    };
    bool CheckGuards(const Record& record);
    struct LeakTotal {
        std::uint64_t bytes = 0;
        std::size_t count = 0;
    };
    void ReportDamage(const Record& record, const char* stackHeader);
    void ReportWrongForm(const Record& record, const char* module, unsigned line);
    LeakTotal ListLeaks();  // writes the list and frees the records

    mutable std::recursive_mutex lock;  // of everything below; taken before the error log's own
    bool criticalError = false;
    bool enabled = true;
    Record* newest = nullptr;
};

namespace checked {
void* AllocateRaw(std::size_t userBytes);  // null when there is no memory
void FreeRaw(void* raw);
inline void* UserOf(void* raw) {
    return raw ? static_cast<unsigned char*>(raw) + MemoryManager::guardBytes : nullptr;
}

// The start of the whole object that a base pointer belongs to. A pointer outside every live block is not followed, so
// that a second delete can be reported.
template <typename T>
void* WholeObject(T* object) {
    if constexpr (std::is_polymorphic_v<T>)
        return MemoryManager::Default().Holds(object) ? dynamic_cast<void*>(object) : object;
    else
        return object;
}
}  // namespace checked

// Makes a T from `arguments`. Null only without memory.
template <typename T, typename... Arguments>
T* new2(const AllocationSite& site, Arguments&&... arguments) {
    static_assert(alignof(T) <= MemoryManager::guardBytes, "a checked block is aligned to 8 bytes");
    MemoryManager& manager = MemoryManager::Default();
    manager.CheckDeclaration(site);
    void* raw = checked::AllocateRaw(sizeof(T));
    void* user = checked::UserOf(raw);
    T* object = user ? ::new (user) T(std::forward<Arguments>(arguments)...) : nullptr;
    manager.Register(MemoryManager::Kind::Object, user, raw, sizeof(T), 1, site);
    return object;
}

// Makes `count` value-initialised elements. Null without memory or when the size would overflow.
template <typename T>
T* new2Array(const AllocationSite& site, std::size_t count) {
    static_assert(alignof(T) <= MemoryManager::guardBytes, "a checked block is aligned to 8 bytes");
    void* raw = count <= 0xFFFFFFFFU / sizeof(T) ? checked::AllocateRaw(count * sizeof(T)) : nullptr;
    T* user = static_cast<T*>(checked::UserOf(raw));
    for (std::size_t i = 0; user && i < count; ++i)
        ::new (user + i) T();
    MemoryManager::Default().Register(MemoryManager::Kind::Array, user, raw, count * sizeof(T), count, site);
    return user;
}

namespace checked {
template <typename T>
void Release(MemoryManager::Kind expected, T* object, const char* module, unsigned line) {
    const MemoryManager::Release release =
        MemoryManager::Default().CheckDelete(expected, WholeObject(object), module, line);
    if (release.kind == MemoryManager::Kind::None) return;
    if (release.kind == MemoryManager::Kind::Object)
        object->~T();
    else
        for (std::size_t i = 0; i < release.count; ++i)
            object[i].~T();
    FreeRaw(release.raw);
}
}  // namespace checked

// Destroys and frees what new2 made; a null or unknown pointer is reported and left alone. Module and line are the
// caller's.
template <typename T>
void delete2(T* object, const char* module, unsigned line) {
    checked::Release(MemoryManager::Kind::Object, object, module, line);
}
template <typename T>
void delete2Array(T* array, const char* module, unsigned line) {
    checked::Release(MemoryManager::Kind::Array, array, module, line);
}
