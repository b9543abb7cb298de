#include "tests/com-driver/Bench.h"

// Every kind of member, through the function table and through Invoke. Outputs are poisoned before each call.

namespace {

constexpr double Poison = -777.25;

struct Members : OnLine {
    Members() { peer.Answer("SENS:DVBT:MEAS?", "PAR"); }
};

using FunctionTable = Members;
using Invoke = Members;

TEST_F(FunctionTable, ReadsAndWritesNumbers) {
    EXPECT_EQ(driver->put_RF(474000000.25), S_OK);
    EXPECT_TRUE(peer.Received("SENS:FREQ:CENT  474000000.3"));
    peer.Answer("SENS:FREQ:CENT?", "474000000.3");
    double frequency = Poison;
    EXPECT_EQ(driver->get_RF(&frequency), S_OK);
    EXPECT_EQ(frequency, 474000000.3);

    EXPECT_EQ(driver->put_MeasureCdSymbolCount(99999), S_OK);
    EXPECT_TRUE(peer.Received("SENS:DVBT:INT:COUN 99999"));
    peer.Answer("SENS:DVBT:INT:COUN?", "70000");
    LONG symbols = -777;
    EXPECT_EQ(driver->get_MeasureCdSymbolCount(&symbols), S_OK);
    EXPECT_EQ(symbols, 70000);

    peer.Answer("READ:DVBT:AVERAGE:PROGRESS?", "3.5");
    struct {
        short average = -777;
        short beyond = -777;
    } output;
    EXPECT_EQ(driver->get_MeasureOfdmAverage(&output.average), S_OK);
    EXPECT_EQ(output.average, 4);
    EXPECT_EQ(output.beyond, -777);
}

TEST_F(FunctionTable, ReadsAndWritesEnumerations) {
    EXPECT_EQ(driver->put_InputAttenHighAdjChanPower(tarnOn), S_OK);
    EXPECT_TRUE(peer.Received("INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER ON"));
    peer.Answer("READ:DVBT:FFT:MODE?", "8K");
    auto mode = tarnFftUnknown;
    EXPECT_EQ(driver->get_MeasureFftMode(&mode), S_OK);
    EXPECT_EQ(mode, tarn8k);
}

TEST_F(FunctionTable, ReadsBooleans) {
    VARIANT_BOOL unsynchronised = 0x5555;
    peer.Answer("READ:DVBT:MPEG:TS:LOCKED?", "1");
    EXPECT_EQ(driver->get_MeasureMpegTsUnSync(&unsynchronised), S_OK);
    EXPECT_EQ(unsynchronised, VARIANT_FALSE);
    peer.Answer("READ:DVBT:MPEG:TS:LOCKED?", "0");
    EXPECT_EQ(driver->get_MeasureMpegTsUnSync(&unsynchronised), S_OK);
    EXPECT_EQ(unsynchronised, VARIANT_TRUE);
}

TEST_F(FunctionTable, ReadsAndWritesDates) {
    EXPECT_EQ(driver->put_SetupDate(46096.0), S_OK);  // 15 March 2026
    EXPECT_TRUE(peer.Received("SYST:DATE 26,3,15"));
    peer.Answer("SYST:TIME?", "18,45,0");
    DATE time = Poison;
    EXPECT_EQ(driver->get_SetupTime(&time), S_OK);
    EXPECT_DOUBLE_EQ(time, 0.78125);
}

TEST_F(FunctionTable, ReadsTexts) {
    peer.Answer("*IDN?", "VANTERRA,TARN,100123,5.05");
    com::Bstr text(std::string_view("poison"));
    EXPECT_EQ(driver->get_SerialNumber(text.put()), S_OK);
    EXPECT_EQ(text.Utf8(), "100123");
    EXPECT_EQ(setup.As<IDriverIdentify>()->get_FirmwareVersion(text.put()), S_OK);
    EXPECT_EQ(text.Utf8(), "5.05");
    EXPECT_EQ(driver->FormatCodeRate(tarn3_4, text.put()), S_OK);
    EXPECT_EQ(text.Utf8(), "'3/4'");
}

TEST_F(FunctionTable, ReadsVariants) {
    peer.Answer("READ:DVBT:BER:ARS?", "<1.0E-8 (est)");
    double ratio = Poison;
    EXPECT_EQ(driver->get_MeasureBerAfterRS(&ratio), S_OK);
    EXPECT_EQ(ratio, 1.0E-8);
    com::Variant text;
    EXPECT_EQ(driver->get_Prefix(&text), S_OK);
    ASSERT_EQ(text.vt, VT_BSTR);
    EXPECT_EQ(com::Utf8(text.bstrVal), "<");
    com::Variant whole;
    EXPECT_EQ(driver->get_ResponseString(&whole), S_OK);
    EXPECT_EQ(com::Utf8(whole.bstrVal), "<1.0E-8 (est)");
}

TEST_F(FunctionTable, FillsByteArrays) {
    peer.Answer("READ:SCREEN:BUFFER?", "0");
    peer.Answer("READ:BUFFER:PCX?", "#15abcde");
    com::Variant array(com::ToVariant(std::vector<std::uint8_t>{9, 9}));
    VARIANT_BOOL done = 0x5555;
    EXPECT_EQ(driver->get_ScreenShot(tarnCapture, &array.parray, &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(com::BytesOf(array), (std::vector<std::uint8_t>{9, 9}));

    const auto all = static_cast<TarnScreenShotModes>(tarnCapture | tarnTransfer | tarnIncludeHeader);
    EXPECT_EQ(driver->get_ScreenShot(all, &array.parray, &done), S_OK);
    EXPECT_EQ(com::BytesOf(array), (std::vector<std::uint8_t>{'#', '1', '5', 'a', 'b', 'c', 'd', 'e'}));

    SAFEARRAY* none = nullptr;
    EXPECT_EQ(driver->get_ScreenShot(tarnTransfer, &none, &done), S_OK);
    com::Variant made;
    made.vt = VT_ARRAY | VT_UI1;
    made.parray = none;
    EXPECT_EQ(com::BytesOf(made), (std::vector<std::uint8_t>{'a', 'b', 'c', 'd', 'e'}));
}

TEST_F(FunctionTable, HandsOutObjects) {
    peer.Answer("READ:DVBT:ALAR:STAT?", "25:00:00,1:30:00,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,12,---,3");
    ComPtr<_clsStatistics> first;
    ComPtr<_clsStatistics> second;
    ASSERT_EQ(driver->get_AlarmStatistics(first.put()), S_OK);
    ASSERT_EQ(driver->get_AlarmStatistics(second.put()), S_OK);
    EXPECT_NE(first.get(), second.get());
    DATE duration = Poison;
    EXPECT_EQ(first->get_MonitoringTime(&duration), S_OK);
    EXPECT_DOUBLE_EQ(duration, 25.0 / 24.0);
    EXPECT_EQ(first->get_Level(&duration), S_OK);
    EXPECT_DOUBLE_EQ(duration, 0.0625);
    double count = Poison;
    EXPECT_EQ(first->get_MpegDataErrorCntAfterRs(&count), S_OK);
    EXPECT_EQ(count, 3.0);
    const com::Bstr report(std::string_view("2:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1,1,1"));
    EXPECT_EQ(first->put_Statistics(report.get()), S_OK);
    EXPECT_EQ(first->get_MonitoringTime(&duration), S_OK);
    EXPECT_DOUBLE_EQ(duration, 2.0 / 24.0);
    com::Bstr kept;
    EXPECT_EQ(second->get_Statistics(kept.put()), S_OK);
    EXPECT_EQ(kept.Utf8().substr(0, 9), "25:00:00,");
}

TEST_F(FunctionTable, CallsMethods) {
    EXPECT_EQ(driver->MeasureResetBer(), S_OK);
    EXPECT_TRUE(peer.Received("SENS:DVBT:BER:RES"));
    peer.Answer("READ:DVBT:FFT:MODE?", "2K");
    EXPECT_EQ(driver->MeasureOfdmCarrierRange(10, 1704), S_OK);
    EXPECT_TRUE(peer.Received("SENSE:DVBT:CARRIER:START_STOP  10, 1704"));
}

std::string Echoes() {
    std::string answer;
    for (int echo = 1; echo <= 25; ++echo) answer += std::to_string(echo) + ".5," + std::to_string(100 + echo) + ",";
    answer.pop_back();
    return answer;
}

TEST_F(FunctionTable, ReadsAndWritesPropertiesWithArguments) {
    peer.Answer("SENSE:DVBT:CODE:RATE:MODE?", "MAN");
    peer.Answer("SENSE:DVBT:CODE:RATE:HP?", "7,8");
    EXPECT_EQ(driver->put_StatusOfdmCodeRate(tarnLow, tarn3_4), S_OK);
    EXPECT_TRUE(peer.Received("SENSE:DVBT:CODE:RATE:LP 3,4"));
    auto rate = tarnCrUnknown;
    EXPECT_EQ(driver->get_StatusOfdmCodeRate(tarnHigh, &rate), S_OK);
    EXPECT_EQ(rate, tarn7_8);

    peer.Answer("SENS:DVBT:MEAS?", "IR_1");
    peer.Answer("READ:DVBT:IRESPONSE:PEAK?", Echoes());
    short echo = 25;
    double value = Poison;
    EXPECT_EQ(driver->get_ImpulseResponseAtten(&echo, &value), S_OK);
    EXPECT_EQ(value, 25.5);
    EXPECT_EQ(driver->get_ImpulseResponseDelay(&echo, &value), S_OK);
    EXPECT_EQ(value, 125.0);
    EXPECT_EQ(echo, 25);
}

// ---- Invoke ----

struct Reading {
    const wchar_t* member;
    const char* query;
    const char* answer;
    VARTYPE type;
    double value;
};

TEST_F(Invoke, ReadsEveryKindOfValueWithItsType) {
    constexpr Reading readings[] = {
        {L"MeasureTsBitrate", "READ:DVBT:TS:BITRATE?", "22.39", VT_R8, 22.39},
        {L"measuretsbitrate", "READ:DVBT:TS:BITRATE?", "24.13", VT_R8, 24.13},
        {L"MeasureCdSymbolCount", "SENS:DVBT:INT:COUN?", "70000", VT_I4, 70000},
        {L"MeasureOfdmAverage", "READ:DVBT:AVERAGE:PROGRESS?", "12", VT_I2, 12},
        {L"MeasureFftMode", "READ:DVBT:FFT:MODE?", "8K", VT_I4, 1},
        {L"StateSignal", "READ:SIGN:RF?", "OK", VT_BOOL, -1},
        {L"SetupTime", "SYST:TIME?", "6,0,0", VT_DATE, 0.25},
    };
    Script script(driver.get());
    for (const auto& reading : readings) {
        SCOPED_TRACE(com::Utf8(std::wstring_view(reading.member)));
        peer.Answer(reading.query, reading.answer);
        ASSERT_EQ(script.Get(reading.member), S_OK) << script.raised;
        EXPECT_EQ(script.result.vt, reading.type);
        VARIANT number;
        VariantInit(&number);
        ASSERT_HRESULT_SUCCEEDED(VariantChangeType(&number, &script.result, 0, VT_R8));
        EXPECT_DOUBLE_EQ(number.dblVal, reading.value);
    }
}

TEST_F(Invoke, WritesEveryKindOfValue) {
    struct {
        const wchar_t* member;
        VARIANT value;
        const char* command;
    } const writings[] = {
        {L"RF", Number(474000000), "SENS:FREQ:CENT  474000000"},
        {L"MeasureCdAddNoiseCn", Real(12.5), "SENS:DVBT:NOISE 12.5"},
        {L"MeasureCdSymbolCount", Real(1000), "SENS:DVBT:INT:COUN 1000"},
        {L"SetupLevelUnit", Number(tarnDBM), "UNIT:LEVEL:POWER DBM"},
        {L"SetupDate", DateOf(46096.0), "SYST:DATE 26,3,15"},
    };
    Script script(driver.get());
    for (const auto& writing : writings) {
        ASSERT_EQ(script.Put(writing.member, writing.value), S_OK) << writing.command << ' ' << script.raised;
        EXPECT_TRUE(peer.Received(writing.command)) << writing.command;
    }
}

TEST_F(Invoke, ServesRfAsDefaultMember) {
    peer.Answer("SENS:FREQ:CENT?", "666000000");
    com::Variant object;
    object.vt = VT_DISPATCH;
    object.pdispVal = ComPtr<IDispatch>(driver.get()).detach();
    VARIANT number;
    VariantInit(&number);
    ASSERT_HRESULT_SUCCEEDED(VariantChangeType(&number, &object, 0, VT_R8));
    EXPECT_EQ(number.dblVal, 666000000.0);
}

TEST_F(Invoke, FillsAVariantByReferenceWithTheScreen) {
    peer.Answer("READ:BUFFER:PCX?", "#13xyz");
    const std::vector<std::uint8_t> image = {'x', 'y', 'z'};
    Script script(driver.get());

    com::Variant positional(com::ToVariant(std::string("before")));
    ASSERT_EQ(script.Get(L"ScreenShot", {Number(tarnTransfer), Reference(&positional)}), S_OK) << script.raised;
    EXPECT_EQ(script.result.vt, VT_BOOL);
    EXPECT_EQ(script.result.boolVal, VARIANT_TRUE);
    ASSERT_EQ(positional.vt, VT_ARRAY | VT_UI1);
    EXPECT_EQ(com::BytesOf(positional), image);

    com::Variant named;
    ASSERT_EQ(script.Get(L"ScreenShot", {}, {{L"bytBuffer", Reference(&named)}, {L"udtMode", Number(tarnTransfer)}}),
              S_OK)
        << script.raised;
    EXPECT_EQ(com::BytesOf(named), image);

    com::Variant mixed;
    ASSERT_EQ(script.Get(L"ScreenShot", {Number(tarnTransfer)}, {{L"bytBuffer", Reference(&mixed)}}), S_OK)
        << script.raised;
    EXPECT_EQ(com::BytesOf(mixed), image);

    com::Variant array(com::ToVariant(std::vector<std::uint8_t>{9}));
    VARIANT typed;
    VariantInit(&typed);
    typed.vt = VT_BYREF | VT_ARRAY | VT_UI1;
    typed.pparray = &array.parray;
    ASSERT_EQ(script.Get(L"ScreenShot", {Number(tarnTransfer), typed}), S_OK) << script.raised;
    EXPECT_EQ(com::BytesOf(array), image);
}

TEST_F(Invoke, LeavesTheVariantAloneWithoutATransfer) {
    peer.Answer("READ:SCREEN:BUFFER?", "1");
    com::Variant buffer(com::ToVariant(std::string("before")));
    Script script(driver.get());
    ASSERT_EQ(script.Get(L"ScreenShot", {Number(tarnCapture), Reference(&buffer)}), S_OK) << script.raised;
    EXPECT_EQ(script.result.boolVal, VARIANT_FALSE);
    ASSERT_EQ(buffer.vt, VT_BSTR);
    EXPECT_EQ(com::Utf8(buffer.bstrVal), "before");

    peer.Answer("READ:BUFFER:PCX?", "no block");
    EXPECT_EQ(script.Get(L"ScreenShot", {Number(tarnTransfer), Reference(&buffer)}), DISP_E_EXCEPTION);
    EXPECT_EQ(script.raised,
              (Failure{static_cast<HRESULT>(0x800407D4), "clsTarn4x.ScreenShot", "Get ScreenShot failed"}));
    EXPECT_EQ(com::Utf8(buffer.bstrVal), "before");
}

TEST_F(Invoke, TakesPositionalAndNamedArguments) {
    peer.Answer("SENSE:DVBT:CODE:RATE:MODE?", "MAN");
    peer.Answer("SENSE:DVBT:CODE:RATE:HP?", "2,3");
    Script script(driver.get());
    ASSERT_EQ(script.Get(L"StatusOfdmCodeRate", {Number(tarnHigh)}), S_OK) << script.raised;
    EXPECT_EQ(script.result.lVal, tarn2_3);
    ASSERT_EQ(script.Get(L"StatusOfdmCodeRate", {}, {{L"udtPriority", Number(tarnHigh)}}), S_OK) << script.raised;
    EXPECT_EQ(script.result.lVal, tarn2_3);
    ASSERT_EQ(script.Put(L"StatusOfdmCodeRate", Number(tarn5_6), {Number(tarnHigh)}), S_OK) << script.raised;
    EXPECT_TRUE(peer.Received("SENSE:DVBT:CODE:RATE:HP 5,6"));
    ASSERT_EQ(script.Put(L"StatusOfdmCodeRate", Number(tarn1_2), {}, {{L"udtPriority", Number(tarnLow)}}), S_OK)
        << script.raised;
    EXPECT_TRUE(peer.Received("SENSE:DVBT:CODE:RATE:LP 1,2"));

    peer.Answer("SENS:DVBT:MEAS?", "IR_1");
    peer.Answer("READ:DVBT:IRESPONSE:PEAK?", Echoes());
    com::Variant variable(Number(3));
    for (const VARIANT& echo : {Number(3), Real(3), Reference(&variable)}) {
        ASSERT_EQ(script.Get(L"ImpulseResponseAtten", {echo}), S_OK) << script.raised;
        EXPECT_EQ(script.result.dblVal, 3.5);
    }
    ASSERT_EQ(script.Get(L"ValueCodeRate", {Number(tarn5_6)}), S_OK) << script.raised;
    EXPECT_DOUBLE_EQ(script.result.dblVal, 5.0 / 6.0);
}

TEST_F(Invoke, HandsOutObjectsAndCallsMethods) {
    peer.Answer("READ:DVBT:ALAR:STAT?", "0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,4,5,6");
    Script script(driver.get());
    ASSERT_EQ(script.Get(L"AlarmStatistics"), S_OK) << script.raised;
    ASSERT_EQ(script.result.vt, VT_DISPATCH);
    Script statistics(script.result.pdispVal);
    ASSERT_EQ(statistics.Get(L"CorrCntBeforeRs"), S_OK) << statistics.raised;
    EXPECT_EQ(statistics.result.dblVal, 5.0);
    ASSERT_EQ(script.Get(L"MeasureResetBer"), S_OK) << script.raised;
    EXPECT_EQ(script.result.vt, VT_EMPTY);
    EXPECT_TRUE(peer.Received("SENS:DVBT:BER:RES"));
}

TEST_F(Invoke, RefusesWhatIsNoMember) {
    Script script(driver.get());
    EXPECT_EQ(script.Get(L"MeasureNothing"), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(script.Get(L"StatusOfdmCodeRate", {}, {{L"udtWrong", Number(1)}}), DISP_E_UNKNOWNNAME);
    DISPPARAMS none{};
    EXPECT_EQ(driver->Invoke(0x12345, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(
        driver->Invoke(0, IID_IUnknown, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr),
        DISP_E_UNKNOWNINTERFACE);
}

}  // namespace
