#include <Conduit_h.h>

#include "tests/com-driver/Bench.h"
#include "tests/com-driver/Footprint.h"

// What is left in a process of objects that were released, and what keeps a component in use.

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

TEST(Components, StayOnceTheyHaveCreatedAnObject) {
    const std::pair<const wchar_t*, CLSID> components[] = {{L"XTarn4x", CLSID_clsTarn4x},
                                                           {L"Seamcfg", __uuidof(clsNode)},
                                                           {L"Seamlib", __uuidof(clsHost)},
                                                           {L"Conduit", __uuidof(clsEthernet)}};
    for (const auto& [name, clsid] : components) Create<IDispatch>(clsid);
    CoFreeUnusedLibrariesEx(0, 0);
    for (const auto& [name, clsid] : components) EXPECT_NE(GetModuleHandleW(name), nullptr) << com::Utf8(name);
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

ComPtr<IUnknown> StatisticsThatOutlastTheirDriver(IDispatch*) {
    ComPtr<_clsStatistics> statistics;
    {
        Session session;
        session.peer.Answers("READ:DVBT:ALAR:STAT? = 0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1,2,3");
        com::Check(session.driver->get_AlarmStatistics(statistics.put()));
    }
    EXPECT_EQ(Script(statistics.get()).Value(L"MpegDataErrorCntAfterRs").dblVal, 3.0);
    return ComPtr<IUnknown>(statistics.get());
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
                  {"statistics", StatisticsThatOutlastTheirDriver, S_FALSE},
                  {"the settings", SettingsOf, S_OK},
                  {"the description", DescriptionOf, S_OK}};

HRESULT CanUnload() {
    const auto entry = GetProcAddress(GetModuleHandleW(L"XTarn4x"), "DllCanUnloadNow");
    return reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(entry))();
}

TEST(Components, KnowWhatIsHeld) {
    for (const auto& companion : companions) {
        auto held = companion.of(Create<IDispatch>(CLSID_clsTarn4x).get());
        EXPECT_EQ(CanUnload(), companion.canUnload) << companion.what;
        held = {};
        EXPECT_EQ(CanUnload(), S_OK) << companion.what;
    }
}

}  // namespace
