#include <cxxabi.h>
#include <pthread.h>

#include <cstdlib>
#include <cstring>

#include "platform/com/TypeLibrary.h"
#include "platform/com/Windows.h"

// Where the system enters a server's module and leaves it. The C++ runtime that is linked into the module takes memory,
// thread-local slots and handles for as long as the process lives. A host may load and unload a server any number of
// times; so the module brings its own heap and its own place for the state of exceptions, and gives everything back.

extern "C" {
extern const IMAGE_TLS_DIRECTORY _tls_used;
BOOL WINAPI DllMainCRTStartup(HINSTANCE, DWORD, LPVOID);
BOOL WINAPI ServerStartup(HINSTANCE, DWORD, LPVOID) __asm__("ServerStartup");
}

namespace __cxxabiv1 {
struct __cxa_eh_globals {
    void* caughtExceptions;
    unsigned int uncaughtExceptions;
};
}  // namespace __cxxabiv1

namespace {

HANDLE heap = nullptr;
DWORD exceptionState = TLS_OUT_OF_INDEXES;
DWORD threadState = TLS_OUT_OF_INDEXES;

// The slot in which the runtime keeps what it knows of a thread is known only to the runtime. It is the next one that
// is free, unless another thread takes that at the same moment.
DWORD SlotOfThreads() {
    const DWORD next = TlsAlloc();
    TlsFree(next);
    static_cast<void>(pthread_self());
    return TlsGetValue(next) ? next : TLS_OUT_OF_INDEXES;
}

bool Enter() {
    heap = HeapCreate(0, 0, 0);
    exceptionState = TlsAlloc();
    if (!heap || exceptionState == TLS_OUT_OF_INDEXES) return false;
    threadState = SlotOfThreads();
    return true;
}

// The last thing that happens in the module.
void Leave(HINSTANCE module) {
    // The runtime closes the handles of a thread when the thread ends; this one does not end, but has no further use of
    // the module. Those of other threads that used the module stay open.
    for (auto callback = reinterpret_cast<const PIMAGE_TLS_CALLBACK*>(_tls_used.AddressOfCallBacks); *callback;
         ++callback) {
        (*callback)(module, DLL_THREAD_DETACH, nullptr);
    }
    if (threadState != TLS_OUT_OF_INDEXES) TlsFree(threadState);
    TlsFree(exceptionState);
    HeapDestroy(heap);
}

}  // namespace

// All that hands out memory for free() has to take it from the same heap.

void* malloc(std::size_t size) { return HeapAlloc(heap, 0, size); }

void* calloc(std::size_t count, std::size_t size) {
    if (size != 0 && count > static_cast<std::size_t>(-1) / size) return nullptr;
    return HeapAlloc(heap, HEAP_ZERO_MEMORY, count * size);
}

void* realloc(void* block, std::size_t size) {
    return block ? HeapReAlloc(heap, 0, block, size) : HeapAlloc(heap, 0, size);
}

void free(void* block) {
    if (block) HeapFree(heap, 0, block);
}

char* strdup(const char* text) {
    const auto size = std::strlen(text) + 1;
    void* copy = malloc(size);
    return copy ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

extern "C" __cxxabiv1::__cxa_eh_globals* __cxa_get_globals_fast() noexcept {
    return static_cast<__cxxabiv1::__cxa_eh_globals*>(TlsGetValue(exceptionState));
}

extern "C" __cxxabiv1::__cxa_eh_globals* __cxa_get_globals() noexcept {
    auto* state = __cxa_get_globals_fast();
    if (!state) {
        state = static_cast<__cxxabiv1::__cxa_eh_globals*>(calloc(1, sizeof *state));
        if (!state || !TlsSetValue(exceptionState, state)) std::abort();
    }
    return state;
}

BOOL WINAPI ServerStartup(HINSTANCE module, DWORD reason, LPVOID ending) {
    if (reason == DLL_PROCESS_ATTACH && !Enter()) return FALSE;
    // A process that ends takes everything with it, and other modules may have gone before.
    const bool unloaded = reason == DLL_PROCESS_DETACH && !ending;
    if (unloaded) com::SharedTypeInfo::ReleaseAll();
    const BOOL done = DllMainCRTStartup(module, reason, ending);
    if (reason == DLL_THREAD_DETACH) free(__cxa_get_globals_fast());
    if (unloaded) Leave(module);
    return done;
}
