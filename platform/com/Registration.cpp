#include "platform/com/Registration.h"

#include <cstdint>
#include <memory>
#include <utility>

#include "platform/com/ComPtr.h"
#include "platform/com/Errors.h"
#include "platform/com/Text.h"
#include "platform/com/TypeLibrary.h"

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

// ---- the rows ----

void AddClass(std::vector<RegistrationRow>& rows, const ClassEntry& entry, REFGUID library, const std::wstring& file) {
    const auto clsid = ToText(*entry.clsid);
    const auto progId = Wide(entry.progId);
    const auto name = Wide(entry.name);
    const auto key = L"CLSID\\" + clsid;
    const auto server = Joined(key, L"InprocServer32");
    rows.push_back({server, L"", file});
    rows.push_back({server, L"ThreadingModel", entry.threading == Threading::Both ? L"Both" : L"Apartment"});
    rows.push_back({key, L"", name});
    rows.push_back({Joined(key, L"ProgID"), L"", progId});
    rows.push_back({Joined(key, L"VersionIndependentProgID"), L"", progId});
    rows.push_back({Joined(key, L"TypeLib"), L"", ToText(library)});
    rows.push_back({Joined(key, L"Version"), L"", Version});
    for (const auto category : entry.categories) {
        rows.push_back({Joined(key, L"Implemented Categories\\" + ToText(*category)), L"", std::nullopt});
    }
    rows.push_back({.key = Joined(progId, L"CLSID"), .data = clsid, .shared = true, .claim = true});
    rows.push_back({.key = progId, .data = name, .shared = true});
}

void AddInterfaces(std::vector<RegistrationRow>& rows, ITypeLib* library, const std::wstring& libid) {
    const UINT count = library->GetTypeInfoCount();
    for (UINT index = 0; index < count; ++index) {
        ComPtr<ITypeInfo> description;
        Check(library->GetTypeInfo(index, description.put()));
        const auto attributes = AttributesOf(description);
        if (attributes.typekind != TKIND_DISPATCH || (attributes.wTypeFlags & TYPEFLAG_FDUAL) == 0) continue;
        const auto key = L"Interface\\" + ToText(attributes.guid);
        Bstr name;
        Check(description->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr));
        rows.push_back({.key = Joined(key, L"TypeLib"), .data = libid, .claim = true});
        rows.push_back({key, L"", Wide(name.Utf8())});
        rows.push_back({Joined(key, L"ProxyStubClsid32"), L"", TypeLibraryMarshaller});
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
    // Who asks for another language than the library's finds it under the neutral one.
    for (const auto& language : {std::wstring(L"0"), std::wstring(locale)}) {
        rows.push_back({Joined(key, language + L"\\" + Platform), L"", file});
    }
    rows.push_back({key, L"", Wide(description.Utf8()), true});
    rows.push_back({Joined(key, L"FLAGS"), L"", flags, true});
    AddInterfaces(rows, library.get(), libid);
}

// ---- the registry ----

void CheckRegistry(LSTATUS status) { Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status))); }

// The classes of the machine or of the user. HKEY_CLASSES_ROOT shows both, and writes to either.
HKEY Hive(Scope scope) { return scope == Scope::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE; }
std::wstring Path(const std::wstring& key) { return L"Software\\Classes\\" + key; }

struct CloseKey {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

// None when there is no such key.
Key Open(Scope scope, const std::wstring& key, REGSAM view = 0) {
    HKEY opened = nullptr;
    const LSTATUS status = RegOpenKeyExW(Hive(scope), Path(key).c_str(), 0, KEY_READ | view, &opened);
    return Key(status == ERROR_SUCCESS ? opened : nullptr);
}

struct Content {
    DWORD type;
    std::vector<BYTE> bytes;
};

std::optional<Content> Read(HKEY key, const std::wstring& name, DWORD types) {
    DWORD size = 0;
    if (RegGetValueW(key, nullptr, name.c_str(), types, nullptr, nullptr, &size) != ERROR_SUCCESS) return {};
    Content content{0, std::vector<BYTE>(size)};
    const LSTATUS status = RegGetValueW(key, nullptr, name.c_str(), types, &content.type, content.bytes.data(), &size);
    content.bytes.resize(size);
    return status == ERROR_SUCCESS ? std::optional(std::move(content)) : std::nullopt;
}

std::optional<std::wstring> ReadText(Scope scope, const std::wstring& path, const std::wstring& name, REGSAM view) {
    const auto key = Open(scope, path, view);
    const auto content = key ? Read(key.get(), name, RRF_RT_REG_SZ) : std::nullopt;
    if (!content) return {};
    const auto* text = reinterpret_cast<const wchar_t*>(content->bytes.data());
    return std::wstring(text, wcsnlen(text, content->bytes.size() / sizeof(wchar_t)));
}

LSTATUS Set(Scope scope, const std::wstring& key, const std::wstring& name, DWORD type, const void* data,
            std::size_t size) {
    return RegSetKeyValueW(Hive(scope), Path(key).c_str(), name.c_str(), type, data, static_cast<DWORD>(size));
}

LSTATUS Delete(Scope scope, const std::wstring& key, const std::wstring& name) {
    return RegDeleteKeyValueW(Hive(scope), Path(key).c_str(), name.c_str());
}

// Deletes the key if nothing is left in it, and those above it in the same way.
void Prune(Scope scope, std::wstring path) {
    for (;;) {
        const auto key = Open(scope, path);
        DWORD keys = 0, values = 0;
        if (!key ||
            RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr,
                             nullptr, nullptr) != ERROR_SUCCESS ||
            keys != 0 || values != 0 || RegDeleteKeyW(Hive(scope), Path(path).c_str()) != ERROR_SUCCESS) {
            return;
        }
        const auto end = path.rfind(L'\\');
        if (end == path.npos) return;
        path.resize(end);
    }
}

// ---- files ----

bool SameText(const std::wstring& one, const std::wstring& other) { return lstrcmpiW(one.c_str(), other.c_str()) == 0; }

// A file that no path, long or short, leads to twice: its place on the disk.
std::optional<std::pair<DWORD, std::uint64_t>> PlaceOf(const std::wstring& file) {
    const HANDLE handle =
        CreateFileW(file.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return {};
    BY_HANDLE_FILE_INFORMATION information{};
    const bool known = GetFileInformationByHandle(handle, &information);
    CloseHandle(handle);
    if (!known) return {};
    return std::pair(information.dwVolumeSerialNumber,
                     (std::uint64_t{information.nFileIndexHigh} << 32) | information.nFileIndexLow);
}

bool SameFile(const std::wstring& one, const std::wstring& other) {
    if (SameText(one, other)) return true;
    const auto place = PlaceOf(one);
    return place && place == PlaceOf(other);
}

// ---- registering ----

struct Change {
    const RegistrationRow& row;
    bool created;  // the key
    std::optional<Content> before;
};

LSTATUS Write(Scope scope, const RegistrationRow& row, std::vector<Change>& changes) {
    HKEY key = nullptr;
    DWORD disposition = 0;
    const LSTATUS status = RegCreateKeyExW(Hive(scope), Path(row.key).c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE,
                                           nullptr, &key, &disposition);
    if (status != ERROR_SUCCESS) return status;
    changes.push_back(
        {row, disposition == REG_CREATED_NEW_KEY, Read(Key(key).get(), row.name, RRF_RT_ANY | RRF_NOEXPAND)});
    if (!row.data) return ERROR_SUCCESS;
    return Set(scope, row.key, row.name, REG_SZ, row.data->c_str(), (row.data->size() + 1) * sizeof(wchar_t));
}

void Undo(Scope scope, const std::vector<Change>& changes) {
    for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
        const auto& [row, created, before] = *change;
        if (before) {
            Set(scope, row.key, row.name, before->type, before->bytes.data(), before->bytes.size());
        } else {
            Delete(scope, row.key, row.name);
        }
        if (created) Prune(scope, row.key);
    }
}

// The file of a command line such as "C:\A B\c.exe" /automation, with or without quotes, and of a plain file name.
std::wstring FileOf(std::wstring command) {
    if (command.starts_with(L'"')) return command.substr(1, command.find(L'"', 1) - 1);
    for (auto end = command.find(L' '); end != std::wstring::npos; end = command.find(L' ', end + 1)) {
        if (end > 4 && SameText(command.substr(end - 4, 4), L".exe")) command.resize(end);
    }
    return command;
}

// The existing file that serves a class in that view of the registry, with its path.
std::optional<std::wstring> ServerOf(const std::wstring& clsid, REGSAM view) {
    for (const auto scope : {Scope::User, Scope::Machine}) {
        for (const auto server : {L"\\InprocServer32", L"\\LocalServer32"}) {
            const auto command = ReadText(scope, L"CLSID\\" + clsid + server, L"", view);
            if (!command) continue;
            wchar_t found[MAX_PATH];
            const DWORD length = SearchPathW(nullptr, FileOf(*command).c_str(), L".dll", MAX_PATH, found, nullptr);
            if (length > 0) return length < MAX_PATH ? found : FileOf(*command);
        }
    }
    return {};
}

// Refuses when a ProgID leads to a file of someone else's, in either bitness: the ProgID belongs to both.
void CheckNobodyElseServes(const ClassEntry& entry, const std::wstring& file) {
    const auto own = ToText(*entry.clsid);
    const auto progId = Wide(entry.progId);
    for (const auto scope : {Scope::User, Scope::Machine}) {
        const auto clsid = ReadText(scope, progId + L"\\CLSID", L"", 0);
        if (!clsid) continue;
        auto other = ServerOf(*clsid, 0);
        // The other bitness of the own class is this component's other DLL.
        if (!other && !SameText(*clsid, own)) other = ServerOf(*clsid, OtherView);
        if (!other || SameFile(*other, file)) continue;
        throw platform::AutomationError(SELFREG_E_CLASS, entry.progId,
                                        std::string(entry.progId) + " already leads to " + Utf8(*other) +
                                            ". Nothing was changed. To take it over: regsvr32 /n /i:force \"" +
                                            Utf8(file) + '"');
    }
}

// ---- unregistering ----

// The rows that still lead to this file. Someone else's registration of the class, the library, the ProgID or the
// interface takes the rows around it along.
std::vector<RegistrationRow> OwnRows(Scope scope, const std::vector<RegistrationRow>& rows, const std::wstring& file) {
    std::vector<RegistrationRow> result;
    bool ownFile = true;
    bool own = true;
    for (const auto& row : rows) {
        const bool leadsToFile = row.data == file;
        if (leadsToFile || row.claim) {
            const auto registered = ReadText(scope, row.key, row.name, 0);
            if (leadsToFile) ownFile = !registered || SameFile(*registered, file);
            own = ownFile && (leadsToFile || !registered || SameText(*registered, *row.data));
        }
        if (own) result.push_back(row);
    }
    return result;
}

void Remove(Scope scope, const RegistrationRow& row) {
    const LSTATUS status = row.data ? Delete(scope, row.key, row.name) : ERROR_SUCCESS;
    if (status != ERROR_FILE_NOT_FOUND) CheckRegistry(status);
    Prune(scope, row.key);
}

// True while the DLL of the other bitness is registered: both share what is no class's own.
bool OtherBitnessRegistered(const Server& server, Scope scope) {
    const auto library = L"TypeLib\\" + ToText(*server.library) + L"\\" + Version + L"\\0\\" + OtherPlatform;
    return ReadText(scope, library, L"", OtherView).has_value();
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

HRESULT Register(const Server& server, Scope scope, bool force) {
    return Border(IID_NULL, [&] {
        const auto file = FileName(ThisModule());
        if (server.givesWay && !force) {
            for (const auto& entry : server.classes) CheckNobodyElseServes(entry, file);
        }
        const auto rows = RegistrationRows(server, file);
        std::vector<Change> changes;
        for (const auto& row : rows) {
            const LSTATUS status = Write(scope, row, changes);
            if (status == ERROR_SUCCESS) continue;
            Undo(scope, changes);
            CheckRegistry(status);
        }
    });
}

HRESULT Unregister(const Server& server, Scope scope) {
    return Border(IID_NULL, [&] {
        const auto file = FileName(ThisModule());
        const bool keepShared = OtherBitnessRegistered(server, scope);
        for (const auto& row : OwnRows(scope, RegistrationRows(server, file), file)) {
            if (!row.shared || !keepShared) Remove(scope, row);
        }
    });
}

HRESULT Install(const Server& server, bool install, const wchar_t* words) {
    auto scope = Scope::Machine;
    bool force = false;
    for (std::wstring rest = words ? words : L""; !rest.empty();) {
        const auto word = rest.substr(0, rest.find(L','));
        rest.erase(0, word.size() + 1);
        if (SameText(word, L"user")) {
            scope = Scope::User;
        } else if (SameText(word, L"force")) {
            force = true;
        } else {
            return E_INVALIDARG;
        }
    }
    return install ? Register(server, scope, force) : Unregister(server, scope);
}

bool ForceOnCommandLine() {
    std::wstring command = GetCommandLineW() + std::wstring(L" ");
    CharLowerW(command.data());
    return command.find(L" /i:force ") != std::wstring::npos || command.find(L" -i:force ") != std::wstring::npos;
}

}  // namespace com
