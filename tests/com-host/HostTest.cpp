#include <algorithm>

#include "platform/com/Categories.h"
#include "tests/com-host/Client.h"
#include "tests/com-host/Fake.h"

using com::Bstr;
using com::ComPtr;

namespace {

constexpr CLSID RegisterId = {0x5E1A7C02, 0x44F1, 0x4E0B, {0x93, 0x1D, 0x2C, 0x60, 0x7F, 0x18, 0xB3, 0x9E}};
constexpr CLSID DriverId = {0x7B30D9E4, 0x1A6C, 0x4D53, {0xA8, 0x02, 0x5F, 0x94, 0xE1, 0x3C, 0x66, 0x10}};

class FakeRegister : public Fake<IRegister> {
  public:
    STDMETHODIMP GetClassDescription(BSTR* text) override { return Give(text, com::ToBstr("A driver for tests")); }
    STDMETHODIMP GetClassName(BSTR* name) override { return Give(name, com::ToBstr("clsFake")); }
};

class FakeDriver : public Fake<IDriverSetup> {
  public:
    STDMETHODIMP put_Name(BSTR name) override { return Give(&Name, com::Utf8(name)); }
    STDMETHODIMP get_Name(BSTR* name) override { return Give(name, com::ToBstr(Name)); }
    STDMETHODIMP get_Settings(INode** settings) override { return Give(settings, ComPtr<INode>(Settings).detach()); }
    STDMETHODIMP get_OnLine(VARIANT_BOOL* onLine) override {
        return Give(onLine, OnLine ? VARIANT_TRUE : VARIANT_FALSE);
    }
    STDMETHODIMP put_OnLine(VARIANT_BOOL) override {
        return com::Border(IID_IDriverSetup, [&] {
            if (OnLine) throw platform::AutomationError(2002, "clsFake.OnLine", "Driver already on-line");
            OnLine = Failure.empty();
            if (!OnLine) com::ComFramework()->TheMessageLog().Log(1, "clsFake", Failure, "COM9: sent nothing");
        });
    }

    std::string Name, Failure;
    bool OnLine = false;
    INode* Settings = nullptr;
};

/// A class factory as another component's: it hands out one object, or fails.
class Factory : public IClassFactory, public ISupportErrorInfo {
  public:
    explicit Factory(IUnknown* object) : object_(object) {}
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid == IID_IUnknown || iid == IID_IClassFactory) *object = static_cast<IClassFactory*>(this);
        if (iid == IID_ISupportErrorInfo) *object = static_cast<ISupportErrorInfo*>(this);
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override { return S_OK; }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }
    STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** object) override {
        *object = nullptr;
        return com::Border(IID_IClassFactory, [&] {
            if (object_) return object_->QueryInterface(iid, object);
            throw platform::AutomationError(380, "source", "text");
        });
    }

  private:
    IUnknown* object_;
};

/// Registered for this process and in the registry while it lives.
class RegisteredClass {
  public:
    RegisteredClass(const CLSID& clsid, const wchar_t* progId, IUnknown* object, bool isDriverRegister)
        : factory_(object), progIdKey_(progId), classKey_(L"CLSID\\" + com::ToText(clsid)) {
        Write(progIdKey_ + L"\\CLSID", com::ToText(clsid));
        Write(classKey_ + L"\\ProgID", progId);
        if (isDriverRegister) Write(classKey_ + L"\\Implemented Categories\\" + com::ToText(com::DriverCategory), L"");
        com::Check(CoRegisterClassObject(clsid, static_cast<IClassFactory*>(&factory_), CLSCTX_INPROC_SERVER,
                                         REGCLS_MULTIPLEUSE, &cookie_));
    }
    RegisteredClass(const RegisteredClass&) = delete;
    RegisteredClass& operator=(const RegisteredClass&) = delete;
    ~RegisteredClass() {
        CoRevokeClassObject(cookie_);
        RegDeleteTreeW(HKEY_CLASSES_ROOT, progIdKey_.c_str());
        RegDeleteTreeW(HKEY_CLASSES_ROOT, classKey_.c_str());
    }

  private:
    static void Write(const std::wstring& key, const std::wstring& data) {
        RegSetValueW(HKEY_CLASSES_ROOT, key.c_str(), REG_SZ, data.c_str(), 0);
    }

    Factory factory_;
    std::wstring progIdKey_, classKey_;
    DWORD cookie_ = 0;
};

std::vector<std::string> Texts(const VARIANT& array) {
    EXPECT_EQ(V_VT(&array), VT_ARRAY | VT_VARIANT);
    LONG last = -1;
    SafeArrayGetUBound(V_ARRAY(&array), 1, &last);
    std::vector<std::string> texts;
    for (LONG index = 0; index <= last; ++index) {
        com::Variant text;
        SafeArrayGetElement(V_ARRAY(&array), &index, &text);
        texts.push_back(com::TextOf(text));
    }
    return texts;
}

class Host : public testing::Test {
  protected:
    const ComPtr<IHost> host = com::CreateByProgId<IHost>("Seamlib.clsHost");
};

}  // namespace

TEST_F(Host, FindsAndCreatesDrivers) {
    FakeRegister registration;
    FakeDriver driver;
    {
        const RegisteredClass registers(RegisterId, L"Fakes.clsRegister", static_cast<IRegister*>(&registration), true);
        const RegisteredClass drives(DriverId, L"Fakes.clsFake", static_cast<IDriverSetup*>(&driver), false);
        const auto names = Texts(Invoke(host.get(), L"Drivers", DISPATCH_PROPERTYGET, {}));
        EXPECT_EQ(std::count(names.begin(), names.end(), "Fakes"), 1);
        EXPECT_EQ(Call(host.get(), L"Describe", {Text("Fakes")}), Text("A driver for tests"));
        ComPtr<IDispatch> created;
        com::Check(host->CreateDriver(Bstr("Fakes").get(), created.put()), host.get());
        EXPECT_EQ(created.get(), static_cast<IDispatch*>(&driver));
    }
    EXPECT_EQ(registration.References, 0);
    EXPECT_EQ(driver.References, 0);
}

TEST_F(Host, PassesTheCreationErrorOfADriver) {
    FakeRegister registration;
    const RegisteredClass registers(RegisterId, L"Fakes.clsRegister", static_cast<IRegister*>(&registration), true);
    const RegisteredClass drives(DriverId, L"Fakes.clsFake", nullptr, false);
    EXPECT_EQ(Raised([&] { Call(host.get(), L"CreateDriver", {Text("Fakes")}); }), "380|source|text");
    EXPECT_EQ(Raised([&] { Call(host.get(), L"CreateDriver", {Text("None")}); }),
              "429|Seamlib|Component can't create object: \"None.clsRegister\"");
}

TEST_F(Host, ReachesADriversSetup) {
    FakeDriver driver;
    const auto settings = com::CreateByProgId<INode>("Seamcfg.clsNode");
    driver.Settings = settings.get();
    {
        ComPtr<ISetup> setup;
        ComPtr<INode> found;
        com::Check(host->Setup(&driver, setup.put()), host.get());
        Put(setup.get(), L"Name", Text("TARN1"));
        EXPECT_EQ(Get(setup.get(), L"Name"), Text("TARN1"));
        EXPECT_EQ(setup->get_Settings(found.put()), S_OK);
        EXPECT_EQ(found.get(), settings.get());
        for (const auto& [failure, why] : {std::pair("No reply", "COM9: No reply"), {"", ""}}) {
            driver.Failure = failure;
            Put(setup.get(), L"OnLine", true);
            EXPECT_EQ(Get(setup.get(), L"OnLine"), platform::Value(driver.Failure.empty()));
            EXPECT_EQ(Get(setup.get(), L"WhyOffLine"), Text(why));
        }
        EXPECT_EQ(Raised(setup->put_OnLine(VARIANT_TRUE), setup.get()), "2002|clsFake.OnLine|Driver already on-line");
    }
    EXPECT_EQ(driver.References, 0);
}

TEST_F(Host, RefusesObjectsThatAreNoDrivers) {
    Fake<IDispatch> object;
    ComPtr<ISetup> setup;
    ComPtr<IIdentify> identify;
    EXPECT_EQ(Raised(host->Setup(&object, setup.put()), host.get()),
              "13|Seamlib.clsHost|The object is no driver that has settings and an on-line state");
    EXPECT_EQ(Raised(host->Identify(&object, identify.put()), host.get()),
              "13|Seamlib.clsHost|The object is no driver that has an identity");
    EXPECT_EQ(Raised(host->Setup(nullptr, setup.put()), host.get()), "91|Seamlib.clsHost|There is no driver object");
    EXPECT_EQ(object.References, 0);
}
