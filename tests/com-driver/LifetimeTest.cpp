#include <Conduit_h.h>

#include "tests/com-driver/Bench.h"
#include "tests/com-driver/Footprint.h"

// What is left in a process of objects that were released and of components that were unloaded.

namespace {

/// Settings by which a driver reaches the simulated receiver.
const std::vector<std::pair<std::string, platform::Value>>& Receiver() {
    static const std::vector<std::pair<std::string, platform::Value>> settings = {
        {"Remote Control", std::string("TCP/IP")},
        {"TCP/IP.Host", std::string("127.0.0.1")},
        {"TCP/IP.Port", std::int32_t{Setting("simulator_port", 0)}}};
    return settings;
}

void SessionThroughFunctionTable() {
    const auto driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    const auto setup = driver.As<IDriverSetup>();
    Select(setup.get(), Receiver());
    double number = 0;
    ComPtr<_clsStatistics> statistics;
    com::Bstr report;
    ASSERT_EQ(setup->put_OnLine(VARIANT_TRUE), S_OK);
    ASSERT_EQ(driver->get_RF(&number), S_OK);
    ASSERT_EQ(driver->get_AlarmStatistics(statistics.put()), S_OK);
    ASSERT_EQ(statistics->get_Statistics(report.put()), S_OK);
    ASSERT_EQ(static_cast<unsigned>(driver->get_MeasureOfdmMerPeakPct(&number)), 0x800407E0);
    ASSERT_EQ(setup->put_OnLine(VARIANT_FALSE), S_OK);
}

void SessionThroughInvoke() {
    const auto driver = Create<IDispatch>(CLSID_clsTarn4x);
    const auto second = driver.As<IDriverSetup>();
    Script script(driver.get()), setup(second.get()), settings(setup.Value(L"Settings").pdispVal);
    for (const auto& [path, value] : Receiver()) {
        Script setting(settings.Value(L"Item", {com::Variant(com::ToVariant(path))}).pdispVal);
        ASSERT_EQ(setting.Put(L"Value", com::Variant(com::ToVariant(value))), S_OK);
    }
    ASSERT_EQ(setup.Put(L"OnLine", Number(1)), S_OK);
    script.Value(L"RF");
    Script(script.Value(L"AlarmStatistics").pdispVal).Value(L"Statistics");
    ASSERT_EQ(script.Get(L"MeasureOfdmMerPeakPct"), DISP_E_EXCEPTION);
    ASSERT_EQ(script.raised.result, 0x800407E0);
    ASSERT_EQ(setup.Put(L"OnLine", Number(0)), S_OK);
}

TEST(Sessions, LeaveNothingBehind) {
    ASSERT_NE(Setting("simulator_port", 0), 0) << "the environment has to name the simulated receiver's port";
    const int rounds = Setting("SOAK_ROUNDS", 3), cycles = Setting("SOAK_CYCLES", 20);
    ExpectFlat("sessions through the function table", rounds, cycles, SessionThroughFunctionTable);
    ExpectFlat("sessions through Invoke", rounds, cycles, SessionThroughInvoke);
}

/// A component that is loaded without COM's help, and unloaded.
class Module {
  public:
    explicit Module(const wchar_t* name) : module_(LoadLibraryW(ComponentFile(name).c_str())) {}
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() { FreeLibrary(module_); }

    HRESULT CanUnload() const { return Entry<HRESULT STDAPICALLTYPE()>("DllCanUnloadNow")(); }
    ComPtr<IDispatch> New(REFCLSID clsid) const {
        ComPtr<IClassFactory> factory;
        ComPtr<IDispatch> object;
        com::Check(Entry<HRESULT STDAPICALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject")(
            clsid, IID_IClassFactory, factory.putVoid()));
        com::Check(factory->CreateInstance(nullptr, IID_IDispatch, object.putVoid()));
        return object;
    }

  private:
    template <class Function>
    Function* Entry(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }

    HMODULE module_;
};

// Seamlib stays once its services were used: what it knows belongs to the process.
const struct Loadable {
    const wchar_t* name;
    const CLSID& clsid;
    const wchar_t *works, *fails;
} loadables[] = {{L"XTarn4x", CLSID_clsTarn4x, L"Postfix", L"RF"},
                 {L"Seamcfg", __uuidof(clsNode), L"Count", L"Item"},
                 {L"Conduit", __uuidof(clsEthernet), L"Timeout", L"ReadString"}};

TEST(Components, ComeAndGo) {
    for (const auto& component : loadables) {
        // COM may have loaded it for another object.
        CoFreeUnusedLibrariesEx(0, 0);
        ASSERT_EQ(GetModuleHandleW(component.name), nullptr) << com::Utf8(component.name);
        ExpectFlat("loading of " + com::Utf8(component.name), 10, 20, [&] {
            {
                const Module module(component.name);
                auto object = module.New(component.clsid);
                Script script(object.get());
                script.Value(component.works);
                ASSERT_EQ(script.Get(component.fails, {Number(7)}), DISP_E_EXCEPTION);
                ASSERT_EQ(module.CanUnload(), S_FALSE);
                object = {};
                ASSERT_EQ(module.CanUnload(), S_OK);
            }
            ASSERT_EQ(GetModuleHandleW(component.name), nullptr) << com::Utf8(component.name);
        });
    }
}

template <class Interface>
ComPtr<IUnknown> As(IDispatch* driver) {
    return ComPtr<IUnknown>(ComPtr<IDispatch>(driver).As<Interface>().get());
}

template <class Found, HRESULT (STDMETHODCALLTYPE IHost::*Member)(IDispatch*, Found**)>
ComPtr<IUnknown> FromHost(IDispatch* driver) {
    ComPtr<Found> found;
    com::Check((Create<IHost>(__uuidof(clsHost)).get()->*Member)(driver, found.put()));
    return ComPtr<IUnknown>(found.get());
}

ComPtr<IUnknown> SettingsOf(IDispatch* driver) {
    ComPtr<INode> settings;
    com::Check(ComPtr<IDispatch>(driver).As<IDriverSetup>()->get_Settings(settings.put()));
    return ComPtr<IUnknown>(settings.get());
}

ComPtr<IUnknown> DescriptionOf(IDispatch* driver) {
    ComPtr<ITypeInfo> description;
    com::Check(driver->GetTypeInfo(0, LOCALE_INVARIANT, description.put()));
    return ComPtr<IUnknown>(description.get());
}

const struct Companion {
    const char* what;
    ComPtr<IUnknown> (*of)(IDispatch* driver);
    HRESULT canUnload;
} companions[] = {{"_clsTarn4x", As<_clsTarn4x>, S_FALSE},
                  {"IDriverSetup", As<IDriverSetup>, S_FALSE},
                  {"IDriverIdentify", As<IDriverIdentify>, S_FALSE},
                  {"ISupportErrorInfo", As<ISupportErrorInfo>, S_FALSE},
                  {"IProvideClassInfo", As<IProvideClassInfo>, S_FALSE},
                  {"the host's view of the setup", FromHost<ISetup, &IHost::Setup>, S_FALSE},
                  {"the host's view of the identity", FromHost<IIdentify, &IHost::Identify>, S_FALSE},
                  {"the settings", SettingsOf, S_OK},
                  {"the description", DescriptionOf, S_OK}};

TEST(Components, StayForWhatIsHeld) {
    for (const auto& companion : companions) {
        ComPtr<IUnknown> held;
        {
            const Module module(L"XTarn4x");
            held = companion.of(module.New(CLSID_clsTarn4x).get());
            EXPECT_EQ(module.CanUnload(), companion.canUnload) << companion.what;
            if (companion.canUnload == S_FALSE) held = {};
            EXPECT_EQ(module.CanUnload(), S_OK) << companion.what;
        }
        ASSERT_EQ(GetModuleHandleW(L"XTarn4x"), nullptr) << companion.what;
        // What does not keep the component outlasts it.
        if (held) {
            EXPECT_TRUE(held.As<IUnknown>()) << companion.what;
        }
    }
}

TEST(Components, StayForStatisticsThatOutlastTheirDriver) {
    const Module module(L"XTarn4x");
    ComPtr<_clsStatistics> statistics;
    {
        Session session;
        session.peer.Answers("READ:DVBT:ALAR:STAT? = 0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1,2,3");
        ASSERT_EQ(session.driver->get_AlarmStatistics(statistics.put()), S_OK);
    }
    EXPECT_EQ(Script(statistics.get()).Value(L"MpegDataErrorCntAfterRs").dblVal, 3.0);
    EXPECT_EQ(module.CanUnload(), S_FALSE);
    statistics = {};
    EXPECT_EQ(module.CanUnload(), S_OK);
}

}  // namespace
