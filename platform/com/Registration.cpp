#include "platform/com/Registration.h"

#include <algorithm>
#include <ranges>

#include "platform/com/ComPtr.h"
#include "platform/com/Errors.h"
#include "platform/com/Text.h"

namespace com {
namespace {

constexpr wchar_t Version[] = L"1.0";
constexpr wchar_t TypeLibraryMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";

#ifdef _WIN64
constexpr wchar_t Platform[] = L"win64";
constexpr wchar_t OtherPlatform[] = L"win32";
constexpr REGSAM OtherView = KEY_WOW64_32KEY;
#else
constexpr wchar_t Platform[] = L"win32";
constexpr wchar_t OtherPlatform[] = L"win64";
constexpr REGSAM OtherView = KEY_WOW64_64KEY;
#endif

std::wstring Joined(const std::wstring& key, const std::wstring& below) { return key + L'\\' + below; }

std::wstring ClassKey(REFCLSID clsid) { return L"CLSID\\" + ToText(clsid); }

// ---- the rows ----

void AddClass(std::vector<RegistrationRow>& rows, const ClassEntry& entry, REFGUID library, const std::wstring& file) {
    const auto clsid = ToText(*entry.clsid);
    const auto progId = Wide(entry.progId);
    const auto name = Wide(entry.name);
    const auto key = ClassKey(*entry.clsid);
    const auto server = Joined(key, L"InprocServer32");
    rows.push_back({progId, L"", name, true});
    rows.push_back({Joined(progId, L"CLSID"), L"", clsid, true});
    rows.push_back({key, L"", name});
    rows.push_back({server, L"", file});
    rows.push_back({server, L"ThreadingModel", entry.threading == Threading::Both ? L"Both" : L"Apartment"});
    rows.push_back({Joined(key, L"ProgID"), L"", progId});
    rows.push_back({Joined(key, L"VersionIndependentProgID"), L"", progId});
    rows.push_back({Joined(key, L"TypeLib"), L"", ToText(library)});
    rows.push_back({Joined(key, L"Version"), L"", Version});
    for (const auto category : entry.categories) {
        rows.push_back({Joined(key, L"Implemented Categories\\" + ToText(*category)), L"", std::nullopt});
    }
}

void AddInterfaces(std::vector<RegistrationRow>& rows, ITypeLib* library, const std::wstring& libid) {
    const UINT count = library->GetTypeInfoCount();
    for (UINT index = 0; index < count; ++index) {
        ComPtr<ITypeInfo> description;
        Check(library->GetTypeInfo(index, description.put()));
        TYPEATTR* attributes = nullptr;
        Check(description->GetTypeAttr(&attributes));
        const bool marshalled =
            attributes->typekind == TKIND_DISPATCH && (attributes->wTypeFlags & TYPEFLAG_FDUAL) != 0;
        const auto key = L"Interface\\" + ToText(attributes->guid);
        description->ReleaseTypeAttr(attributes);
        if (!marshalled) continue;
        Bstr name;
        Check(description->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr));
        rows.push_back({key, L"", Wide(name.Utf8())});
        rows.push_back({Joined(key, L"ProxyStubClsid32"), L"", TypeLibraryMarshaller});
        rows.push_back({Joined(key, L"TypeLib"), L"", libid});
        rows.push_back({Joined(key, L"TypeLib"), L"Version", Version});
    }
}

void AddTypeLibrary(std::vector<RegistrationRow>& rows, const std::wstring& file) {
    ComPtr<ITypeLib> library;
    Check(LoadTypeLibEx(file.c_str(), REGKIND_NONE, library.put()));
    TLIBATTR* attributes = nullptr;
    Check(library->GetLibAttr(&attributes));
    const auto libid = ToText(attributes->guid);
    const auto flags = std::to_wstring(attributes->wLibFlags & ~LIBFLAG_FHASDISKIMAGE);
    wchar_t locale[9];
    wsprintfW(locale, L"%x", attributes->lcid);
    library->ReleaseTLibAttr(attributes);
    Bstr description;
    Check(library->GetDocumentation(MEMBERID_NIL, nullptr, description.put(), nullptr, nullptr));

    const auto key = L"TypeLib\\" + libid + L"\\" + Version;
    rows.push_back({key, L"", Wide(description.Utf8()), true});
    rows.push_back({Joined(key, L"FLAGS"), L"", flags, true});
    // Who asks for another language than the library's finds it under the neutral one.
    for (const auto& language : {std::wstring(locale), std::wstring(L"0")}) {
        rows.push_back({Joined(key, language + L"\\" + Platform), L"", file});
    }
    AddInterfaces(rows, library.get(), libid);
}

// ---- the registry ----

void CheckRegistry(LSTATUS status) { Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status))); }

class Key {
  public:
    Key() = default;
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (key_) RegCloseKey(key_);
    }

    void Create(const std::wstring& path) {
        CheckRegistry(
            RegCreateKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key_, nullptr));
    }
    bool Open(const std::wstring& path, REGSAM access) {
        return RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, access, &key_) == ERROR_SUCCESS;
    }
    void Write(const std::wstring& name, const std::wstring& data) {
        CheckRegistry(RegSetValueExW(key_, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                                     static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t))));
    }
    std::optional<std::wstring> Read(const std::wstring& name) const {
        DWORD size = 0;
        if (RegGetValueW(key_, nullptr, name.c_str(), RRF_RT_REG_SZ, nullptr, nullptr, &size) != ERROR_SUCCESS) {
            return std::nullopt;
        }
        std::wstring data(size / sizeof(wchar_t), L'\0');
        if (RegGetValueW(key_, nullptr, name.c_str(), RRF_RT_REG_SZ, nullptr, data.data(), &size) != ERROR_SUCCESS) {
            return std::nullopt;
        }
        data.resize(wcsnlen(data.c_str(), data.size()));
        return data;
    }
    void Delete(const std::wstring& name) { RegDeleteValueW(key_, name.c_str()); }
    bool Empty() const {
        DWORD keys = 0;
        DWORD values = 0;
        return RegQueryInfoKeyW(key_, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr,
                                nullptr, nullptr) == ERROR_SUCCESS &&
               keys == 0 && values == 0;
    }

  private:
    HKEY key_ = nullptr;
};

std::optional<std::wstring> ReadValue(const std::wstring& path, REGSAM view) {
    Key key;
    if (!key.Open(path, KEY_READ | view)) return std::nullopt;
    return key.Read(L"");
}

bool SameFile(const std::optional<std::wstring>& registered, const std::wstring& file) {
    return registered && lstrcmpiW(registered->c_str(), file.c_str()) == 0;
}

void Write(const RegistrationRow& row) {
    Key key;
    key.Create(row.key);
    if (row.data) key.Write(row.name, *row.data);
}

// Deletes the key if nothing is left in it, and those above it in the same way. A key at the top holds others' entries
// too.
void Prune(std::wstring path) {
    do {
        {
            Key key;
            if (!key.Open(path, KEY_READ) || !key.Empty()) return;
        }
        if (RegDeleteKeyW(HKEY_CLASSES_ROOT, path.c_str()) != ERROR_SUCCESS) return;
        path.resize(std::min(path.size(), path.rfind(L'\\')));
    } while (path.find(L'\\') != std::wstring::npos);
}

void Remove(const RegistrationRow& row) {
    {
        Key key;
        if (!key.Open(row.key, KEY_READ | KEY_WRITE)) return;
        if (row.data && key.Read(row.name) == row.data) key.Delete(row.name);
    }
    Prune(row.key);
}

// True while the DLL of the other bitness is registered: both share what is no class's own.
bool OtherBitnessRegistered(const Server& server) {
    const auto library = L"TypeLib\\" + ToText(*server.library) + L"\\" + Version + L"\\0\\" + OtherPlatform;
    return ReadValue(library, OtherView).has_value();
}

}  // namespace

std::vector<RegistrationRow> RegistrationRows(const Server& server, const std::wstring& file) {
    std::vector<RegistrationRow> rows;
    for (const auto& category : server.categories) {
        rows.push_back({L"Component Categories\\" + ToText(*category.catid), L"409", Wide(category.description), true});
    }
    AddTypeLibrary(rows, file);
    for (const auto& entry : server.classes) AddClass(rows, entry, *server.library, file);
    return rows;
}

HRESULT Register(const Server& server) {
    const HRESULT result = Border(IID_NULL, [&] {
        for (const auto& row : RegistrationRows(server, FileName(ThisModule()))) Write(row);
    });
    if (FAILED(result)) Unregister(server);
    return result;
}

HRESULT Unregister(const Server& server) {
    return Border(IID_NULL, [&] {
        const auto file = FileName(ThisModule());
        const bool keepShared = OtherBitnessRegistered(server);
        const auto rows = RegistrationRows(server, file);
        const auto registered = ReadValue(ClassKey(*server.classes.front().clsid) + L"\\InprocServer32", 0);
        if (registered && !SameFile(registered, file)) return;  // another file has taken over
        for (const auto& row : rows | std::views::reverse) {
            if (!row.shared || !keepShared) Remove(row);
        }
    });
}

}  // namespace com
