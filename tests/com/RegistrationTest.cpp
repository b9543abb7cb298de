#include <filesystem>
#include <map>

#include "platform/com/Registration.h"
#include "platform/com/Server.h"
#include "tests/com/Client.h"

// What the components write into the registry, and when they give way. They see classes of the machine and of the user
// that are empty at first.

namespace {

/// Values by "key|name", and keys without any.
using Entries = std::map<std::wstring, std::wstring>;

void Collect(HKEY above, const std::wstring& path, Entries& entries) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(above, (L"Software\\Classes" + path).c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    wchar_t name[256], data[512];
    for (DWORD index = 0, length = 256;
         RegEnumValueW(key, index++, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         length = 256) {
        DWORD size = sizeof data;
        RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ, nullptr, data, &size);
        entries[path + L'|' + name] = data;
    }
    for (DWORD index = 0; RegEnumKeyW(key, index++, name, 256) == ERROR_SUCCESS;) {
        entries[path + L'\\' + name];
        Collect(above, path + L'\\' + name, entries);
    }
    RegCloseKey(key);
}

constexpr wchar_t Node[] = L"{0F69D974-24D9-46C0-9713-A21CA17D7BF5}";
constexpr wchar_t Vendor[] = L"{01234567-89AB-CDEF-0123-456789ABCDEF}";
constexpr wchar_t Kernel[] = L"C:\\windows\\system32\\kernel32.dll";

// The user's own last: it is what both lead to.
const std::pair<HKEY, const wchar_t*> Hives[] = {{HKEY_LOCAL_MACHINE, L"Software\\XTarn4x tests\\machine"},
                                                 {HKEY_CURRENT_USER, L"Software\\XTarn4x tests\\user"}};

/// Seamcfg.dll, and a copy of it in another folder.
class Registering : public testing::Test {
  protected:
    Registering() {
        for (const auto& [hive, path] : Hives) {
            HKEY key = nullptr;
            RegDeleteTreeW(HKEY_CURRENT_USER, path);
            RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
            RegOverridePredefKey(hive, key);
        }
    }
    ~Registering() override {
        for (const auto& [hive, path] : Hives) RegOverridePredefKey(hive, nullptr);
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
        Collect(hive, L"", entries);
        return entries;
    }
    static std::wstring Copy(const std::wstring& file) {
        const auto copy = std::filesystem::temp_directory_path() / L"Seamcfg.dll";
        CopyFileW(file.c_str(), copy.c_str(), FALSE);
        return copy;
    }

    const std::wstring file_ = Component::File(L"Seamcfg");
    const Component component_{file_};
    const Component copy_{Copy(file_)};
};

TEST_F(Registering, TakesAllOfItAway) {
    for (const auto name : {L"XTarn4x", L"Seamcfg", L"Seamlib", L"Conduit"}) {
        SCOPED_TRACE(com::Utf8(name));
        const Component component(Component::File(name));
        EXPECT_EQ(component.Register(), S_OK);
        const auto rows = Of(HKEY_LOCAL_MACHINE);
        EXPECT_EQ(component.Unregister(), S_OK);
        EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), Entries{});
        EXPECT_EQ(component.Install(TRUE, L"user"), S_OK);
        EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), Entries{});
        EXPECT_EQ(Of(HKEY_CURRENT_USER), rows);
        EXPECT_EQ(component.Install(FALSE, L"USER"), S_OK);
        EXPECT_EQ(component.Unregister(), S_OK) << "not registered";
        EXPECT_EQ(Of(HKEY_CURRENT_USER), Entries{});
        EXPECT_EQ(component.Install(TRUE, L"everyone"), E_INVALIDARG);
    }
    EXPECT_THROW(com::RegistrationRows({&LIBID_Seamcfg, {}, {}}, L"C:\\none.dll"), platform::AutomationError);
}

TEST_F(Registering, GivesWayToAnotherExistingFile) {
    const std::tuple<HKEY, const wchar_t*, std::wstring, HRESULT> cases[] = {
        {HKEY_LOCAL_MACHINE, L"InprocServer32", Kernel, SELFREG_E_CLASS},
        {HKEY_CURRENT_USER, L"InprocServer32", Kernel, SELFREG_E_CLASS},
        {HKEY_LOCAL_MACHINE, L"InprocServer32", L"kernel32", SELFREG_E_CLASS},
        {HKEY_LOCAL_MACHINE, L"LocalServer32", L"\"C:\\windows\\regedit.exe\" /a", SELFREG_E_CLASS},
        {HKEY_LOCAL_MACHINE, L"LocalServer32", L"C:\\windows\\regedit.exe /a", SELFREG_E_CLASS},
        {HKEY_LOCAL_MACHINE, L"InprocServer32", L"C:\\gone\\Seamcfg.dll", S_OK},
        {HKEY_LOCAL_MACHINE, L"InprocServer32", std::wstring(file_).insert(file_.rfind(L'\\'), L"\\."), S_OK},
    };
    for (const auto& [vendors, server, file, result] : cases) {
        SCOPED_TRACE(com::Utf8(file));
        for (const auto& [hive, path] : Hives) RegDeleteTreeW(hive, L"Software\\Classes");
        WriteVendor(vendors, server, file);
        const Entries before = Of(HKEY_LOCAL_MACHINE);
        EXPECT_EQ(component_.Register(), result);
        EXPECT_EQ(Of(HKEY_LOCAL_MACHINE) == before, result != S_OK);
        EXPECT_EQ(component_.Install(TRUE, L"force"), S_OK);
        EXPECT_EQ(Of(HKEY_LOCAL_MACHINE)[L"\\Seamcfg.clsNode\\CLSID|"], Node);
    }
    const auto told = Told(copy_.Register());
    EXPECT_TRUE(told.starts_with("+513 Seamcfg.clsNode: Seamcfg.clsNode already leads to " + com::Utf8(file_) + ". "))
        << told;
}

TEST_F(Registering, IsUndoneOnlyWhereItStillLeadsToTheFile) {
    EXPECT_EQ(component_.Register(), S_OK);
    EXPECT_EQ(copy_.Install(TRUE, L"User,Force"), S_OK);
    EXPECT_EQ(copy_.Install(TRUE, L"force"), S_OK);
    const Entries taken = Of(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(component_.Unregister(), S_OK);
    EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), taken);

    const auto library = L"Interface\\{8EC96D47-F0F4-47D5-9589-D923DD291EC8}\\TypeLib";
    WriteVendor(HKEY_LOCAL_MACHINE, L"InprocServer32", Kernel);
    Write(HKEY_LOCAL_MACHINE, library, Vendor);
    EXPECT_EQ(copy_.Unregister(), S_OK);
    auto left = Of(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(left[L"\\Seamcfg.clsNode|"], L"Settings node");
    EXPECT_EQ(left[std::wstring(L"\\") + library + L'|'], Vendor);
    EXPECT_EQ(left.count(std::wstring(L"\\CLSID\\") + Node + L'|'), 0u);
}

TEST_F(Registering, RollsBackWhenItFailsHalfWay) {
    WriteVendor(HKEY_LOCAL_MACHINE, L"InprocServer32", Kernel);
    EXPECT_EQ(component_.Install(TRUE, L"force"), S_OK);
    Write(HKEY_LOCAL_MACHINE, std::wstring(L"CLSID\\") + Node + L"\\InprocServer32", L"C:\\old.dll");
    // Below a volatile key no lasting one can be created.
    const auto last = L"Software\\Classes\\Seamcfg.clsNode";
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, last);
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, last, 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE, nullptr, &key, nullptr);
    RegCloseKey(key);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"Software\\Classes\\TypeLib");
    const Entries before = Of(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(copy_.Install(TRUE, L"force"), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), before);
}

}  // namespace
