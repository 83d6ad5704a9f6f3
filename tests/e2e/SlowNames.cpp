// Preloaded into the client: names that end in ".slow" are looked up without end, as with a name server that is silent.

#include <dlfcn.h>
#include <netdb.h>
#include <unistd.h>

#include <string_view>

extern "C" int getaddrinfo(const char* host, const char* service, const addrinfo* wanted, addrinfo** found) {
    while (host && std::string_view(host).ends_with(".slow"))
        pause();
    using LookUp = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
    return reinterpret_cast<LookUp>(dlsym(RTLD_NEXT, "getaddrinfo"))(host, service, wanted, found);
}
