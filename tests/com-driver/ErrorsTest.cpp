#include "tests/com-driver/Bench.h"

// What a host finds when a call fails: result code, source and description, and outputs that it can rely on.

namespace {

class Errors : public OnLine {
  protected:
    Errors() { peer.Answer("SENS:DVBT:MEAS?", "NORM"); }
};

struct Case {
    std::function<HRESULT(_clsTarn4x&, IDriverSetup&)> call;
    const GUID& raisedBy;
    Failure expected;
};

Failure Raised(unsigned result, const char* source, const char* description) {
    return {static_cast<HRESULT>(result), source, description};
}

TEST_F(Errors, ArriveWithNumberSourceAndDescription) {
    peer.Answer("READ:DVBT:MPEG:TS:LOCKED?", "perhaps");
    peer.Answer("SENSE:DVBT:CODE:RATE:MODE?", "TPS");
    peer.Answer("READ:DVBT:ALAR:STAT?", "0:0:0");
    double number = -777.25;
    VARIANT_BOOL boolean = 0x5555;
    int sixteen = 16;
    const auto poison = reinterpret_cast<_clsStatistics*>(std::intptr_t{0x5555});
    _clsStatistics* object = poison;
    const GUID& driverId = __uuidof(_clsTarn4x);
    const Case cases[] = {
        {[](auto&, auto& session) { return session.put_OnLine(VARIANT_TRUE); }, driverId,
         Raised(0x800A07D2, "clsTarn4x.OnLine", "Driver already on-line")},
        {[&](auto& object4x, auto&) { return object4x.get_MeasureOfdmMerPeakPct(&number); }, driverId,
         Raised(0x800407E0, "clsTarn4x.MeasureOfdmMerPeakPct", "Wrong measurement mode selected")},
        {[&](auto& object4x, auto&) { return object4x.put_Mode(static_cast<TarnModes>(sixteen)); }, driverId,
         Raised(0x8004017C, "clsTarn4x.Mode", "Invalid property value (Mode = 16)")},
        {[&](auto& object4x, auto&) { return object4x.get_MeasureMpegTsUnSync(&boolean); }, driverId,
         Raised(0x800407D4, "clsTarn4x.MeasureMpegTsUnSync", "Get MeasureMpegTsUnSync failed")},
        {[](auto& object4x, auto&) { return object4x.put_StatusOfdmAlpha(tarn1H); }, driverId,
         Raised(0x800407E9, "clsTarn4x.StatusOfdmAlpha", "Code rate mode does not support operation")},
        {[&](auto& object4x, auto&) { return object4x.get_AlarmStatistics(&object); }, driverId,
         Raised(0x800407D4, "clsTarn4x.AlarmStatistics", "Get AlarmStatistics failed")},
        {[](auto&, auto& session) { return session.put_OnLine(VARIANT_FALSE); }, driverId, {}},
        {[](auto&, auto& session) { return session.put_OnLine(VARIANT_FALSE); }, driverId,
         Raised(0x800A07D3, "clsTarn4x.OnLine", "Driver already off-line")},
        {[](auto& object4x, auto&) { return object4x.Reset(); }, driverId,
         Raised(0x800407D5, "clsTarn4x.Reset", "Reset failed")},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(testing::PrintToString(one.expected));
        const HRESULT result = one.call(*driver.get(), *setup.get());
        EXPECT_EQ(TakeFailure(result, one.raisedBy), one.expected);
    }
    // Numbers and Booleans of a failing call stay as they were; what a caller would release is empty.
    EXPECT_EQ(number, -777.25);
    EXPECT_EQ(boolean, 0x5555);
    EXPECT_EQ(object, nullptr);
}

TEST_F(Errors, LeaveTextsAndVariantsEmpty) {
    ASSERT_EQ(setup->put_OnLine(VARIANT_FALSE), S_OK);
    BSTR text = reinterpret_cast<BSTR>(std::intptr_t{0x5555});
    EXPECT_EQ(driver->get_Identity(&text), static_cast<HRESULT>(0x800407D4));
    EXPECT_EQ(text, nullptr);
    text = reinterpret_cast<BSTR>(std::intptr_t{0x5555});
    EXPECT_EQ(driver->get_Manufacturer(&text), static_cast<HRESULT>(0x800407D4));
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(TakeFailure(0, __uuidof(_clsTarn4x)),
              Raised(0, "clsTarn4x.IDriverIdentify_Manufacturer", "Get Manufacturer failed"));
}

TEST_F(Errors, OfTheDecoderArePlainNumbers) {
    ComPtr<_clsStatistics> statistics;
    peer.Answer("READ:DVBT:ALAR:STAT?", "0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1,1,1");
    ASSERT_EQ(driver->get_AlarmStatistics(statistics.put()), S_OK);
    const struct {
        const char* report;
        unsigned result;
    } cases[] = {
        {"1:0:0,1:0:0", 0x800A0009},
        {"99999:0:0", 0x800A0006},
        {"0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,many,1,1", 0x800A000D},
    };
    for (const auto& one : cases) {
        const com::Bstr report{std::string_view(one.report)};
        EXPECT_EQ(static_cast<unsigned>(statistics->put_Statistics(report.get())), one.result) << one.report;
    }
}

TEST_F(Errors, ReachScripts) {
    Script script(driver.get());
    EXPECT_EQ(script.Get(L"MeasureOfdmMerRmsDb"), DISP_E_EXCEPTION);
    EXPECT_EQ(script.raised, Raised(0x800407E0, "clsTarn4x.MeasureOfdmMerRmsDb", "Wrong measurement mode selected"));
    Script session(setup.get());
    EXPECT_EQ(session.Put(L"OnLine", Number(-1)), DISP_E_EXCEPTION);
    EXPECT_EQ(session.raised, Raised(0x800A07D2, "clsTarn4x.OnLine", "Driver already on-line"));
}

TEST_F(Errors, LeaveNothingBehindASuccess) {
    double number = 0;
    EXPECT_HRESULT_FAILED(driver->get_MeasureOfdmMerRmsDb(&number));
    peer.Answer("READ:RF:LEVEL?", "-45.5");
    EXPECT_EQ(driver->get_MeasureRfLevel(&number), S_OK);
    ComPtr<IErrorInfo> information;
    EXPECT_EQ(GetErrorInfo(0, information.put()), S_FALSE);
}

TEST_F(Errors, ComeForMissingOutputs) {
    EXPECT_EQ(driver->get_RF(nullptr), E_POINTER);
    EXPECT_EQ(driver->get_Prefix(nullptr), E_POINTER);
    EXPECT_EQ(driver->get_AlarmStatistics(nullptr), E_POINTER);
    double value = 0;
    EXPECT_EQ(driver->get_ImpulseResponseAtten(nullptr, &value), E_POINTER);
    VARIANT_BOOL done = 0;
    EXPECT_EQ(driver->get_ScreenShot(tarnTransfer, nullptr, &done), E_POINTER);
    EXPECT_EQ(peer.Count("SENS:FREQ:CENT?"), 0U);
}

TEST(Creation, OfAnUnusedDriverNeedsNoInstrument) {
    ComPtr<_clsTarn4x> driver;
    ASSERT_HRESULT_SUCCEEDED(
        CoCreateInstance(CLSID_clsTarn4x, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_clsTarn4x), driver.putVoid()));
    VARIANT_BOOL onLine = 0x5555;
    EXPECT_EQ(driver.As<IDriverSetup>()->get_OnLine(&onLine), S_OK);
    EXPECT_EQ(onLine, VARIANT_FALSE);
}

}  // namespace
