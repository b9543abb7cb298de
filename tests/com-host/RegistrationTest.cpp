#include <map>

#include "platform/com/Registration.h"
#include "platform/com/Server.h"
#include "tests/com-host/Client.h"

using com::ComPtr;

namespace {

#ifdef _WIN64
constexpr char Platform[] = "win64";
#else
constexpr char Platform[] = "win32";
#endif

HRESULT Unused(REFIID, void**) { return E_NOINTERFACE; }

constexpr wchar_t Node[] = L"{0F69D974-24D9-46C0-9713-A21CA17D7BF5}";
constexpr wchar_t Vendor[] = L"{01234567-89AB-CDEF-0123-456789ABCDEF}";
constexpr wchar_t Kernel[] = L"C:\\windows\\system32\\kernel32.dll";

std::wstring RegisteredFile(const wchar_t* clsid) {
    wchar_t file[MAX_PATH] = L"";
    LONG size = sizeof file;
    RegQueryValueW(HKEY_CLASSES_ROOT, (std::wstring(L"CLSID\\") + clsid + L"\\InprocServer32").c_str(), file, &size);
    return file;
}

using Entries = std::map<std::wstring, std::wstring>;

void Collect(HKEY root, const std::wstring& path, Entries& entries) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    wchar_t name[256];
    DWORD length = 256;
    wchar_t data[512] = L"";
    DWORD size = sizeof data;
    for (DWORD index = 0; RegEnumValueW(key, index, name, &length, nullptr, nullptr, reinterpret_cast<BYTE*>(data),
                                        &size) == ERROR_SUCCESS;
         ++index, length = 256, size = sizeof data) {
        entries[path + L'|' + name] = data;
    }
    for (DWORD index = 0; RegEnumKeyW(key, index, name, 256) == ERROR_SUCCESS; ++index) {
        entries[path + L'\\' + name];
        Collect(root, path + L'\\' + name, entries);
    }
    RegCloseKey(key);
}

/// A component as regsvr32 uses it.
class Component {
  public:
    explicit Component(const std::wstring& file) : module_(LoadLibraryW(file.c_str())) {}
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;
    ~Component() { FreeLibrary(module_); }

    HRESULT Register() const { return Function<HRESULT(STDAPICALLTYPE*)()>("DllRegisterServer")(); }
    HRESULT Unregister() const { return Function<HRESULT(STDAPICALLTYPE*)()>("DllUnregisterServer")(); }
    HRESULT Install(bool install, const wchar_t* words) const {
        return Function<HRESULT(STDAPICALLTYPE*)(BOOL, LPCWSTR)>("DllInstall")(install, words);
    }

  private:
    template <class Pointer>
    Pointer Function(const char* name) const {
        return reinterpret_cast<Pointer>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }

    HMODULE module_;
};

/// Seamcfg.dll, and a copy of it in another folder, with empty classes of the machine and of the user.
class Registering : public testing::Test {
  protected:
    Registering() {
        for (const auto& [hive, key, path] : hives_) {
            RegDeleteTreeW(HKEY_CURRENT_USER, path);
            RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key, nullptr);
        }
        for (const auto& [hive, key, path] : hives_) RegOverridePredefKey(hive, *key);
    }
    ~Registering() override {
        for (const auto& [hive, key, path] : hives_) {
            RegOverridePredefKey(hive, nullptr);
            RegCloseKey(*key);
        }
        RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\XTarn4x tests");
    }

    static void Write(HKEY hive, const std::wstring& key, const std::wstring& data) {
        const auto path = L"Software\\Classes\\" + key;
        RegSetKeyValueW(hive, path.c_str(), nullptr, REG_SZ, data.c_str(),
                        static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t)));
    }
    static void WriteVendor(HKEY hive, const wchar_t* server, const std::wstring& file) {
        Write(hive, L"Seamcfg.clsNode\\CLSID", Vendor);
        Write(hive, std::wstring(L"CLSID\\") + Vendor + L'\\' + server, file);
    }
    static Entries Of(HKEY hive) {
        Entries entries;
        Collect(hive, L"Software\\Classes", entries);
        return entries;
    }
    static std::wstring Leads(const wchar_t* key) {
        const auto entries = Of(HKEY_LOCAL_MACHINE);
        const auto found = entries.find(std::wstring(L"Software\\Classes\\") + key + L'|');
        return found == entries.end() ? L"" : found->second;
    }
    /// The same file under another name.
    static std::wstring Dotted(std::wstring file) { return file.insert(file.rfind(L'\\'), L"\\."); }
    static std::wstring Copy(const std::wstring& file) {
        wchar_t folder[MAX_PATH];
        GetTempPathW(MAX_PATH, folder);
        const auto copy = std::wstring(folder) + L"Seamcfg.dll";
        CopyFileW(file.c_str(), copy.c_str(), FALSE);
        return copy;
    }

    const std::wstring file_ = RegisteredFile(Node);
    const Component component_{file_};
    const Component copy_{Copy(file_)};

  private:
    HKEY machine_ = nullptr;
    HKEY user_ = nullptr;
    const struct {
        HKEY hive;
        HKEY* key;
        const wchar_t* path;
    } hives_[2] = {{HKEY_LOCAL_MACHINE, &machine_, L"Software\\XTarn4x tests\\machine"},
                   {HKEY_CURRENT_USER, &user_, L"Software\\XTarn4x tests\\user"}};
};

}  // namespace

TEST(Registration, HasOneListOfRows) {
    static constexpr CATID category = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    static constexpr const CATID* categories[] = {&category};
    const com::ClassEntry classes[] = {
        {&CLSID_clsNode, "Seamcfg.clsNode", "Settings node", com::Threading::Apartment, Unused, categories}};
    const com::Category introduced[] = {{&category, "Tests"}};
    const com::Server server{&LIBID_Seamcfg, classes, introduced};
    const auto file = RegisteredFile(Node);
    ASSERT_NE(file, L"");

    std::vector<std::string> rows;
    for (const auto& row : com::RegistrationRows(server, file)) {
        rows.push_back(com::Utf8(row.key) + '|' + com::Utf8(row.name) + '|' +
                       (row.data == file ? "<file>" : com::Utf8(row.data.value_or(L"<key>"))) +
                       (row.shared ? "|shared" : "") + (row.claim ? "|claim" : ""));
    }
    const std::string category1 = "{00000001-0002-0003-0405-060708090A0B}";
    const std::string library = "{5B6CA9D7-9389-4662-9EDE-976FC7600FEB}";
    const std::string interface1 = "Interface\\{8EC96D47-F0F4-47D5-9589-D923DD291EC8}";
    const std::string class1 = "CLSID\\{0F69D974-24D9-46C0-9713-A21CA17D7BF5}";
    EXPECT_EQ(rows, (std::vector<std::string>{
                        "Component Categories\\" + category1 + "|409|Tests|shared",
                        "TypeLib\\" + library + "\\1.0\\0\\" + Platform + "||<file>",
                        "TypeLib\\" + library + "\\1.0\\409\\" + Platform + "||<file>",
                        "TypeLib\\" + library + "\\1.0||Seamcfg 1.0 Settings Tree|shared",
                        "TypeLib\\" + library + "\\1.0\\FLAGS||0|shared",
                        interface1 + "\\TypeLib||" + library + "|claim",
                        interface1 + "||INode",
                        interface1 + "\\ProxyStubClsid32||{00020424-0000-0000-C000-000000000046}",
                        interface1 + "\\TypeLib|Version|1.0",
                        class1 + "\\InprocServer32||<file>",
                        class1 + "\\InprocServer32|ThreadingModel|Apartment",
                        class1 + "||Settings node",
                        class1 + "\\ProgID||Seamcfg.clsNode",
                        class1 + "\\VersionIndependentProgID||Seamcfg.clsNode",
                        class1 + "\\TypeLib||" + library,
                        class1 + "\\Version||1.0",
                        class1 + "\\Implemented Categories\\" + category1 + "||<key>",
                        "Seamcfg.clsNode\\CLSID||{0F69D974-24D9-46C0-9713-A21CA17D7BF5}|shared|claim",
                        "Seamcfg.clsNode||Settings node|shared",
                    }));
}

TEST(Registration, NeedsATypeLibrary) {
    const com::Server server{&LIBID_Seamcfg, {}, {}};
    EXPECT_THROW(com::RegistrationRows(server, L"C:\\windows\\system32\\none.dll"), platform::AutomationError);
}

TEST_F(Registering, GivesWayToAnotherExistingFile) {
    struct {
        const char* name;
        HKEY hive;
        const wchar_t* server;
        std::wstring file;
        HRESULT result;
    } const cases[] = {
        {"a DLL", HKEY_LOCAL_MACHINE, L"InprocServer32", Kernel, SELFREG_E_CLASS},
        {"a DLL for this user", HKEY_CURRENT_USER, L"InprocServer32", Kernel, SELFREG_E_CLASS},
        {"a DLL of the system, by name", HKEY_LOCAL_MACHINE, L"InprocServer32", L"kernel32", SELFREG_E_CLASS},
        {"a program in quotes", HKEY_LOCAL_MACHINE, L"LocalServer32", L"\"C:\\windows\\regedit.exe\" /a",
         SELFREG_E_CLASS},
        {"a program", HKEY_LOCAL_MACHINE, L"LocalServer32", L"C:\\windows\\regedit.exe /a", SELFREG_E_CLASS},
        {"a file that is gone", HKEY_LOCAL_MACHINE, L"InprocServer32", L"C:\\gone\\Seamcfg.dll", S_OK},
        {"the same file", HKEY_LOCAL_MACHINE, L"InprocServer32", Dotted(file_), S_OK},
    };
    for (const auto& entry : cases) {
        for (const HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) RegDeleteTreeW(hive, L"Software\\Classes");
        WriteVendor(entry.hive, entry.server, entry.file);
        const Entries before = Of(HKEY_LOCAL_MACHINE);
        EXPECT_EQ(component_.Register(), entry.result) << entry.name;
        EXPECT_EQ(Of(HKEY_LOCAL_MACHINE) == before, entry.result != S_OK) << entry.name;
        EXPECT_EQ(component_.Install(true, L"force"), S_OK) << entry.name;
        EXPECT_EQ(Leads(L"Seamcfg.clsNode\\CLSID"), Node) << entry.name;
    }

    EXPECT_EQ(copy_.Register(), SELFREG_E_CLASS);
    ComPtr<IErrorInfo> information;
    com::Bstr description;
    ASSERT_EQ(GetErrorInfo(0, information.put()), S_OK);
    EXPECT_EQ(information->GetDescription(description.put()), S_OK);
    EXPECT_TRUE(description.Utf8().starts_with("Seamcfg.clsNode already leads to " + com::Utf8(file_) + ". "))
        << description.Utf8();
}

TEST_F(Registering, IsUndoneOnlyWhereItStillLeadsToTheFile) {
    EXPECT_EQ(component_.Unregister(), S_OK) << "not registered";
    EXPECT_EQ(component_.Register(), S_OK);
    EXPECT_EQ(copy_.Install(true, L"force"), S_OK);
    const Entries taken = Of(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(component_.Unregister(), S_OK);
    EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), taken);

    const auto library = L"Interface\\{8EC96D47-F0F4-47D5-9589-D923DD291EC8}\\TypeLib";
    WriteVendor(HKEY_LOCAL_MACHINE, L"InprocServer32", Kernel);
    Write(HKEY_LOCAL_MACHINE, library, Vendor);
    for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(copy_.Unregister(), S_OK);
        EXPECT_EQ(Leads(L"Seamcfg.clsNode"), L"Settings node");
        EXPECT_EQ(Leads(library), Vendor);
        EXPECT_EQ(Leads((std::wstring(L"CLSID\\") + Node).c_str()), L"");
    }
}

TEST_F(Registering, RollsBackWhenItFailsHalfWay) {
    WriteVendor(HKEY_LOCAL_MACHINE, L"InprocServer32", Kernel);
    EXPECT_EQ(component_.Install(true, L"force"), S_OK);
    Write(HKEY_LOCAL_MACHINE, std::wstring(L"CLSID\\") + Node + L"\\InprocServer32", L"C:\\old.dll");
    // Below a volatile key no lasting one can be created.
    const auto last = std::wstring(L"Software\\Classes\\Seamcfg.clsNode");
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, last.c_str());
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, last.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE, nullptr, &key,
                    nullptr);
    RegCloseKey(key);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"Software\\Classes\\TypeLib");
    const Entries before = Of(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(copy_.Install(true, L"force"), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), before);
}

TEST_F(Registering, ForAUserStaysWithTheUser) {
    EXPECT_EQ(component_.Install(true, L"user"), S_OK);
    EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), Entries{});
    EXPECT_FALSE(Of(HKEY_CURRENT_USER).empty());
    EXPECT_EQ(copy_.Install(true, L"user"), SELFREG_E_CLASS);
    EXPECT_EQ(copy_.Install(true, L"USER,Force"), S_OK);
    EXPECT_EQ(copy_.Install(true, L"everyone"), E_INVALIDARG);
    EXPECT_EQ(copy_.Install(false, L"user"), S_OK);
    EXPECT_EQ(Of(HKEY_CURRENT_USER), Entries{});
    EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), Entries{});
}
