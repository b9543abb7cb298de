#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <cstdlib>
#include <string>
#include <system_error>
#include <type_traits>

#include "host/ByteLink.h"
#include "host/VisaRuntime.h"

namespace host::visa {

namespace {

#ifdef _WIN32
constexpr const char* Name = sizeof(void*) == 8 ? "visa64.dll" : "visa32.dll";

void* OpenLibrary(const char* name) { return LoadLibraryA(name); }
void* Find(void* library, const char* function) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), function));
}
std::string ErrorText() { return std::system_category().message(static_cast<int>(GetLastError())); }
#else
constexpr const char* Name = "libvisa.so";

void* OpenLibrary(const char* name) { return dlopen(name, RTLD_NOW | RTLD_LOCAL); }
void* Find(void* library, const char* function) { return dlsym(library, function); }
std::string ErrorText() { return dlerror(); }
#endif

}  // namespace

Runtime Load() {
    const char* chosen = std::getenv("CONDUIT_VISA");
    const std::string name = chosen && *chosen ? chosen : Name;
    const std::string cure = ". Install the " + std::to_string(8 * sizeof(void*)) +
                             "-bit VISA runtime of the GPIB interface's maker, or choose TCP/IP or RS232 in the "
                             "setting \"Remote Control\"";
    void* library = OpenLibrary(name.c_str());
    if (!library) {
        throw OpeningFailure{"GPIB needs a VISA runtime, and " + name + " cannot be loaded: " + ErrorText() + cure};
    }
    Runtime runtime;
    const auto find = [&](auto& function, const char* functionName) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(Find(library, functionName));
        if (function) return;
        throw OpeningFailure{name + " is no VISA runtime, it has no " + functionName + cure};
    };
    find(runtime.OpenDefaultRM, "viOpenDefaultRM");
    find(runtime.Open, "viOpen");
    find(runtime.Close, "viClose");
    find(runtime.SetAttribute, "viSetAttribute");
    find(runtime.Read, "viRead");
    find(runtime.Write, "viWrite");
    find(runtime.Clear, "viClear");
    find(runtime.StatusDesc, "viStatusDesc");
    return runtime;
}

}  // namespace host::visa
