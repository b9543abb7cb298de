#include <atomic>
#include <thread>

#include "tests/com-driver/Bench.h"
#include "tests/com-driver/Footprint.h"

// Drivers used from other apartments than their own, and from several threads at once. The instrument's answers tell
// which query they belong to and how often that was asked.

namespace {

/// Runs something in threads, each in an apartment of that kind, while this one handles the calls that arrive.
void InThreads(int count, const std::function<COINIT(int)>& apartment, const std::function<void(int)>& use) {
    std::atomic<int> running = count;
    std::vector<std::thread> threads;
    for (int number = 0; number < count; ++number) {
        threads.emplace_back([&, number] {
            EXPECT_HRESULT_SUCCEEDED(CoInitializeEx(nullptr, apartment(number)));
            use(number);
            CoUninitialize();
            --running;
        });
    }
    while (running > 0) {
        MsgWaitForMultipleObjectsEx(0, nullptr, 10, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) DispatchMessageW(&message);
    }
    for (auto& thread : threads) thread.join();
}

COINIT Single(int) { return COINIT_APARTMENTTHREADED; }
COINIT Multiple(int) { return COINIT_MULTITHREADED; }
COINIT SingleAndMultiple(int number) { return number % 2 == 0 ? Single(number) : Multiple(number); }

/// A driver that other apartments can fetch.
class Offer {
  public:
    explicit Offer(_clsTarn4x* driver) : table_(Create<IGlobalInterfaceTable>(CLSID_StdGlobalInterfaceTable)) {
        com::Check(table_->RegisterInterfaceInGlobal(driver, __uuidof(_clsTarn4x), &cookie_));
    }
    Offer(const Offer&) = delete;
    Offer& operator=(const Offer&) = delete;
    ~Offer() { table_->RevokeInterfaceFromGlobal(cookie_); }

    ComPtr<_clsTarn4x> Fetch() const {
        ComPtr<_clsTarn4x> driver;
        com::Check(Create<IGlobalInterfaceTable>(CLSID_StdGlobalInterfaceTable)
                       ->GetInterfaceFromGlobal(cookie_, __uuidof(_clsTarn4x), driver.putVoid()));
        return driver;
    }

  private:
    ComPtr<IGlobalInterfaceTable> table_;
    DWORD cookie_ = 0;
};

/// The kinds of calls that a host makes, as it sees them in its own apartment.
void UseEveryKindOfMember(const ComPtr<_clsTarn4x>& driver) {
    Script script(driver.get());
    double number = 0;
    EXPECT_EQ(driver->get_RF(&number), S_OK);
    EXPECT_EQ(number, 5001.0);
    EXPECT_EQ(script.Value(L"RF").dblVal, 5002.0);
    com::Variant raw;
    EXPECT_EQ(driver->get_ResponseString(&raw), S_OK);
    EXPECT_EQ(com::Utf8(raw.bstrVal), "5002");
    EXPECT_EQ(driver->put_MeasureCdSymbolCount(1000), S_OK);
    EXPECT_EQ(script.Put(L"MeasureCdSymbolCount", Number(2000)), S_OK);
    EXPECT_EQ(com::Utf8(script.Value(L"FormatCodeRate", {Number(tarn3_4)}).bstrVal), "'3/4'");

    ComPtr<_clsStatistics> statistics;
    double count = 0;
    EXPECT_EQ(driver->get_AlarmStatistics(statistics.put()), S_OK);
    EXPECT_EQ(statistics->get_MpegDataErrorCntAfterRs(&count), S_OK);
    EXPECT_EQ(count, 3.0);
    EXPECT_EQ(Script(script.Value(L"AlarmStatistics").pdispVal).Value(L"CorrCntBeforeRs").dblVal, 2.0);

    const auto setup = driver.As<IDriverSetup>();
    ComPtr<INode> settings;
    EXPECT_EQ(setup->get_Settings(settings.put()), S_OK);
    Script root(settings.get());
    Script host(root.Value(L"Item", {com::Variant(com::ToVariant(std::string("TCP/IP.Host")))}).pdispVal);
    EXPECT_EQ(com::Utf8(host.Value(L"Value").bstrVal), "127.0.0.1");
    EXPECT_NE(Script(setup.get()).Value(L"OnLine").boolVal, VARIANT_FALSE);

    // What went wrong is told by the number. Wine 8 does not carry error information from one apartment to another.
    EXPECT_EQ(static_cast<unsigned>(driver->get_MeasureOfdmMerPeakPct(&number)), 0x800407E0);
    EXPECT_EQ(script.Get(L"MeasureOfdmMerPeakPct"), DISP_E_EXCEPTION);
}

void AnswerEveryKind(Session& session) {
    session.peer.Answers(
        "SENS:FREQ:CENT? = 500{n} | SENS:DVBT:MEAS? = NORM | READ:DVBT:ALAR:STAT? = "
        "0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1,2,3");
}

TEST(Apartments, UseADriverOfAnother) {
    for (const auto apartment : {Single, Multiple}) {
        Session session;
        AnswerEveryKind(session);
        const Offer offer(session.driver.get());
        InThreads(1, apartment, [&](int) {
            const auto proxy = offer.Fetch();
            EXPECT_NE(proxy.get(), session.driver.get());
            UseEveryKindOfMember(proxy);
        });
        EXPECT_EQ(session.peer.Count("SENS:DVBT:INT:COUN 2000"), 1u);
    }
}

TEST(Apartments, MayHaveManyThreadsThatCreateDrivers) {
    InThreads(1, Multiple, [](int) {
        Session session;
        AnswerEveryKind(session);
        UseEveryKindOfMember(session.driver);
    });
}

const struct Reading {
    const char* query;
    HRESULT (STDMETHODCALLTYPE _clsTarn4x::*read)(double*);
    const wchar_t* name;
} readings[] = {{"SENS:FREQ:CENT?", &_clsTarn4x::get_RF, L"RF"},
                {"READ:RF:LEVEL?", &_clsTarn4x::get_MeasureRfLevel, L"MeasureRfLevel"},
                {"READ:DVBT:TS:BITRATE?", &_clsTarn4x::get_MeasureTsBitrate, L"MeasureTsBitrate"},
                {"READ:DVBT:BITRATE:OFFSET?", &_clsTarn4x::get_MeasureBitrateOffset, L"MeasureBitrateOffset"},
                {"READ:DVBT:BER:BVIT?", &_clsTarn4x::get_MeasureBerBeforeVit, L"MeasureBerBeforeVit"},
                {"READ:DVBT:BER:BRS?", &_clsTarn4x::get_MeasureBerBeforeRS, L"MeasureBerBeforeRS"},
                {"READ:DVBT:BER:ARS?", &_clsTarn4x::get_MeasureBerAfterRS, L"MeasureBerAfterRS"},
                {"SENS:DVBT:NOISE?", &_clsTarn4x::get_MeasureCdAddNoiseCn, L"MeasureCdAddNoiseCn"}};
constexpr int Threads = std::size(readings);
const int reads = Setting("SOAK_READS", 50);

/// Reads many times; each answer has to be the one to that thread's last query.
void ReadTagged(int thread, _clsTarn4x* driver) {
    const auto& reading = readings[thread];
    Script script(driver);
    for (int n = 1; n <= reads; ++n) {
        double number = 0;
        if (n % 2 == 0) {
            ASSERT_EQ((driver->*reading.read)(&number), S_OK);
        } else {
            number = script.Value(reading.name).dblVal;
        }
        ASSERT_EQ(number, std::stod(std::to_string(thread) + "000" + std::to_string(n))) << reading.query;
    }
}

std::string Tagged(int thread) {
    return std::string(readings[thread].query) + " = " + std::to_string(thread) + "000{n}";
}

TEST(Apartments, MayEachHaveADriverAtOnce) {
    std::atomic<int> ready = 0;
    InThreads(Threads, SingleAndMultiple, [&](int thread) {
        Session session;
        for (++ready; ready < Threads;) Sleep(1);
        session.peer.Answers(Tagged(thread));
        ReadTagged(thread, session.driver.get());
    });
}

TEST(Apartments, MayShareADriverAtOnce) {
    const auto application = Create<IApplication>(__uuidof(clsApplication));
    Session session;
    for (int thread = 0; thread < Threads; ++thread) session.peer.Answers(Tagged(thread));
    // This one is asked for again and again; the others' calls come while the driver waits.
    session.peer.Answers("READ:DVBT:SIGNAL:NOISE? = --- | SENS:DVBT:MEAS? = PAR");
    EXPECT_EQ(application->put_DelayScale(0.002), S_OK);
    const Offer offer(session.driver.get());
    InThreads(Threads + 1, SingleAndMultiple, [&](int thread) {
        const auto driver = offer.Fetch();
        if (thread < Threads) return ReadTagged(thread, driver.get());
        for (int n = 0; n < 5; ++n) {
            double number = -1;
            EXPECT_EQ(driver->get_MeasureOfdmSignalToNoiseRatio(&number), S_OK);
            EXPECT_EQ(number, 0.0);
        }
    });
    EXPECT_EQ(application->put_DelayScale(0.0), S_OK);
    EXPECT_EQ(session.peer.Count("READ:DVBT:SIGNAL:NOISE?"), 5u * 11u);
}

}  // namespace
