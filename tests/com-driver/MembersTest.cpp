#include "tests/com-driver/Bench.h"

// Every kind of member, through the function table and through Invoke.

namespace {

using Bytes = std::vector<std::uint8_t>;

std::string Echoes() {
    std::string answers = "SENS:DVBT:MEAS? = IR_1 | READ:DVBT:IRESPONSE:PEAK? = ";
    for (int echo = 1; echo <= 25; ++echo) answers += std::to_string(echo) + ".5," + std::to_string(100 + echo) + ",";
    return answers.substr(0, answers.size() - 1);
}

struct Members : OnLine {
    Members() { peer.Answers("SENS:DVBT:MEAS? = PAR"); }

    template <class Getter, class... Arguments>
    std::string Text(Getter getter, Arguments... arguments) {
        com::Bstr text(std::string_view("poison"));
        EXPECT_EQ((driver.get()->*getter)(arguments..., text.put()), S_OK);
        return text.Utf8();
    }
};

using FunctionTable = Members;
using Invoke = Members;

TEST_F(FunctionTable, ReadsAndWritesValues) {
    EXPECT_SENDS(driver->put_RF(474000000.25), "SENS:FREQ:CENT  474000000.3");
    EXPECT_SENDS(driver->put_MeasureCdSymbolCount(99999), "SENS:DVBT:INT:COUN 99999");
    EXPECT_SENDS(driver->put_InputAttenHighAdjChanPower(tarnOn), "INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER ON");
    EXPECT_SENDS(driver->put_SetupDate(46096.0), "SYST:DATE 26,3,15");
    peer.Answers("SENS:FREQ:CENT? = 474000000.3 | SENS:DVBT:INT:COUN? = 70000 | READ:DVBT:AVERAGE:PROGRESS? = 3.5");
    EXPECT_EQ(Get<double>(&_clsTarn4x::get_RF), 474000000.3);
    EXPECT_EQ(Get<LONG>(&_clsTarn4x::get_MeasureCdSymbolCount), 70000);
    EXPECT_EQ(Get<short>(&_clsTarn4x::get_MeasureOfdmAverage), 4);
    peer.Answers("READ:DVBT:FFT:MODE? = 8K | READ:DVBT:MPEG:TS:LOCKED? = 1 | SYST:TIME? = 18,45,0");
    EXPECT_EQ(Get<TarnStatusFftModes>(&_clsTarn4x::get_MeasureFftMode), tarn8k);
    EXPECT_EQ(Get<VARIANT_BOOL>(&_clsTarn4x::get_MeasureMpegTsUnSync), VARIANT_FALSE);
    EXPECT_DOUBLE_EQ(Get<DATE>(&_clsTarn4x::get_SetupTime), 0.78125);
    peer.Answers("READ:DVBT:MPEG:TS:LOCKED? = 0");
    EXPECT_EQ(Get<VARIANT_BOOL>(&_clsTarn4x::get_MeasureMpegTsUnSync), VARIANT_TRUE);
}

TEST_F(FunctionTable, ReadsTextsAndVariants) {
    peer.Answers("*IDN? = VANTERRA,TARN,100123,5.05 | READ:DVBT:BER:ARS? = <1.0E-8 (est)");
    EXPECT_EQ(Text(&_clsTarn4x::get_SerialNumber), "100123");
    EXPECT_EQ(Text(&_clsTarn4x::FormatCodeRate, tarn3_4), "'3/4'");
    com::Bstr firmware;
    EXPECT_EQ(setup.As<IDriverIdentify>()->get_FirmwareVersion(firmware.put()), S_OK);
    EXPECT_EQ(firmware.Utf8(), "5.05");
    EXPECT_EQ(Get<double>(&_clsTarn4x::get_MeasureBerAfterRS), 1.0E-8);
    com::Variant prefix, whole;
    EXPECT_EQ(driver->get_Prefix(&prefix), S_OK);
    ASSERT_EQ(prefix.vt, VT_BSTR);
    EXPECT_EQ(com::Utf8(prefix.bstrVal), "<");
    EXPECT_EQ(driver->get_ResponseString(&whole), S_OK);
    EXPECT_EQ(com::Utf8(whole.bstrVal), "<1.0E-8 (est)");
}

TEST_F(FunctionTable, FillsByteArrays) {
    peer.Answers("READ:SCREEN:BUFFER? = 0 | READ:BUFFER:PCX? = #15abcde");
    const auto all = static_cast<TarnScreenShotModes>(tarnCapture | tarnTransfer | tarnIncludeHeader);
    com::Variant array(com::ToVariant(Bytes{9, 9})), made;
    EXPECT_EQ(Get<VARIANT_BOOL>(&_clsTarn4x::get_ScreenShot, tarnCapture, &array.parray), VARIANT_TRUE);
    EXPECT_EQ(com::BytesOf(array), (Bytes{9, 9}));
    EXPECT_EQ(Get<VARIANT_BOOL>(&_clsTarn4x::get_ScreenShot, all, &array.parray), VARIANT_TRUE);
    EXPECT_EQ(com::BytesOf(array), (Bytes{'#', '1', '5', 'a', 'b', 'c', 'd', 'e'}));
    EXPECT_EQ(Get<VARIANT_BOOL>(&_clsTarn4x::get_ScreenShot, tarnTransfer, &made.parray), VARIANT_TRUE);
    made.vt = VT_ARRAY | VT_UI1;
    EXPECT_EQ(com::BytesOf(made), (Bytes{'a', 'b', 'c', 'd', 'e'}));
}

TEST_F(FunctionTable, HandsOutObjects) {
    peer.Answers("READ:DVBT:ALAR:STAT? = 25:00:00,1:30:00,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,12,---,3");
    ComPtr<_clsStatistics> first, second;
    ASSERT_EQ(driver->get_AlarmStatistics(first.put()), S_OK);
    ASSERT_EQ(driver->get_AlarmStatistics(second.put()), S_OK);
    EXPECT_NE(first.get(), second.get());
    DATE time = 0, level = 0;
    double count = 0;
    EXPECT_EQ(first->get_MonitoringTime(&time), S_OK);
    EXPECT_DOUBLE_EQ(time, 25.0 / 24.0);
    EXPECT_EQ(first->get_Level(&level), S_OK);
    EXPECT_DOUBLE_EQ(level, 0.0625);
    EXPECT_EQ(first->get_MpegDataErrorCntAfterRs(&count), S_OK);
    EXPECT_EQ(count, 3.0);
    const com::Bstr report(std::string_view("2:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1,1,1"));
    EXPECT_EQ(first->put_Statistics(report.get()), S_OK);
    EXPECT_EQ(first->get_MonitoringTime(&time), S_OK);
    EXPECT_DOUBLE_EQ(time, 2.0 / 24.0);
    com::Bstr kept;
    EXPECT_EQ(second->get_Statistics(kept.put()), S_OK);
    EXPECT_EQ(kept.Utf8().substr(0, 9), "25:00:00,");
}

TEST_F(FunctionTable, PassesArguments) {
    peer.Answers("READ:DVBT:FFT:MODE? = 2K | SENSE:DVBT:CODE:RATE:MODE? = MAN | SENSE:DVBT:CODE:RATE:HP? = 7,8");
    EXPECT_SENDS(driver->MeasureResetBer(), "SENS:DVBT:BER:RES");
    EXPECT_SENDS(driver->MeasureOfdmCarrierRange(10, 1704), "SENSE:DVBT:CARRIER:START_STOP  10, 1704");
    EXPECT_SENDS(driver->put_StatusOfdmCodeRate(tarnLow, tarn3_4), "SENSE:DVBT:CODE:RATE:LP 3,4");
    EXPECT_EQ(Get<TarnStatusCodeRates>(&_clsTarn4x::get_StatusOfdmCodeRate, tarnHigh), tarn7_8);
    EXPECT_SENDS(driver->put_MeasureMode(tarnIR_1), "SENS:DVBT:MEAS IR_1");
    peer.Answers(Echoes());
    short echo = 25;
    EXPECT_EQ(Get<double>(&_clsTarn4x::get_ImpulseResponseAtten, &echo), 25.5);
    EXPECT_EQ(Get<double>(&_clsTarn4x::get_ImpulseResponseDelay, &echo), 125.0);
    EXPECT_EQ(echo, 25);
}

TEST_F(Invoke, ReadsEveryKindOfValueWithItsType) {
    const struct {
        const wchar_t* member;
        const char* exchange;
        VARTYPE type;
        double value;
    } readings[] = {
        {L"MeasureTsBitrate", "READ:DVBT:TS:BITRATE? = 22.39", VT_R8, 22.39},
        {L"measuretsbitrate", "READ:DVBT:TS:BITRATE? = 24.13", VT_R8, 24.13},
        {L"MeasureCdSymbolCount", "SENS:DVBT:INT:COUN? = 70000", VT_I4, 70000},
        {L"MeasureOfdmAverage", "READ:DVBT:AVERAGE:PROGRESS? = 12", VT_I2, 12},
        {L"MeasureFftMode", "READ:DVBT:FFT:MODE? = 8K", VT_I4, 1},
        {L"StateSignal", "READ:SIGN:RF? = OK", VT_BOOL, -1},
        {L"SetupTime", "SYST:TIME? = 6,0,0", VT_DATE, 0.25},
    };
    Script script(driver.get());
    VARIANT number{};
    for (const auto& reading : readings) {
        peer.Answers(reading.exchange);
        EXPECT_EQ(script.Value(reading.member).vt, reading.type) << reading.exchange;
        ASSERT_HRESULT_SUCCEEDED(VariantChangeType(&number, &script.result, 0, VT_R8));
        EXPECT_DOUBLE_EQ(number.dblVal, reading.value) << reading.exchange;
    }
    peer.Answers("SENS:FREQ:CENT? = 666000000");
    com::Variant object;
    object.vt = VT_DISPATCH;
    object.pdispVal = ComPtr<IDispatch>(driver.get()).detach();
    ASSERT_HRESULT_SUCCEEDED(VariantChangeType(&number, &object, 0, VT_R8));
    EXPECT_EQ(number.dblVal, 666000000.0) << "RF is the default member";
}

TEST_F(Invoke, WritesEveryKindOfValue) {
    Script script(driver.get());
    EXPECT_SENDS(script.Put(L"RF", Number(474000000)), "SENS:FREQ:CENT  474000000");
    EXPECT_SENDS(script.Put(L"MeasureCdAddNoiseCn", Real(12.5)), "SENS:DVBT:NOISE 12.5");
    EXPECT_SENDS(script.Put(L"MeasureCdSymbolCount", Real(1000)), "SENS:DVBT:INT:COUN 1000");
    EXPECT_SENDS(script.Put(L"SetupLevelUnit", Number(tarnDBM)), "UNIT:LEVEL:POWER DBM");
    EXPECT_SENDS(script.Put(L"SetupDate", Real(46096.0, VT_DATE)), "SYST:DATE 26,3,15");
    EXPECT_SENDS(script.Get(L"MeasureResetBer"), "SENS:DVBT:BER:RES");
    EXPECT_EQ(script.result.vt, VT_EMPTY);
}

TEST_F(Invoke, FillsAVariantByReferenceWithTheScreen) {
    peer.Answers("READ:BUFFER:PCX? = #13xyz");
    const Bytes image = {'x', 'y', 'z'};
    Script script(driver.get());
    com::Variant positional(com::ToVariant(std::string("before"))), named, mixed, array(com::ToVariant(Bytes{9}));
    EXPECT_EQ(script.Value(L"ScreenShot", {Number(tarnTransfer), Reference(&positional)}).vt, VT_BOOL);
    EXPECT_EQ(script.result.boolVal, VARIANT_TRUE);
    ASSERT_EQ(positional.vt, VT_ARRAY | VT_UI1);
    EXPECT_EQ(com::BytesOf(positional), image);
    script.Value(L"ScreenShot", {}, {{L"bytBuffer", Reference(&named)}, {L"udtMode", Number(tarnTransfer)}});
    EXPECT_EQ(com::BytesOf(named), image);
    script.Value(L"ScreenShot", {Number(tarnTransfer)}, {{L"bytBuffer", Reference(&mixed)}});
    EXPECT_EQ(com::BytesOf(mixed), image);
    VARIANT typed{};
    typed.vt = VT_BYREF | VT_ARRAY | VT_UI1;
    typed.pparray = &array.parray;
    script.Value(L"ScreenShot", {Number(tarnTransfer), typed});
    EXPECT_EQ(com::BytesOf(array), image);
}

TEST_F(Invoke, LeavesTheVariantAloneWithoutATransfer) {
    peer.Answers("READ:SCREEN:BUFFER? = 1 | READ:BUFFER:PCX? = no block");
    com::Variant buffer(com::ToVariant(std::string("before")));
    Script script(driver.get());
    EXPECT_EQ(script.Value(L"ScreenShot", {Number(tarnCapture), Reference(&buffer)}).boolVal, VARIANT_FALSE);
    EXPECT_EQ(script.Get(L"ScreenShot", {Number(tarnTransfer), Reference(&buffer)}), DISP_E_EXCEPTION);
    EXPECT_EQ(script.raised, (Failure{0x800407D4, "clsTarn4x.ScreenShot", "Get ScreenShot failed"}));
    ASSERT_EQ(buffer.vt, VT_BSTR);
    EXPECT_EQ(com::Utf8(buffer.bstrVal), "before");
}

TEST_F(Invoke, TakesPositionalAndNamedArguments) {
    peer.Answers("SENSE:DVBT:CODE:RATE:MODE? = MAN | SENSE:DVBT:CODE:RATE:HP? = 2,3 | " + Echoes());
    Script script(driver.get());
    const auto rate = L"StatusOfdmCodeRate";
    EXPECT_EQ(script.Value(rate, {Number(tarnHigh)}).lVal, tarn2_3);
    EXPECT_EQ(script.Value(rate, {}, {{L"udtPriority", Number(tarnHigh)}}).lVal, tarn2_3);
    EXPECT_SENDS(script.Put(rate, Number(tarn5_6), {Number(tarnHigh)}), "SENSE:DVBT:CODE:RATE:HP 5,6");
    EXPECT_SENDS(script.Put(rate, Number(tarn1_2), {}, {{L"udtPriority", Number(tarnLow)}}),
                 "SENSE:DVBT:CODE:RATE:LP 1,2");
    com::Variant variable(Number(3));
    for (const VARIANT& echo : {Number(3), Real(3), Reference(&variable)}) {
        EXPECT_EQ(script.Value(L"ImpulseResponseAtten", {echo}).dblVal, 3.5);
    }
    EXPECT_DOUBLE_EQ(script.Value(L"ValueCodeRate", {Number(tarn5_6)}).dblVal, 5.0 / 6.0);
}

TEST_F(Invoke, HandsOutObjectsAndRefusesWhatIsNoMember) {
    peer.Answers("READ:DVBT:ALAR:STAT? = 0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,4,5,6");
    Script script(driver.get());
    ASSERT_EQ(script.Value(L"AlarmStatistics").vt, VT_DISPATCH);
    EXPECT_EQ(Script(script.result.pdispVal).Value(L"CorrCntBeforeRs").dblVal, 5.0);
    EXPECT_EQ(script.Get(L"MeasureNothing"), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(script.Get(L"StatusOfdmCodeRate", {}, {{L"udtWrong", Number(1)}}), DISP_E_UNKNOWNNAME);
    DISPPARAMS none{};
    const auto invoke = [&](DISPID member, const IID& reserved, WORD flags) {
        return driver->Invoke(member, reserved, LOCALE_USER_DEFAULT, flags, &none, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(invoke(0x12345, IID_NULL, DISPATCH_METHOD), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(0, IID_IUnknown, DISPATCH_PROPERTYGET), DISP_E_UNKNOWNINTERFACE);
}

}  // namespace
