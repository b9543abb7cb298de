#include <map>

#include "platform/com/Registration.h"
#include "platform/com/Server.h"
#include "tests/com/Client.h"

// What the components write into the registry, and when they give way. They see classes of the machine and of the user
// that are empty at first.

namespace {

// clang-format off
const struct Library {
    const wchar_t *Component, *Id, *Description;
    std::vector<std::pair<const wchar_t*, const wchar_t*>> Interfaces;  // identity, name
    struct Class { const wchar_t *Id, *ProgId, *Name, *Threads; };
    std::vector<Class> Classes;
    const wchar_t *Key = nullptr, *Name = L"", *Data = L"";  // one entry more
} Libraries[] = {
    {L"XTarn4x", L"{F83A3FD6-544F-453F-98FC-F6AF6E9E4975}", L"XTarn4x 1.0 Driver for Tarn 4x DVB-T Test Receivers",
     {{L"{06B8F224-5DB3-4245-BA44-A8168FDB17AC}", L"_clsStatistics"}, {L"{E9C53484-7A1B-4AEB-94A6-65334AFAC7BB}", L"_clsTarn4x"}, {L"{2FC79E4B-22C2-4E9E-B05C-D8AC51E7FEC0}", L"_clsRegister"}},
     {{L"{A5BD6635-6536-458E-9D8B-8CEDA3F3343B}", L"XTarn4x.clsTarn4x", L"Driver of a Tarn 4x DVB-T test receiver", L"Apartment"},
      {L"{742BF208-CE07-487F-AC25-07BFFD5B6A3D}", L"XTarn4x.clsRegister", L"Registration of the Tarn 4x driver", L"Apartment"}},
     L"CLSID\\{742BF208-CE07-487F-AC25-07BFFD5B6A3D}\\Implemented Categories\\{EF14F7CF-5C1D-4266-A291-B72B3B9CAD4A}"},
    {L"Seamcfg", L"{5B6CA9D7-9389-4662-9EDE-976FC7600FEB}", L"Seamcfg 1.0 Settings Tree",
     {{L"{8EC96D47-F0F4-47D5-9589-D923DD291EC8}", L"INode"}},
     {{L"{0F69D974-24D9-46C0-9713-A21CA17D7BF5}", L"Seamcfg.clsNode", L"Settings node", L"Apartment"}}},
    {L"Seamlib", L"{FEBC7130-F3F1-4B84-963D-67E6E3FBFD31}", L"Seamlib 1.0 Driver Framework",
     {{L"{77591BC4-3EF6-455A-825B-C734FE6B5CD6}", L"IRegister"}, {L"{EAF6B07E-E0C0-4361-9E93-3BE810FAEA28}", L"IDriverSetup"}, {L"{5398D7C4-09CA-4177-9393-0767BDFB6C4A}", L"IDriverIdentify"},
      {L"{59C5C129-321D-4427-A9A6-EE2061C78618}", L"IApplication"}, {L"{C11E4CF7-4392-4E07-AE3A-EBE13CDDDEF7}", L"IMessageLog"}, {L"{7F123DA4-6FE8-485A-95EE-7591FC6C3EB9}", L"IErrorService"},
      {L"{11C6B033-A6B1-45F7-935D-0F155EAF46CD}", L"ISetup"}, {L"{2E8055EA-0164-494B-A589-411E0873A2FD}", L"IIdentify"}, {L"{B95891EE-8F48-4080-A8E1-12C739A116BB}", L"IHost"}},
     {{L"{940547D9-B26F-472C-BD44-37AD845B9684}", L"Seamlib.clsApplication", L"Application services", L"Both"},
      {L"{3B5D5E8C-23A6-4B1D-A4CA-C1425AF0F88A}", L"Seamlib.clsMessageLog", L"Message log", L"Both"},
      {L"{0AFD6AD2-FCD3-468A-AB1F-BE848CA07EC7}", L"Seamlib.clsErrorService", L"Error service", L"Both"},
      {L"{402C982B-F7A0-401F-A0A7-9869DD8AA3BA}", L"Seamlib.clsHost", L"Finds and creates drivers", L"Both"}},
     L"Component Categories\\{EF14F7CF-5C1D-4266-A291-B72B3B9CAD4A}", L"409", L"Instrument drivers"},
    {L"Conduit", L"{1252B945-723A-49C1-8B84-F65144AD8538}", L"Conduit 1.0 Instrument Transports",
     {{L"{B3731317-31DA-4F03-95BE-9163C10BD02E}", L"ITextLink"}, {L"{392B9F80-26D7-4C9A-9B23-B6A85E983BA8}", L"IBlockLink"}, {L"{93B51C9D-C983-44BA-B2A8-3C98028AC92C}", L"IConnection"}},
     {{L"{F426837C-7E80-4828-85E1-FC8A69D7022F}", L"Conduit.clsGPIB", L"GPIB transport", L"Apartment"},
      {L"{E0313D42-9A33-402B-B32B-F8B2A9291870}", L"Conduit.clsComm", L"Serial transport", L"Apartment"},
      {L"{DED266E1-920B-4375-8981-E8217B74B233}", L"Conduit.clsEthernet", L"TCP/IP transport", L"Apartment"},
      {L"{2EFCB4FA-21F4-4407-B44C-A52F8D628C06}", L"Conduit.clsGUI", L"Front-panel transport", L"Apartment"}}}};
// clang-format on

/// Values by "key|name", and keys without any.
using Entries = std::map<std::wstring, std::wstring>;

Entries Expected(const Library& library, const std::wstring& file) {
    const std::wstring platform = sizeof(void*) == 8 ? L"win64" : L"win32";
    const auto types = std::wstring(L"TypeLib\\") + library.Id + L"\\1.0";
    Entries entries = {{types + L"|", library.Description},
                       {types + L"\\FLAGS|", L"0"},
                       {types + L"\\0\\" + platform + L'|', file},
                       {types + L"\\409\\" + platform + L'|', file}};
    const auto add = [&](const std::wstring& key, const std::vector<std::pair<const wchar_t*, std::wstring>>& values) {
        for (const auto& [place, data] : values) entries[key + place] = data;
    };
    for (const auto& [id, name] : library.Interfaces) {
        add(std::wstring(L"Interface\\") + id, {{L"|", name},
                                                {L"\\ProxyStubClsid32|", L"{00020424-0000-0000-C000-000000000046}"},
                                                {L"\\TypeLib|", library.Id},
                                                {L"\\TypeLib|Version", L"1.0"}});
    }
    for (const auto& entry : library.Classes) {
        add(std::wstring(L"CLSID\\") + entry.Id, {{L"|", entry.Name},
                                                  {L"\\InprocServer32|", file},
                                                  {L"\\InprocServer32|ThreadingModel", entry.Threads},
                                                  {L"\\ProgID|", entry.ProgId},
                                                  {L"\\VersionIndependentProgID|", entry.ProgId},
                                                  {L"\\TypeLib|", library.Id},
                                                  {L"\\Version|", L"1.0"}});
        add(entry.ProgId, {{L"|", entry.Name}, {L"\\CLSID|", entry.Id}});
    }
    if (library.Key) entries[library.Key + (*library.Name ? std::wstring(L"|") + library.Name : L"")] = library.Data;
    return entries;
}

void Collect(HKEY above, const std::wstring& path, Entries& entries) {
    HKEY key = nullptr;
    const auto place = L"Software\\Classes" + (path.empty() ? L"" : L'\\' + path);
    if (RegOpenKeyExW(above, place.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    wchar_t name[256], data[512] = L"";
    DWORD length = 256, size = sizeof data, values = 0, keys = 0;
    for (; RegEnumValueW(key, values, name, &length, nullptr, nullptr, reinterpret_cast<BYTE*>(data), &size) ==
           ERROR_SUCCESS;
         ++values, length = 256, size = sizeof data) {
        entries[path + L'|' + name] = data;
    }
    for (; RegEnumKeyW(key, keys, name, 256) == ERROR_SUCCESS; ++keys)
        Collect(above, path.empty() ? name : path + L'\\' + name, entries);
    if (values + keys == 0 && !path.empty()) entries[path];
    RegCloseKey(key);
}

constexpr wchar_t Node[] = L"{0F69D974-24D9-46C0-9713-A21CA17D7BF5}";
constexpr wchar_t Vendor[] = L"{01234567-89AB-CDEF-0123-456789ABCDEF}";
constexpr wchar_t Kernel[] = L"C:\\windows\\system32\\kernel32.dll";

/// Seamcfg.dll, and a copy of it in another folder.
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
        Collect(hive, L"", entries);
        return entries;
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

    const std::wstring file_ = Component::File(L"Seamcfg");
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

TEST_F(Registering, WritesAndRemovesItsRows) {
    for (const auto& library : Libraries) {
        SCOPED_TRACE(com::Utf8(library.Component));
        const auto file = Component::File(library.Component);
        const Component component(file);
        EXPECT_EQ(component.Register(), S_OK);
        EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), Expected(library, file));
        EXPECT_EQ(component.Unregister(), S_OK);
        EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), Entries{});
        EXPECT_EQ(component.Install(TRUE, L"user"), S_OK);
        EXPECT_EQ(Of(HKEY_LOCAL_MACHINE), Entries{});
        EXPECT_EQ(Of(HKEY_CURRENT_USER), Expected(library, file));
        EXPECT_EQ(component.Install(FALSE, L"USER"), S_OK);
        EXPECT_EQ(component.Unregister(), S_OK) << "not registered";
        EXPECT_EQ(Of(HKEY_CURRENT_USER), Entries{});
        EXPECT_EQ(component.Install(TRUE, L"everyone"), E_INVALIDARG);
    }
    EXPECT_THROW(com::RegistrationRows({&LIBID_Seamcfg, {}, {}}, L"C:\\none.dll"), platform::AutomationError);
}

TEST_F(Registering, GivesWayToAnotherExistingFile) {
    const struct {
        HKEY hive;
        const wchar_t* server;
        std::wstring file;
        HRESULT result;
    } cases[] = {
        {HKEY_LOCAL_MACHINE, L"InprocServer32", Kernel, SELFREG_E_CLASS},
        {HKEY_CURRENT_USER, L"InprocServer32", Kernel, SELFREG_E_CLASS},
        {HKEY_LOCAL_MACHINE, L"InprocServer32", L"kernel32", SELFREG_E_CLASS},
        {HKEY_LOCAL_MACHINE, L"LocalServer32", L"\"C:\\windows\\regedit.exe\" /a", SELFREG_E_CLASS},
        {HKEY_LOCAL_MACHINE, L"LocalServer32", L"C:\\windows\\regedit.exe /a", SELFREG_E_CLASS},
        {HKEY_LOCAL_MACHINE, L"InprocServer32", L"C:\\gone\\Seamcfg.dll", S_OK},
        {HKEY_LOCAL_MACHINE, L"InprocServer32", Dotted(file_), S_OK},
    };
    for (const auto& entry : cases) {
        SCOPED_TRACE(com::Utf8(entry.file));
        for (const HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) RegDeleteTreeW(hive, L"Software\\Classes");
        WriteVendor(entry.hive, entry.server, entry.file);
        const Entries before = Of(HKEY_LOCAL_MACHINE);
        EXPECT_EQ(component_.Register(), entry.result);
        EXPECT_EQ(Of(HKEY_LOCAL_MACHINE) == before, entry.result != S_OK);
        EXPECT_EQ(component_.Install(TRUE, L"force"), S_OK);
        EXPECT_EQ(Of(HKEY_LOCAL_MACHINE)[L"Seamcfg.clsNode\\CLSID|"], Node);
    }
    const auto told = Told(copy_.Register());
    EXPECT_TRUE(
        told.starts_with("+513 Seamcfg.clsNode: Seamcfg.clsNode already leads to " + com::Utf8(file_) + ". "))
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
    EXPECT_EQ(left[L"Seamcfg.clsNode|"], L"Settings node");
    EXPECT_EQ(left[std::wstring(library) + L'|'], Vendor);
    EXPECT_EQ(left.count(std::wstring(L"CLSID\\") + Node + L'|'), 0u);
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
