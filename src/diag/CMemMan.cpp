#include "diag/CMemMan.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "platform/MessageBox.h"
#include "platform/SystemQuery.h"

namespace {

constexpr unsigned char guardByte = 0xA5;

enum class Guard { Whole, Damaged, Unreadable };

Guard GuardAt(const unsigned char* guard) {
    if (!platform::IsReadable(guard, MemoryManager::guardBytes)) return Guard::Unreadable;
    for (std::size_t i = 0; i < MemoryManager::guardBytes; ++i)
        if (guard[i] != guardByte) return Guard::Damaged;
    return Guard::Whole;
}

std::string StackOfCaller() {
    std::string stack = CallStack();
    return SkipFirstLine(stack);
}

// Numbers in the reports are signed, as the logs write them.
std::string Decimal(std::uint32_t number) {
    return std::to_string(static_cast<std::int32_t>(number));
}

}  // namespace

MemoryManager::~MemoryManager() {
    Finish();
}

void MemoryManager::CheckDeclaration(const AllocationSite& site) {
    if (std::string_view(site.declaration).starts_with(site.typeName)) return;
    errorLog.WriteReport({"object declaration doesn't match type name provided to new2.\n",
                          "  -type name: ", site.typeName, "\n", "  -object dec: ", site.declaration, "\n",
                          "  -call stack:\n", CallStack(), "\n"});
}

void MemoryManager::Register(Kind kind, void* user, void* raw, std::size_t userBytes, std::size_t count,
                             const AllocationSite& site) {
    const std::lock_guard<std::recursive_mutex> hold(lock);
    if (!enabled) return;
    if (!user) {
        errorLog.WriteReport({"Out of memory trying to alloc?  A call to now must have failed...\n", "  -call stack:\n",
                              CallStack(), "\n"});
        return;
    }
    newest = new Record{
        kind,  user,          raw,   static_cast<std::uint32_t>(userBytes), site.declaration, site.module, site.line,
        count, std::string(), newest};
    std::memset(raw, guardByte, guardBytes);
    std::memset(static_cast<unsigned char*>(user) + userBytes, guardByte, guardBytes);
}

bool MemoryManager::CheckGuards(const Record& record) {
    const auto* user = static_cast<const unsigned char*>(record.user);
    bool damaged = false;
    const auto report = [&damaged](const char* text) {
        errorLog.Write(text);
        damaged = true;
    };
    switch (GuardAt(user - guardBytes)) {
        case Guard::Damaged:
            report("WARNING: Damage to memory BEFORE an allocation.\n");
            break;
        case Guard::Unreadable:
            report("WARNING: CRASH trying to verify the padding BEFORE an allocation.\n");
            break;
        case Guard::Whole:
            break;
    }
    switch (GuardAt(user + record.userBytes)) {
        case Guard::Damaged:
            report("WARNING: Damage to memory AFTER an allocation.\n");
            break;
        case Guard::Unreadable:
            report("WARNING: CRASH trying to verify the padding AFTER an allocation.\n");
            break;
        case Guard::Whole:
            break;
    }
    return !damaged;
}

void MemoryManager::ReportDamage(const Record& record, const char* stackHeader) {
    criticalError = true;
    errorLog.WriteReport({"  -object: ", record.declaration, "\n", "  -Allocated in ", record.module, " line ",
                          Decimal(record.line), ".\n", "  -Call stack for allocation:\n", record.stack, stackHeader,
                          CallStack(), "\n\n"});
}

void MemoryManager::ReportWrongForm(const Record& record, const char* module, unsigned line) {
    criticalError = true;
    errorLog.WriteReport({"Error: Wrong delete operator used when freeing memory.\n",
                          record.kind == Kind::Object
                              ? "  -Delete array used on memory allocated with new (non-array).\n"
                              : "  -Delete (non-array) used on memory allocated with new array.\n",
                          "  -delete call made in ", module, " line ", Decimal(line), ".\n",
                          "  -call made on memory that was allocated in ", record.module, " line ",
                          Decimal(record.line), ".\n", "  -call stack:\n", StackOfCaller(), "\n"});
}

MemoryManager::Release MemoryManager::CheckDelete(Kind expected, void* user, const char* module, unsigned line) {
    const std::lock_guard<std::recursive_mutex> hold(lock);
    if (!enabled) return {};
    if (!platform::IsReadable(user, 1))
        errorLog.WriteReport({"TEST_POINTER: bad pointer tested: ", "addr", "\n  -call stack:\n", CallStack(), "\n"});
    if (!user) {
        criticalError = true;
        errorLog.WriteReport({"Error: delete being used on a null pointer.\n", "  -delete call made in ", module,
                              " line ", Decimal(line), ".\n", "  -call stack:\n", StackOfCaller(), "\n"});
        return {};
    }
    Record** link = &newest;
    while (*link && (*link)->user != user)
        link = &(*link)->next;
    if (!*link) {
        criticalError = true;
        errorLog.WriteReport({"Error: delete used on memory that doesn't exist.\n", "  -delete call made in ", module,
                              " line ", Decimal(line), "\n", "  -call stack:\n", StackOfCaller(), "\n", "\n"});
        return {};
    }
    const std::unique_ptr<Record> record(*link);
    if (record->kind != expected) ReportWrongForm(*record, module, line);
    if (!CheckGuards(*record)) ReportDamage(*record, "  -Call stack for this delete:\n");
    *link = record->next;
    return {record->kind, record->raw, record->count};
}

void MemoryManager::CheckAll() {
    const std::lock_guard<std::recursive_mutex> hold(lock);
    if (!enabled) return;
    for (const Record* record = newest; record; record = record->next)
        if (!CheckGuards(*record)) ReportDamage(*record, "  -Call stack for this check:\n");
}

void MemoryManager::Finish() {
    bool damaged = false;
    LeakTotal leaks;
    {
        const std::lock_guard<std::recursive_mutex> hold(lock);
        if (!enabled) return;
        CheckAll();
        enabled = false;
        damaged = criticalError;
    }
    // The boxes wait for the user, so they stand outside the lock.
    if (damaged)
        platform::ShowMessageBox("Critical memory management errors occured.\nCheck _error.txt for details.\n",
                                 "Critical Memory Error", platform::BoxKind::Ok, false);
    {
        const std::lock_guard<std::recursive_mutex> hold(lock);
        leaks = ListLeaks();
    }
    if (leaks.count == 0) return;
    platform::ShowMessageBox("Memory was allocated and never freed.\n" + std::to_string(leaks.bytes) +
                                 " byte(s) leaked.\n" + std::to_string(leaks.count) + " total unfreed allocations.\n" +
                                 "See _error.txt for details.\n",
                             "Memory Leaks", platform::BoxKind::Ok, false);
}

MemoryManager::LeakTotal MemoryManager::ListLeaks() {
    LeakTotal total;
    for (const Record* record = newest; record; record = record->next) {
        total.bytes += record->userBytes;
        ++total.count;
    }
    if (total.count == 0) return total;
    errorLog.WriteReport({"\nTotal memory leaks: ", std::to_string(total.bytes), " bytes in ",
                          std::to_string(total.count), " allocation(s).\n", "\n -- List of memory leaks --\n"});
    while (newest) {
        const std::unique_ptr<Record> record(newest);
        errorLog.WriteReport({record->kind == Kind::Object ? "Object \"" : "Array of \"", record->declaration, "\" (",
                              Decimal(record->userBytes), " bytes total):\n", "  -Allocated in ", record->module,
                              " line ", Decimal(record->line), ".\n", "  -call stack of allocation:\n", record->stack,
                              "\n"});
        newest = record->next;
    }
    return total;
}

bool MemoryManager::Holds(const void* address) const {
    const std::lock_guard<std::recursive_mutex> hold(lock);
    const auto at = reinterpret_cast<std::uintptr_t>(address);
    for (const Record* record = newest; record; record = record->next) {
        const auto begin = reinterpret_cast<std::uintptr_t>(record->user);
        if (at >= begin && at - begin < record->userBytes) return true;
    }
    return false;
}

bool MemoryManager::HasCriticalError() const {
    const std::lock_guard<std::recursive_mutex> hold(lock);
    return criticalError;
}

std::size_t MemoryManager::LiveBlocks() const {
    const std::lock_guard<std::recursive_mutex> hold(lock);
    std::size_t count = 0;
    for (const Record* record = newest; record; record = record->next)
        ++count;
    return count;
}

namespace checked {

void* AllocateRaw(std::size_t userBytes) {
    return userBytes <= SIZE_MAX - 2 * MemoryManager::guardBytes
               ? std::malloc(userBytes + 2 * MemoryManager::guardBytes)
               : nullptr;
}

void FreeRaw(void* raw) {
    std::free(raw);
}

}  // namespace checked
