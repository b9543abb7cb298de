#include "tests/com-driver/Bench.h"

// What a host finds when a call fails: result code, source and description, and outputs that it can rely on.

namespace {

struct Errors : OnLine {
    Errors() { peer.Answers("SENS:DVBT:MEAS? = NORM"); }
};

template <class Out>
Out* Poisoned() {
    return reinterpret_cast<Out*>(std::intptr_t{0x5555});
}

TEST_F(Errors, ArriveWithNumberSourceAndDescription) {
    peer.Answers(
        "READ:DVBT:MPEG:TS:LOCKED? = perhaps | SENSE:DVBT:CODE:RATE:MODE? = TPS | READ:DVBT:ALAR:STAT? = 0:0:0");
    double number = -777.25;
    VARIANT_BOOL boolean = 0x5555;
    int sixteen = 16;
    auto* object = Poisoned<_clsStatistics>();
    BSTR identity = Poisoned<OLECHAR>(), manufacturer = identity;
    EXPECT_RAISES(setup->put_OnLine(VARIANT_TRUE), 0x800A07D2, "clsTarn4x.OnLine", "Driver already on-line");
    EXPECT_RAISES(driver->get_MeasureOfdmMerPeakPct(&number), 0x800407E0, "clsTarn4x.MeasureOfdmMerPeakPct",
                  "Wrong measurement mode selected");
    EXPECT_RAISES(driver->put_Mode(static_cast<TarnModes>(sixteen)), 0x8004017C, "clsTarn4x.Mode",
                  "Invalid property value (Mode = 16)");
    EXPECT_RAISES(driver->get_MeasureMpegTsUnSync(&boolean), 0x800407D4, "clsTarn4x.MeasureMpegTsUnSync",
                  "Get MeasureMpegTsUnSync failed");
    EXPECT_RAISES(driver->put_StatusOfdmAlpha(tarn1H), 0x800407E9, "clsTarn4x.StatusOfdmAlpha",
                  "Code rate mode does not support operation");
    EXPECT_RAISES(driver->get_AlarmStatistics(&object), 0x800407D4, "clsTarn4x.AlarmStatistics",
                  "Get AlarmStatistics failed");
    EXPECT_RAISES(setup->put_OnLine(VARIANT_FALSE));
    EXPECT_RAISES(setup->put_OnLine(VARIANT_FALSE), 0x800A07D3, "clsTarn4x.OnLine", "Driver already off-line");
    EXPECT_RAISES(driver->Reset(), 0x800407D5, "clsTarn4x.Reset", "Reset failed");
    EXPECT_RAISES(driver->get_Identity(&identity), 0x800407D4, "clsTarn4x.Identity", "Get Identity failed");
    EXPECT_RAISES(driver->get_Manufacturer(&manufacturer), 0x800407D4, "clsTarn4x.IDriverIdentify_Manufacturer",
                  "Get Manufacturer failed");
    // Numbers and Booleans of a failing call stay as they were; what a caller would release is empty.
    EXPECT_EQ(number, -777.25);
    EXPECT_EQ(boolean, 0x5555);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(identity, nullptr);
    EXPECT_EQ(manufacturer, nullptr);
}

TEST_F(Errors, OfTheDecoderArePlainNumbers) {
    const std::string zeros = "0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,";
    peer.Answers("READ:DVBT:ALAR:STAT? = " + zeros + "1,1,1");
    ComPtr<_clsStatistics> statistics;
    ASSERT_EQ(driver->get_AlarmStatistics(statistics.put()), S_OK);
    const std::pair<std::string, unsigned> cases[] = {
        {"1:0:0,1:0:0", 0x800A0009}, {"99999:0:0", 0x800A0006}, {zeros + "many,1,1", 0x800A000D}};
    for (const auto& [report, result] : cases) {
        EXPECT_EQ(static_cast<unsigned>(statistics->put_Statistics(com::Bstr(report).get())), result) << report;
    }
}

TEST_F(Errors, ComeForMissingOutputs) {
    double value = 0;
    VARIANT_BOOL done = 0;
    EXPECT_EQ(driver->get_RF(nullptr), E_POINTER);
    EXPECT_EQ(driver->get_Prefix(nullptr), E_POINTER);
    EXPECT_EQ(driver->get_AlarmStatistics(nullptr), E_POINTER);
    EXPECT_EQ(driver->get_ImpulseResponseAtten(nullptr, &value), E_POINTER);
    EXPECT_EQ(driver->get_ScreenShot(tarnTransfer, nullptr, &done), E_POINTER);
    EXPECT_EQ(peer.Count("SENS:FREQ:CENT?"), 0U);
}

}  // namespace
