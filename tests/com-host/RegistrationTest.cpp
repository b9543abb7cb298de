#include <algorithm>

#include "platform/com/Registration.h"
#include "tests/com-host/Client.h"

namespace {

#ifdef _WIN64
constexpr char Platform[] = "win64";
#else
constexpr char Platform[] = "win32";
#endif

HRESULT Unused(REFIID, void**) { return E_NOINTERFACE; }

std::wstring RegisteredFile(const wchar_t* clsid) {
    wchar_t file[MAX_PATH] = L"";
    LONG size = sizeof file;
    RegQueryValueW(HKEY_CLASSES_ROOT, (std::wstring(L"CLSID\\") + clsid + L"\\InprocServer32").c_str(), file, &size);
    return file;
}

}  // namespace

TEST(Registration, HasOneListOfRows) {
    static constexpr CATID category = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    static constexpr const CATID* categories[] = {&category};
    const com::ClassEntry classes[] = {
        {&CLSID_clsNode, "Seamcfg.clsNode", "Settings node", com::Threading::Apartment, Unused, categories}};
    const com::Category introduced[] = {{&category, "Tests"}};
    const com::Server server{&LIBID_Seamcfg, classes, introduced};
    const auto file = RegisteredFile(L"{0F69D974-24D9-46C0-9713-A21CA17D7BF5}");
    ASSERT_NE(file, L"");

    std::vector<std::string> rows;
    for (const auto& row : com::RegistrationRows(server, file)) {
        rows.push_back(com::Utf8(row.key) + '|' + com::Utf8(row.name) + '|' +
                       (row.data == file ? "<file>" : com::Utf8(row.data.value_or(L"<key>"))) +
                       (row.shared ? "|shared" : ""));
    }
    const std::string category1 = "{00000001-0002-0003-0405-060708090A0B}";
    const std::string library = "{5B6CA9D7-9389-4662-9EDE-976FC7600FEB}";
    const std::string interface1 = "Interface\\{8EC96D47-F0F4-47D5-9589-D923DD291EC8}";
    const std::string class1 = "CLSID\\{0F69D974-24D9-46C0-9713-A21CA17D7BF5}";
    EXPECT_EQ(rows, (std::vector<std::string>{
                        "Component Categories\\" + category1 + "|409|Tests|shared",
                        "TypeLib\\" + library + "\\1.0||Seamcfg 1.0 Settings Tree|shared",
                        "TypeLib\\" + library + "\\1.0\\FLAGS||0|shared",
                        "TypeLib\\" + library + "\\1.0\\409\\" + Platform + "||<file>",
                        "TypeLib\\" + library + "\\1.0\\0\\" + Platform + "||<file>",
                        interface1 + "||INode",
                        interface1 + "\\ProxyStubClsid32||{00020424-0000-0000-C000-000000000046}",
                        interface1 + "\\TypeLib||" + library,
                        interface1 + "\\TypeLib|Version|1.0",
                        "Seamcfg.clsNode||Settings node|shared",
                        "Seamcfg.clsNode\\CLSID||{0F69D974-24D9-46C0-9713-A21CA17D7BF5}|shared",
                        class1 + "||Settings node",
                        class1 + "\\InprocServer32||<file>",
                        class1 + "\\InprocServer32|ThreadingModel|Apartment",
                        class1 + "\\ProgID||Seamcfg.clsNode",
                        class1 + "\\VersionIndependentProgID||Seamcfg.clsNode",
                        class1 + "\\TypeLib||" + library,
                        class1 + "\\Version||1.0",
                        class1 + "\\Implemented Categories\\" + category1 + "||<key>",
                    }));
}

TEST(Registration, NeedsATypeLibrary) {
    const com::Server server{&LIBID_Seamcfg, {}, {}};
    EXPECT_THROW(com::RegistrationRows(server, L"C:\\windows\\system32\\none.dll"), platform::AutomationError);
}
