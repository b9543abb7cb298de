#include <algorithm>
#include <atomic>
#include <thread>

#include "tests/com/Bench.h"

// Objects used from other apartments than their own, and from several threads at once. The instrument's answers tell
// which query they belong to and how often that was asked.

namespace {

constexpr auto Single = COINIT_APARTMENTTHREADED, Multiple = COINIT_MULTITHREADED;

/// Runs something in threads, each in an apartment of that kind, while this one handles the calls that arrive.
void InThreads(const std::vector<COINIT>& apartments, const std::function<void(std::size_t)>& use) {
    std::atomic<std::size_t> ended = 0;
    std::vector<std::thread> threads;
    for (const auto apartment : apartments) {
        threads.emplace_back([&, apartment, number = threads.size()] {
            EXPECT_HRESULT_SUCCEEDED(CoInitializeEx(nullptr, apartment));
            use(number);
            CoUninitialize();
            ++ended;
        });
    }
    PumpUntil([&] { return ended == threads.size(); });
    for (auto& thread : threads) thread.join();
}

/// An object that other apartments can fetch, as long as somebody can.
template <class Interface>
std::function<ComPtr<Interface>()> Offer(const ComPtr<Interface>& object) {
    const auto table = [] { return Create<IGlobalInterfaceTable>(CLSID_StdGlobalInterfaceTable); };
    const auto revoke = [=](const DWORD* cookie) {
        table()->RevokeInterfaceFromGlobal(*cookie);
        delete cookie;
    };
    const std::shared_ptr<DWORD> cookie(new DWORD, revoke);
    com::Check(table()->RegisterInterfaceInGlobal(object.get(), __uuidof(Interface), cookie.get()));
    return [=] {
        ComPtr<Interface> fetched;
        com::Check(table()->GetInterfaceFromGlobal(*cookie, __uuidof(Interface), fetched.putVoid()));
        return fetched;
    };
}

/// The kinds of calls that a host makes, as it sees them in its own apartment.
void UseEveryKindOfMember(const ComPtr<_clsTarn4x>& driver) {
    Script script(driver), setup(driver.As<IDriverSetup>());
    double number = 0, count = 0;
    EXPECT_EQ(driver->get_RF(&number), S_OK);
    EXPECT_EQ(number, 5001.0);
    EXPECT_EQ(script.Get(L"RF"), "5002");
    EXPECT_EQ(script.Get(L"ResponseString"), "5002");
    EXPECT_EQ(driver->put_MeasureCdSymbolCount(1000), S_OK);
    EXPECT_EQ(script.Put(L"MeasureCdSymbolCount", {2000}), "");
    EXPECT_EQ(script.Get(L"FormatCodeRate", {tarn3_4}), "'3/4'");
    ComPtr<_clsStatistics> statistics;
    EXPECT_EQ(driver->get_AlarmStatistics(statistics.put()), S_OK);
    EXPECT_EQ(statistics->get_MpegDataErrorCntAfterRs(&count), S_OK);
    EXPECT_EQ(count, 3.0);
    EXPECT_EQ(script.Object(L"AlarmStatistics").Get(L"CorrCntBeforeRs"), "2");
    EXPECT_EQ(setup.Object(L"Settings").Object(L"Item", {"Remote Control"}).Get(L"DisplayValue"), "TCP/IP");
    EXPECT_EQ(setup.Get(L"OnLine"), "1");
    // What went wrong is told by the number. Wine 8 does not carry error information from one apartment to another.
    EXPECT_EQ(static_cast<unsigned>(driver->get_MeasureOfdmMerPeakPct(&number)), 0x800407E0);
    EXPECT_EQ(script.Get(L"MeasureOfdmMerPeakPct").substr(0, 5), "+2016");
}

TEST(Apartments, UseADriverOfAnother) {
    for (const auto apartment : {Single, Multiple}) {
        Bench bench(
            "SENS:FREQ:CENT? = 500{n} | SENS:DVBT:MEAS? = NORM | READ:DVBT:ALAR:STAT? = "
            "0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1,2,3");
        const auto fetch = Offer(bench.driver);
        InThreads({apartment}, [&](auto) {
            const auto proxy = fetch();
            EXPECT_NE(proxy.get(), bench.driver.get());
            UseEveryKindOfMember(proxy);
        });
        EXPECT_EQ(std::ranges::count(bench.link.Lines, "SENS:DVBT:INT:COUN 2000"), 1);
    }
}

// In a process of its own: Wine 8 does not let go of class objects of other threads than the one that asked.
TEST(Apartments, MayHaveManyThreadsThatCreateDrivers) {
    const auto create = [](auto) { UseTheReceiver(Create<_clsTarn4x>(CLSID_clsTarn4x)); };
    EXPECT_EXIT((InThreads({Multiple}, create), std::exit(HasFailure())), testing::ExitedWithCode(0), "");
}

TEST(Apartments, ReachNodesAndTransportsOfAnother) {
    const auto root = Create<INode>(CLSID_clsNode);
    const auto link = Create<ITextLink>(CLSID_clsEthernet);
    const auto fetchRoot = Offer(root);
    const auto fetchLink = Offer(link);
    InThreads({Single}, [&](auto) {
        const auto there = fetchRoot();
        com::NodeProxy node(there);
        node.AddSetting("Host", 1, 4, "")->SetValue(true, true, std::string("127.0.0.1"));
        EXPECT_EQ(platform::ToText(node.Item("Host")->GetValue()), "127.0.0.1");
        const auto here = Create<INode>(CLSID_clsNode);
        EXPECT_EQ(Told(here->AddNode(there.get(), VARIANT_TRUE, VARIANT_TRUE)).substr(0, 2), "13");
        com::TransportProxy proxy(fetchLink());
        proxy.SetTimeout(2.5F);
        EXPECT_EQ(proxy.Timeout(), 2.5F);
        proxy.SetName("TARN1");
        EXPECT_EQ(proxy.Settings()->Name(), "TCP/IP");
        EXPECT_FALSE(proxy.IsConnected());
    });
    EXPECT_EQ(Script(root).Object(L"Item", {"Host"}).Get(L"Value"), "127.0.0.1");
}

TEST(Apartments, ShareTheServices) {
    for (const auto* clsid : {&CLSID_clsApplication, &CLSID_clsMessageLog, &CLSID_clsErrorService}) {
        const auto here = Create<IUnknown>(*clsid);
        const auto fetch = Offer(here);
        InThreads({Single, Multiple}, [&](auto) {
            EXPECT_EQ(Create<IUnknown>(*clsid).get(), here.get());
            EXPECT_EQ(fetch().get(), here.get()) << "without marshalling";
        });
    }
}

const std::vector<std::pair<const wchar_t*, std::string>> Readings = {{L"RF", "SENS:FREQ:CENT?"},
                                                                      {L"MeasureRfLevel", "READ:RF:LEVEL?"},
                                                                      {L"MeasureTsBitrate", "READ:DVBT:TS:BITRATE?"},
                                                                      {L"MeasureBerBeforeVit", "READ:DVBT:BER:BVIT?"}};

/// The answers "1000001", "1000002" and so on to the first reading, "2000001" to the second.
std::string Tagged(std::size_t reading) {
    return Readings[reading].second + " = " + std::to_string(reading + 1) + "00000{n}";
}

/// Reads many times; each answer has to be one to that query, later than the last.
void ReadTagged(std::size_t reading, const ComPtr<_clsTarn4x>& driver) {
    Script script(driver);
    int last = 0;
    for (int n = 0; n < Environment("SOAK_READS", 50); ++n) {
        const auto text = script.Get(Readings[reading].first), tag = std::to_string(reading + 1) + "00000";
        ASSERT_TRUE(text.starts_with(tag)) << text << ' ' << tag;
        const int number = std::stoi(text.substr(tag.size()));
        ASSERT_GT(number, last);
        last = number;
    }
}

TEST(Apartments, MayEachHaveADriverAtOnce) {
    std::atomic<int> ready = 0;
    InThreads({Single, Single, Single, Single}, [&](std::size_t thread) {
        Bench bench(Tagged(thread));
        for (++ready; ready < 4;) Sleep(1);
        ReadTagged(thread, bench.driver);
    });
}

TEST(Apartments, MayShareADriverAtOnce) {
    Bench bench("READ:DVBT:SIGNAL:NOISE? = --- | SENS:DVBT:MEAS? = PAR");
    for (std::size_t reading = 0; reading < Readings.size(); ++reading) bench.link.Answers(Tagged(reading));
    // This one is asked for again and again; the others' calls come while the driver waits.
    EXPECT_EQ(bench.application->put_DelayScale(0.002), S_OK);
    const auto fetch = Offer(bench.driver);
    InThreads({Single, Multiple, Single, Multiple, Single, Multiple, Single, Multiple, Single},
              [&](std::size_t thread) {
                  const auto driver = fetch();
                  if (thread < 8) return ReadTagged(thread / 2, driver);
                  for (int n = 0; n < 5; ++n) EXPECT_EQ(Script(driver).Get(L"MeasureOfdmSignalToNoiseRatio"), "0");
              });
    EXPECT_EQ(std::ranges::count(bench.link.Lines, "READ:DVBT:SIGNAL:NOISE?"), 5 * 11);
}

}  // namespace
