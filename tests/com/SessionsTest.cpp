#include <array>
#include <cstdlib>
#include <iostream>

#include "tests/com/Bench.h"

// What is left in a process of sessions with the simulated receiver.

namespace {

/// Heap blocks, heap bytes, the first handle that is free. (GetProcessHandleCount tells 0 under Wine 8.)
using Footprint = std::array<long long, 3>;

Footprint TakeFootprint() {
    const HANDLE handle = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    Footprint now{0, 0, reinterpret_cast<INT_PTR>(handle)};
    CloseHandle(handle);
    std::array<HANDLE, 256> heaps{};
    const DWORD count = GetProcessHeaps(heaps.size(), heaps.data());
    for (DWORD index = 0; index < count; ++index) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[index]);
        while (HeapWalk(heaps[index], &entry)) {
            const bool busy = (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
            now[0] += busy;
            now[1] += busy ? entry.cbData : 0;
        }
        HeapUnlock(heaps[index]);
    }
    return now;
}

}  // namespace

int Environment(const char* variable, int otherwise) {
    const char* text = std::getenv(variable);
    return text ? std::atoi(text) : otherwise;
}

void UseTheReceiver(const ComPtr<_clsTarn4x>& driver) {
    const auto application = Create<IApplication>(CLSID_clsApplication);
    ASSERT_EQ(application->put_DelayScale(0.0), S_OK);
    Script script(driver), setup(driver.As<IDriverSetup>());
    auto settings = setup.Object(L"Settings");
    const int port = Environment("simulator_port", 0);
    ASSERT_NE(port, 0) << "the environment has to name the simulated receiver's port";
    for (const auto& [path, value] : {std::pair("Remote Control", Arg("TCP/IP")), {"TCP/IP.Port", Arg(port)}}) {
        ASSERT_EQ(settings.Object(L"Item", {path}).Put(L"Value", {value}), "");
    }
    ASSERT_EQ(setup.Put(L"OnLine", {true}), "");
    double number = 0;
    ASSERT_EQ(driver->get_RF(&number), S_OK);
    ASSERT_EQ(script.Get(L"RF"), platform::GeneralNumber(number));
    Bstr report;
    ComPtr<_clsStatistics> statistics;
    ASSERT_EQ(driver->get_AlarmStatistics(statistics.put()), S_OK);
    ASSERT_EQ(statistics->get_Statistics(report.put()), S_OK);
    script.Object(L"AlarmStatistics").Get(L"Statistics");
    ASSERT_EQ(Told(driver->get_MeasureOfdmMerPeakPct(&number)).substr(0, 5), "+2016");
    ASSERT_EQ(script.Get(L"MeasureOfdmMerPeakPct").substr(0, 5), "+2016");
    ASSERT_EQ(setup.Put(L"OnLine", {false}), "");
    ASSERT_EQ(application->put_DelayScale(1.0), S_OK);
}

namespace {

// Each round leaves no more behind than the second one. The allowance (8 blocks, 1 KiB) is for the heaps' book-keeping;
// one object that is left behind in each of 10 cycles exceeds it.
TEST(Sessions, LeaveNothingBehind) {
    constexpr Footprint allowances{8, 1024, 0};
    const int cycles = Environment("SOAK_CYCLES", 20);
    std::vector<Footprint> footprints(static_cast<std::size_t>(Environment("SOAK_ROUNDS", 3)));
    std::cout << "measured sessions, " << 8 * sizeof(void*) << "-bit, " << footprints.size() << " x " << cycles
              << " (heap blocks, heap bytes, free handle):";
    for (auto& footprint : footprints) {
        for (int done = 0; done < cycles && !HasFailure(); ++done) UseTheReceiver(Create<_clsTarn4x>(CLSID_clsTarn4x));
        // Failures are logged, up to its capacity.
        ASSERT_EQ(Create<IMessageLog>(CLSID_clsMessageLog)->Clear(), S_OK);
        footprint = TakeFootprint();
        std::cout << ' ' << footprint[0] << ' ' << footprint[1] << ' ' << footprint[2] << ';';
    }
    std::cout << std::endl;
    for (std::size_t round = 2; round < footprints.size(); ++round) {
        for (std::size_t kind = 0; kind < allowances.size(); ++kind) {
            EXPECT_LE(footprints[round][kind], footprints[1][kind] + allowances[kind]) << kind;
        }
    }
}

}  // namespace
