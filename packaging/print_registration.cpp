// Prints what a component registers, one value a line: key, name and data, separated by tabs. "[file]" stands for the
// component's own path, a line without name and data for a key without values.
//
//   print-registration.exe COMPONENT.dll
//
// The component registers itself in a key of this program's own, and nothing of that stays.

#include <cstdio>
#include <string>

#include "platform/com/Server.h"
#include "platform/com/Text.h"

namespace {

constexpr wchar_t Classes[] = L"Software\\Classes";

void PrintLine(const std::wstring& key, const std::wstring& rest) {
    std::printf("%s%s\n", com::Utf8(key).c_str(), com::Utf8(rest).c_str());
}

// Prints the values of the key and what is below it; `path` is its name among the classes.
void Print(HKEY above, const std::wstring& name, const std::wstring& path, const std::wstring& file) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(above, name.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    DWORD keys = 0;
    DWORD values = 0;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr, nullptr,
                     nullptr);
    if (keys == 0 && values == 0) PrintLine(path, L"");
    for (DWORD index = 0; index < values; ++index) {
        wchar_t value[256];
        wchar_t data[1024] = L"";
        DWORD length = 256;
        DWORD size = sizeof data - sizeof(wchar_t);
        RegEnumValueW(key, index, value, &length, nullptr, nullptr, reinterpret_cast<BYTE*>(data), &size);
        PrintLine(path, L'\t' + std::wstring(value) + L'\t' + (data == file ? L"[file]" : data));
    }
    for (DWORD index = 0; index < keys; ++index) {
        wchar_t below[256];
        RegEnumKeyW(key, index, below, 256);
        Print(key, below, path.empty() ? below : path + L'\\' + below, file);
    }
    RegCloseKey(key);
}

HRESULT RegisterIn(HKEY machine, HMODULE component) {
    const auto install = reinterpret_cast<HRESULT(STDAPICALLTYPE*)(BOOL, LPCWSTR)>(
        reinterpret_cast<void*>(GetProcAddress(component, "DllInstall")));
    if (!install) return E_NOINTERFACE;
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine);
    const HRESULT result = install(TRUE, L"force");
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    return result;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    const HMODULE component = count == 2 ? LoadLibraryW(arguments[1]) : nullptr;
    if (!component) {
        std::fputs("usage: print-registration.exe COMPONENT.dll\n", stderr);
        return 2;
    }
    const std::wstring own = L"Software\\print-registration-" + std::to_wstring(GetCurrentProcessId());
    HKEY machine = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, own.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &machine, nullptr);
    const HRESULT result = RegisterIn(machine, component);
    if (SUCCEEDED(result)) {
        Print(machine, Classes, L"", com::FileName(component));
    } else {
        std::fprintf(stderr, "Registering failed with %08lX\n", static_cast<unsigned long>(result));
    }
    RegCloseKey(machine);
    RegDeleteTreeW(HKEY_CURRENT_USER, own.c_str());
    return SUCCEEDED(result) ? 0 : 1;
}
