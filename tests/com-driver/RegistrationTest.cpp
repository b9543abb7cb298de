#include <algorithm>
#include <map>

#include "platform/com/Categories.h"
#include "tests/com-driver/Bench.h"

// Both bitnesses of the driver are registered and unregistered with their own regsvr32, in every order.

namespace {

using Entries = std::map<std::wstring, std::wstring>;

void Collect(Entries& entries, HKEY root, const std::wstring& path, REGSAM view, const std::wstring& label) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, &key) != ERROR_SUCCESS) return;
    entries[label + path];
    wchar_t name[256];
    for (DWORD index = 0;; ++index) {
        DWORD length = 256;
        BYTE data[1024] = {};
        DWORD size = sizeof data;
        if (RegEnumValueW(key, index, name, &length, nullptr, nullptr, data, &size) != ERROR_SUCCESS) break;
        std::wstring text = reinterpret_cast<const wchar_t*>(data);
        std::transform(text.begin(), text.end(), text.begin(), [](wchar_t c) { return towlower(c); });
        entries[label + path + L" : " + name] = text;
    }
    for (DWORD index = 0;; ++index) {
        DWORD length = 256;
        if (RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        Collect(entries, root, path + L'\\' + name, view, label);
    }
    RegCloseKey(key);
}

Entries Collect(const std::vector<std::wstring>& keys) {
    Entries entries;
    for (const auto& key : keys) {
        Collect(entries, HKEY_CLASSES_ROOT, key, KEY_WOW64_64KEY, L"64: ");
        Collect(entries, HKEY_CLASSES_ROOT, key, KEY_WOW64_32KEY, L"32: ");
    }
    return entries;
}

// Everything that belongs to the driver.
Entries Driver() {
    return Collect({L"XTarn4x.clsTarn4x", L"XTarn4x.clsRegister", L"CLSID\\" + com::ToText(CLSID_clsTarn4x),
                    L"CLSID\\" + com::ToText(CLSID_clsRegister), L"CLSID\\" + com::ToText(CLSID_clsStatistics),
                    L"TypeLib\\" + com::ToText(LIBID_XTarn4x), L"Interface\\" + com::ToText(__uuidof(_clsTarn4x)),
                    L"Interface\\" + com::ToText(__uuidof(_clsStatistics)),
                    L"Interface\\" + com::ToText(__uuidof(_clsRegister))});
}

// What the driver uses but others own.
Entries Framework() {
    return Collect({L"Seamlib.clsApplication", L"CLSID\\" + com::ToText(__uuidof(clsApplication)),
                    L"TypeLib\\" + com::ToText(LIBID_Seamlib), L"Interface\\" + com::ToText(__uuidof(IDriverSetup)),
                    L"Interface\\" + com::ToText(__uuidof(IDriverIdentify)),
                    L"Interface\\" + com::ToText(__uuidof(IRegister))});
}

void Regsvr32(int bits, const wchar_t* name, const wchar_t* options) {
    std::wstring command = std::wstring(L"C:\\windows\\") + (bits == 64 ? L"system32" : L"syswow64") +
                           L"\\regsvr32.exe /s " + options + L" \"" + ComponentFile(name, bits) + L'"';
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    ASSERT_TRUE(
        CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 1;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    EXPECT_EQ(code, 0U) << com::Utf8(command);
}

void Register(int bits) { Regsvr32(bits, L"XTarn4x", L""); }
void Unregister(int bits) { Regsvr32(bits, L"XTarn4x", L"/u"); }

class Registration : public testing::Test {
  protected:
    void SetUp() override {
        if (GetFileAttributesW(ComponentFile(L"XTarn4x", 32).c_str()) == INVALID_FILE_ATTRIBUTES) {
            GTEST_SKIP() << "No 32-bit driver beside this one";
        }
        Register(64);
        Register(32);
    }
    void TearDown() override {
        if (IsSkipped()) return;
        for (const auto name : {L"Seamcfg", L"Seamlib", L"Conduit", L"XTarn4x"}) {
            Regsvr32(64, name, L"");
            Regsvr32(32, name, L"");
        }
    }
};

TEST_F(Registration, EndsAsItBeganInEveryOrder) {
    const Entries both = Driver();
    const Entries framework = Framework();
    EXPECT_FALSE(both.empty());

    Unregister(32);
    const Entries only64 = Driver();
    Unregister(64);
    EXPECT_EQ(Driver(), Entries{});
    EXPECT_EQ(Framework(), framework);

    Register(64);
    EXPECT_EQ(Driver(), only64);
    Register(64);
    EXPECT_EQ(Driver(), only64);
    Register(32);
    EXPECT_EQ(Driver(), both);
    Unregister(64);
    const Entries only32 = Driver();
    Unregister(32);
    EXPECT_EQ(Driver(), Entries{});

    Register(32);
    EXPECT_EQ(Driver(), only32);
    Register(64);
    EXPECT_EQ(Driver(), both);
    EXPECT_EQ(Framework(), framework);
}

TEST_F(Registration, OfOneBitnessOutlivesTheOther) {
    Unregister(32);
    ComPtr<IUnknown> driver;
    EXPECT_HRESULT_SUCCEEDED(
        CoCreateInstance(CLSID_clsTarn4x, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, driver.putVoid()));
    ComPtr<ITypeLib> library;
    EXPECT_HRESULT_SUCCEEDED(LoadRegTypeLib(LIBID_XTarn4x, 1, 0, 0x409, library.put()));
    EXPECT_HRESULT_SUCCEEDED(LoadRegTypeLib(LIBID_XTarn4x, 1, 0, LOCALE_NEUTRAL, library.put()));
}

TEST_F(Registration, PutsOnlyTheRegistrationClassIntoACategory) {
    const auto all = Driver();
    std::vector<std::wstring> categories;
    for (const auto& [key, value] : all) {
        if (key.starts_with(L"64: ") && key.find(L"Implemented Categories\\") != std::wstring::npos) {
            categories.push_back(key);
        }
    }
    EXPECT_EQ(categories,
              (std::vector<std::wstring>{L"64: CLSID\\" + com::ToText(CLSID_clsRegister) +
                                         L"\\Implemented Categories\\" + com::ToText(com::DriverCategory)}));
    EXPECT_EQ(all.at(L"64: CLSID\\" + com::ToText(CLSID_clsTarn4x) + L"\\InprocServer32 : ThreadingModel"),
              L"apartment");
}

}  // namespace
