#include "platform/Symbols.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <dwarf.h>
#include <elfutils/libdw.h>
#include <elfutils/libdwfl.h>
#include <unistd.h>
#include <unwind.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace platform {

namespace {

constexpr std::size_t keptAddresses = 65536;

// The debug information of the loaded modules and what was already looked up in it.
struct Engine {
    std::mutex lock;
    Dwfl* dwfl = nullptr;
    pid_t process = 0;
    std::unordered_map<std::uintptr_t, std::vector<SymbolFrame>> known;
};
// Lives until the process is gone, because reports may come from the last static destructors.
Engine& TheEngine() {
    static Engine& engine = *new Engine;
    return engine;
}

// Debug files are looked for beside the modules only, never on a server.
const Dwfl_Callbacks& Callbacks() {
    static char* noPath = nullptr;
    static const Dwfl_Callbacks callbacks = {dwfl_linux_proc_find_elf, dwfl_build_id_find_debuginfo, nullptr, &noPath};
    return callbacks;
}

bool ReportModules(Dwfl* dwfl, pid_t process) {
    dwfl_report_begin(dwfl);
    const bool found = dwfl_linux_proc_report(dwfl, process) == 0;
    return dwfl_report_end(dwfl, nullptr, nullptr) == 0 && found;
}

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

// The closing bracket's partner; npos without one.
std::size_t OpeningBracket(const std::string& name, std::size_t closing) {
    int depth = 0;
    for (std::size_t i = closing + 1; i-- > 0;) {
        if (name[i] == ')') ++depth;
        if (name[i] == '(' && --depth == 0) return i;
    }
    return std::string::npos;
}

// Template functions carry their return type: it ends at the last space outside all brackets.
std::string WithoutReturnType(const std::string& name) {
    if (name.find("operator") != std::string::npos) return name;
    int depth = 0;
    for (std::size_t i = name.size(); i-- > 0;) {
        if (name[i] == '>' || name[i] == ')' || name[i] == '}') ++depth;
        if (name[i] == '<' || name[i] == '(' || name[i] == '{') --depth;
        if (name[i] == ' ' && depth == 0) return name.substr(i + 1);
    }
    return name;
}

// Leaves the qualified name: no ABI tags, no marks of split functions, no parameter list, no return type.
std::string WithoutParameters(std::string name) {
    for (const char* mark : {"[abi:cxx11]", " [clone"}) {
        for (std::size_t at = name.find(mark); at != std::string::npos; at = name.find(mark)) {
            const std::size_t end = name.find(']', at);
            name.erase(at, end == std::string::npos ? end : end - at + 1);
        }
    }
    const std::size_t closing = name.rfind(')');
    if (closing == std::string::npos) return name;
    const bool endsThere = name.find_first_of(":>#", closing) == std::string::npos;
    const std::size_t opening = OpeningBracket(name, closing);
    if (!endsThere || opening == std::string::npos || opening == 0) return name;
    return WithoutReturnType(name.substr(0, opening));
}

std::string Readable(const char* linkageName) {
    int status = 0;
    const std::unique_ptr<char, FreeMemory> plain(abi::__cxa_demangle(linkageName, nullptr, nullptr, &status));
    if (status == 0 && plain) return WithoutParameters(plain.get());
    // A name without C++ coding may carry the version of its library's interface.
    const std::string name = linkageName;
    return name.substr(0, name.find('@'));
}

std::string FunctionOf(Dwarf_Die& die) {
    Dwarf_Attribute attribute;
    for (const unsigned kind : {unsigned(DW_AT_linkage_name), unsigned(DW_AT_MIPS_linkage_name)})
        if (Dwarf_Attribute* found = dwarf_attr_integrate(&die, kind, &attribute))
            if (const char* name = dwarf_formstring(found)) return Readable(name);
    const char* name = dwarf_diename(&die);
    return name ? name : "";
}

std::string ModuleNameOf(Dwfl_Module* module) {
    const char* path = nullptr;
    const char* name = dwfl_module_info(module, nullptr, nullptr, nullptr, nullptr, nullptr, &path, nullptr);
    const std::string whole = path ? path : name ? name : "";
    return whole.substr(whole.rfind('/') + 1);
}

// The place in the function around an inlined call: the file and line of that call.
void MoveToCallSite(Dwarf_Die& inlined, Dwarf_Die& unit, SymbolFrame& frame) {
    frame.file.clear();
    frame.line = 0;
    Dwarf_Attribute attribute;
    Dwarf_Word line = 0;
    Dwarf_Word file = 0;
    if (dwarf_formudata(dwarf_attr(&inlined, DW_AT_call_line, &attribute), &line) == 0)
        frame.line = static_cast<int>(line);
    Dwarf_Files* files = nullptr;
    if (dwarf_formudata(dwarf_attr(&inlined, DW_AT_call_file, &attribute), &file) != 0) return;
    if (dwarf_getsrcfiles(&unit, &files, nullptr) != 0) return;
    if (const char* source = dwarf_filesrc(files, file, nullptr, nullptr)) frame.file = source;
}

// `frame` holds module and innermost place; each inlined call adds a frame for the function around it.
void AddFrames(Dwfl_Module* module, Dwarf_Addr address, SymbolFrame frame, std::vector<SymbolFrame>& frames) {
    const char* linkageName = dwfl_module_addrname(module, address);
    Dwarf_Addr bias = 0;
    Dwarf_Die* unit = dwfl_module_addrdie(module, address, &bias);
    Dwarf_Die* around = nullptr;
    const int aroundCount = unit ? dwarf_getscopes(unit, address - bias, &around) : 0;
    const std::unique_ptr<Dwarf_Die, FreeMemory> ownAround(around);
    Dwarf_Die* scopes = nullptr;
    const int count = aroundCount > 0 ? dwarf_getscopes_die(&around[0], &scopes) : 0;
    const std::unique_ptr<Dwarf_Die, FreeMemory> ownScopes(scopes);
    for (int i = 0; i < count; ++i) {
        const int tag = dwarf_tag(&scopes[i]);
        if (tag == DW_TAG_subprogram) {
            frame.function = linkageName ? Readable(linkageName) : FunctionOf(scopes[i]);
            frames.push_back(frame);
            return;
        }
        if (tag != DW_TAG_inlined_subroutine) continue;
        frame.function = FunctionOf(scopes[i]);
        frames.push_back(frame);
        MoveToCallSite(scopes[i], *unit, frame);
    }
    frame.function = linkageName ? Readable(linkageName) : "";
    frames.push_back(frame);
}

std::vector<SymbolFrame> LookUp(Dwfl* dwfl, pid_t process, Dwarf_Addr address) {
    Dwfl_Module* module = dwfl_addrmodule(dwfl, address);
    // A library may have been loaded since the last look.
    if (!module && ReportModules(dwfl, process)) module = dwfl_addrmodule(dwfl, address);
    std::vector<SymbolFrame> frames;
    if (!module) return {SymbolFrame()};
    SymbolFrame frame;
    frame.module = ModuleNameOf(module);
    if (Dwfl_Line* line = dwfl_module_getsrc(module, address))
        if (const char* file = dwfl_lineinfo(line, nullptr, &frame.line, nullptr, nullptr, nullptr)) frame.file = file;
    AddFrames(module, address, frame, frames);
    return frames;
}

struct Capture {
    std::vector<std::uintptr_t>* addresses;
    std::size_t limit;
    std::uintptr_t begin;  // the first address wanted; 0 once it was met
};

_Unwind_Reason_Code TakeFrame(_Unwind_Context* context, void* state) {
    auto& capture = *static_cast<Capture*>(state);
    const std::uintptr_t address = _Unwind_GetIP(context);
    if (capture.begin != 0 && address != capture.begin) return _URC_NO_REASON;
    capture.begin = 0;
    if (address == 0 || capture.addresses->size() >= capture.limit) return _URC_END_OF_STACK;
    capture.addresses->push_back(address);
    return _URC_NO_REASON;
}

}  // namespace

bool StartSymbols(long process) {
    Engine& engine = TheEngine();
    const std::lock_guard<std::mutex> hold(engine.lock);
    if (engine.dwfl) return true;
    Dwfl* dwfl = dwfl_begin(&Callbacks());
    if (!dwfl) return false;
    engine.process = process == 0 ? getpid() : static_cast<pid_t>(process);
    if (!ReportModules(dwfl, engine.process)) {
        dwfl_end(dwfl);
        return false;
    }
    engine.dwfl = dwfl;
    return true;
}

void StopSymbols() {
    Engine& engine = TheEngine();
    const std::lock_guard<std::mutex> hold(engine.lock);
    if (engine.dwfl) dwfl_end(engine.dwfl);
    engine.dwfl = nullptr;
    engine.known.clear();
}

[[gnu::noinline]] std::vector<std::uintptr_t> CaptureStack(std::size_t limit) {
    std::vector<std::uintptr_t> addresses;
    addresses.reserve(limit);
    Capture capture{&addresses, limit, reinterpret_cast<std::uintptr_t>(__builtin_return_address(0))};
    _Unwind_Backtrace(TakeFrame, &capture);
    return addresses;
}

std::vector<SymbolFrame> NameAddress(std::uintptr_t returnAddress) {
    Engine& engine = TheEngine();
    const std::lock_guard<std::mutex> hold(engine.lock);
    if (!engine.dwfl || returnAddress == 0) return {SymbolFrame()};
    const auto found = engine.known.find(returnAddress);
    if (found != engine.known.end()) return found->second;
    if (engine.known.size() >= keptAddresses) engine.known.clear();
    // The call lies before the address that it returns to.
    return engine.known[returnAddress] = LookUp(engine.dwfl, engine.process, returnAddress - 1);
}

}  // namespace platform
