#include <thread>

#include "tests/com-driver/Bench.h"

// The driver as a COM object: identity, class objects, life time, apartments.

namespace {

TEST(Identity, IsTheSameThroughEveryInterface) {
    const auto driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    const auto unknown = driver.As<IUnknown>();
    const GUID* const interfaces[] = {&__uuidof(_clsTarn4x), &__uuidof(IDriverIdentify), &__uuidof(IDriverSetup),
                                      &IID_IDispatch,        &IID_ISupportErrorInfo,     &IID_IProvideClassInfo};
    for (const auto from : interfaces) {
        ComPtr<IUnknown> one;
        ASSERT_HRESULT_SUCCEEDED(unknown->QueryInterface(*from, one.putVoid()));
        EXPECT_EQ(one.As<IUnknown>().get(), unknown.get());
        for (const auto to : interfaces) {
            ComPtr<IUnknown> other;
            EXPECT_HRESULT_SUCCEEDED(one->QueryInterface(*to, other.putVoid()));
        }
    }
    ComPtr<IUnknown> none;
    EXPECT_EQ(unknown->QueryInterface(__uuidof(_clsStatistics), none.putVoid()), E_NOINTERFACE);
}

TEST(Identity, OfTheSessionIsTheDrivers) {
    const auto setup = Create<_clsTarn4x>(CLSID_clsTarn4x).As<IDriverSetup>();
    VARIANT_BOOL onLine = 0x5555;
    EXPECT_EQ(setup->get_OnLine(&onLine), S_OK);
    EXPECT_EQ(onLine, VARIANT_FALSE);
    com::Bstr name;
    EXPECT_EQ(setup->put_Name(com::Bstr(std::string_view("Receiver \xC3\xA4")).get()), S_OK);
    EXPECT_EQ(setup->get_Name(name.put()), S_OK);
    EXPECT_EQ(name.Utf8(), "Receiver \xC3\xA4");
    ComPtr<INode> first, second;
    EXPECT_EQ(setup->get_Settings(first.put()), S_OK);
    EXPECT_EQ(setup->get_Settings(second.put()), S_OK);
    EXPECT_EQ(first.get(), second.get());
    // Each dispatch interface knows its own names only.
    EXPECT_EQ(Script(setup.get()).Get(L"OnLine"), S_OK);
    EXPECT_EQ(Script(setup.get()).Get(L"RF"), DISP_E_UNKNOWNNAME);
}

TEST(Identity, IsDescribed) {
    const auto driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    ComPtr<ITypeInfo> description;
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(driver.As<IProvideClassInfo>()->GetClassInfo(description.put()), S_OK);
    ASSERT_EQ(description->GetTypeAttr(&attributes), S_OK);
    EXPECT_TRUE(attributes->guid == CLSID_clsTarn4x);
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    description->ReleaseTypeAttr(attributes);
    const auto support = driver.As<ISupportErrorInfo>();
    for (const GUID* known : {&__uuidof(_clsTarn4x), &__uuidof(IDriverIdentify), &__uuidof(IDriverSetup)}) {
        EXPECT_EQ(support->InterfaceSupportsErrorInfo(*known), S_OK);
    }
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(__uuidof(_clsStatistics)), S_FALSE);
}

TEST(ClassObjects, RefuseAggregationAndWhatCannotBeCreated) {
    const auto outer = Create<IUnknown>(CLSID_clsTarn4x);
    ComPtr<IUnknown> inner;
    EXPECT_EQ(CoCreateInstance(CLSID_clsTarn4x, outer.get(), CLSCTX_INPROC_SERVER, IID_IUnknown, inner.putVoid()),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(CoCreateInstance(CLSID_clsStatistics, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, inner.putVoid()),
              REGDB_E_CLASSNOTREG);
}

TEST(ClassObjects, TellWhichDriverTheComponentProvides) {
    const auto registration = Create<IRegister>(CLSID_clsRegister);
    com::Bstr text;
    EXPECT_EQ(registration->GetClassName(text.put()), S_OK);
    EXPECT_EQ(text.Utf8(), "clsTarn4x");
    EXPECT_EQ(registration->GetClassDescription(text.put()), S_OK);
    EXPECT_EQ(text.Utf8(), "Tarn4x");
    Script script(registration.As<_clsRegister>().get());
    EXPECT_EQ(com::Utf8(script.Value(L"IRegister_GetClassName").bstrVal), "clsTarn4x");
}

class Server : public testing::Test {
  protected:
    Server() : module_(LoadLibraryW(ComponentFile(L"XTarn4x").c_str())) {}
    ~Server() override { FreeLibrary(module_); }

    template <class Function>
    Function* Entry(const char* name) {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }
    HRESULT CanUnload() { return Entry<HRESULT STDAPICALLTYPE()>("DllCanUnloadNow")(); }

  private:
    HMODULE module_;
};

TEST_F(Server, CanUnloadWhenNoObjectAndNoLockIsLeft) {
    ASSERT_EQ(CanUnload(), S_OK);
    const auto getClassObject = Entry<HRESULT STDAPICALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject");
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(getClassObject(CLSID_clsTarn4x, IID_IClassFactory, factory.putVoid()), S_OK);
    EXPECT_EQ(CanUnload(), S_FALSE);

    ComPtr<IUnknown> object;
    EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(_clsStatistics), object.putVoid()), E_NOINTERFACE);
    EXPECT_EQ(object.get(), nullptr);
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, object.putVoid()), S_OK);
    ASSERT_EQ(factory->LockServer(TRUE), S_OK);
    factory = {};
    EXPECT_EQ(CanUnload(), S_FALSE);
    object = {};
    EXPECT_EQ(CanUnload(), S_FALSE);
    ASSERT_EQ(getClassObject(CLSID_clsTarn4x, IID_IClassFactory, factory.putVoid()), S_OK);
    ASSERT_EQ(factory->LockServer(FALSE), S_OK);
    factory = {};
    EXPECT_EQ(CanUnload(), S_OK);

    EXPECT_EQ(getClassObject(CLSID_clsStatistics, IID_IClassFactory, factory.putVoid()), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(factory.get(), nullptr);
}

TEST_F(Server, StaysForStatisticsThatOutlastTheDriver) {
    struct Session : OnLine {
        void TestBody() override {}
    };
    ComPtr<_clsStatistics> statistics;
    {
        Session session;
        session.peer.Answers("READ:DVBT:ALAR:STAT? = 0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1,2,3");
        for (int round = 0; round < 100; ++round) {
            ASSERT_EQ(session.driver->get_AlarmStatistics(statistics.put()), S_OK);
            ASSERT_EQ(Script(statistics.get()).Get(L"CorrCntBeforeVit"), S_OK);
        }
    }
    double count = 0;
    EXPECT_EQ(statistics->get_MpegDataErrorCntAfterRs(&count), S_OK);
    EXPECT_EQ(count, 3.0);
    EXPECT_EQ(CanUnload(), S_FALSE);
    statistics = {};
    EXPECT_EQ(CanUnload(), S_OK);
}

TEST(Apartments, ReachTheDriverAndItsSecondInterface) {
    const auto driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    IStream* stream = nullptr;
    ASSERT_HRESULT_SUCCEEDED(CoMarshalInterThreadInterfaceInStream(__uuidof(_clsTarn4x), driver.get(), &stream));
    const DWORD home = GetCurrentThreadId();
    std::string text;
    std::thread other([&] {
        EXPECT_HRESULT_SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        {
            ComPtr<_clsTarn4x> proxy;
            EXPECT_HRESULT_SUCCEEDED(CoGetInterfaceAndReleaseStream(stream, __uuidof(_clsTarn4x), proxy.putVoid()));
            const auto setup = proxy.As<IDriverSetup>();
            com::Bstr result;
            if (proxy && SUCCEEDED(proxy->FormatGuardInterval(tarn1_16, result.put()))) text = result.Utf8();
            EXPECT_EQ(setup ? setup->put_Name(com::Bstr("abroad").get()) : E_NOINTERFACE, S_OK);
        }
        CoUninitialize();
        PostThreadMessageW(home, WM_QUIT, 0, 0);
    });
    for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) DispatchMessageW(&message);
    other.join();
    EXPECT_EQ(text, "'1/16'");
    com::Bstr result;
    EXPECT_EQ(driver.As<IDriverSetup>()->get_Name(result.put()), S_OK);
    EXPECT_EQ(result.Utf8(), "abroad");
}

}  // namespace
