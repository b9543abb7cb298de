#include "tests/com/Bench.h"

// What calls take and give beside plain values: byte arrays, objects, arguments by name and by reference.

namespace {

/// An exchange: an impulse response whose echo n has n.5 dB and 100 + n microseconds.
std::string Echoes() {
    std::string answer = "READ:DVBT:IRESPONSE:PEAK? = ";
    for (int echo = 1; echo <= 25; ++echo) answer += std::to_string(echo) + ".5," + std::to_string(100 + echo) + ",";
    return answer.substr(0, answer.size() - 1);
}

TEST(Arguments, AreFoundByNameAndByReference) {
    Bench bench("SENS:DVBT:MEAS? = IR_1 | SENSE:DVBT:CODE:RATE:MODE? = MAN | SENSE:DVBT:CODE:RATE:HP? = 2,3 | " +
                Echoes());
    Arg echo(3);
    std::int16_t last = 25;
    EXPECT_EQ(bench.script.Get(L"impulseresponseatten", {Reference(&echo)}), "3.5");
    EXPECT_EQ(bench.script.Get(L"ImpulseResponseAtten", {Typed(VT_BYREF | VT_I2, &last)}), "25.5");
    EXPECT_EQ(bench.script.Get(L"ImpulseResponseDelay", {"25"}, {}, DISPATCH_METHOD), "125");
    EXPECT_EQ(bench.script.Get(L"StatusOfdmCodeRate", {}, {{L"udtpriority", tarnHigh}}, DISPATCH_PROPERTYGET), "1");
    EXPECT_EQ(bench.script.Put(L"StatusOfdmCodeRate", {tarn3_4}, {{L"udtPriority", tarnLow}}), "");
    EXPECT_EQ(bench.link.Lines.back(), "SENSE:DVBT:CODE:RATE:LP 3,4");
    EXPECT_EQ(bench.script.Get(L"StatusOfdmCodeRate", {}, {{L"udtWrong", 1}}), "80020006");
    bench.link.Answers("READ:DVBT:FFT:MODE? = 2K");
    EXPECT_EQ(bench.script.Put(L"MeasureMode", {tarnPAR}), "");
    const auto carriers = [&](std::vector<Arg> ordered, const Script::Named& named) {
        EXPECT_EQ(bench.script.Get(L"MeasureOfdmCarrierRange", std::move(ordered), named), "");
        return bench.link.Lines.back();
    };
    EXPECT_EQ(carriers({10, 1704}, {}), "SENSE:DVBT:CARRIER:START_STOP  10, 1704");
    EXPECT_EQ(carriers({}, {{L"intStop", 1704}, {L"intStart", 20}}), "SENSE:DVBT:CARRIER:START_STOP  20, 1704");
    EXPECT_EQ(carriers({Arg(std::int16_t{30}), Arg(std::int16_t{40})}, {}), "SENSE:DVBT:CARRIER:START_STOP  30, 40");
}

TEST(Arguments, TakeTheScreen) {
    Bench bench("READ:SCREEN:BUFFER? = 0");
    const auto table = [&](int mode, SAFEARRAY** bytes) {
        VARIANT_BOOL done = VARIANT_FALSE;
        bench.link.Block = "#15abcde";
        EXPECT_EQ(bench.driver->get_ScreenShot(static_cast<TarnScreenShotModes>(mode), bytes, &done), S_OK);
        EXPECT_EQ(done, VARIANT_TRUE);
    };
    Arg array(com::ToVariant(std::vector<std::uint8_t>{'9'})), made(VARIANT{}), variable("before"),
        inner(Typed(VT_ARRAY | VT_UI1, nullptr));
    table(tarnCapture, &array.parray);
    EXPECT_EQ(Text(array), "9");
    SafeArrayLock(array.parray);
    table(tarnTransfer, &array.parray);
    EXPECT_EQ(Text(array), "9") << "it is in use";
    SafeArrayUnlock(array.parray);
    table(tarnCapture | tarnTransfer | tarnIncludeHeader, &array.parray);
    EXPECT_EQ(Text(array), "#15abcde");

    const auto name = [&](std::vector<Arg> ordered, const Script::Named& named) {
        bench.link.Block = "#13xyz";
        return bench.script.Get(L"ScreenShot", std::move(ordered), named);
    };
    EXPECT_EQ(name({tarnCapture, Reference(&variable)}, {}), "1");
    EXPECT_EQ(Text(variable), "before");
    const VARIANT typed = Typed(VT_BYREF | VT_ARRAY | VT_UI1, &array.parray);
    VARIANT nested = Typed(VT_BYREF | VT_ARRAY | VT_UI1, &inner.parray);
    EXPECT_EQ(name({tarnTransfer, Reference(&variable)}, {}), "1");
    EXPECT_EQ(name({tarnTransfer, typed}, {}), "1");
    EXPECT_EQ(name({tarnTransfer}, {{L"bytBuffer", Reference(&made)}}), "1");
    EXPECT_EQ(name({}, {{L"bytBuffer", Reference(&nested)}, {L"udtMode", tarnTransfer}}), "1");
    for (const VARIANT* filled : {&array, &variable, &made, &inner}) EXPECT_EQ(Text(*filled), "xyz");
    EXPECT_EQ(name({tarnTransfer, "lost"}, {}), "80020005");
    EXPECT_EQ(bench.script.Bad, 0u);
    EXPECT_EQ(name({}, {{L"udtMode", tarnTransfer}, {L"bytBuffer", array}}), "80020005");
    EXPECT_EQ(bench.script.Bad, 1u);
    double number = 0;
    VARIANT real = Typed(VT_BYREF | VT_R8, &number);
    for (const VARIANT& wrong : {real, Reference(&real)}) EXPECT_EQ(name({tarnTransfer, wrong}, {}), "80020005");
    EXPECT_EQ(name({tarnTransfer, Reference(nullptr)}, {}), "80004003");
}

TEST(Members, AreTheirInterfacesOwn) {
    Bench bench("SENS:FREQ:CENT? = 666000000");
    Script setup(bench.setup), identify(bench.driver.As<IDriverIdentify>());
    com::Variant number;
    EXPECT_EQ(VariantChangeType(&number, Arg(Typed(VT_DISPATCH, bench.driver.get())).Get(), 0, VT_R8), S_OK);
    EXPECT_EQ(number.dblVal, 666000000.0) << "the default member";
    for (const auto name : {L"MeasureNothing", L"", L"R", L"RFF", L" RF", L"\xFF32\xFF26", L"Name"}) {
        EXPECT_EQ(bench.script.Get(name), "80020006") << com::Utf8(name);
    }
    EXPECT_EQ(setup.Get(L"RF"), "80020006");
    EXPECT_EQ(identify.All(Identity), "VANTERRA|TARN|100123|5.10|TARN-B12");
    DISPPARAMS none{};
    const auto invoke = [&](DISPID member, const IID& reserved) {
        return Told(bench.driver->Invoke(member, reserved, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr));
    };
    EXPECT_EQ(invoke(0x12345, IID_NULL), "80020003");
    EXPECT_EQ(invoke(0, IID_IUnknown), "80020001");
    EXPECT_TRUE(invoke(0x680300A9, IID_NULL).starts_with("80020009")) << "without an exception structure and a result";
}

TEST(Statistics, AreObjectsOfTheirOwn) {
    const std::string days = "24:0:0,48:0:0,-,72:0:0,-,96:0:0,-,120:0:0,-,144:0:0,-,168:0:0,-,";
    Bench bench("READ:DVBT:ALAR:STAT? = " + days + "8,9,10");
    Script kept = bench.script.Object(L"AlarmStatistics"), first = bench.script.Object(L"AlarmStatistics");
    EXPECT_EQ(first.All({L"BerAfterRs", L"MonitoringTime", L"Level", L"Synchronisation", L"ModErrorRatio"}),
              "0|1|2|3|4");
    EXPECT_EQ(first.All({L"BerBeforeVit", L"BerBeforeRs", L"MpegDataErrorTime"}), "5|6|7");
    EXPECT_EQ(first.Result.vt, VT_DATE);
    EXPECT_EQ(first.All({L"CorrCntBeforeVit", L"CorrCntBeforeRs", L"MpegDataErrorCntAfterRs"}), "8|9|10");
    EXPECT_EQ(first.Result.vt, VT_R8);
    for (const auto& [text, outcome] : {std::pair(days + "1,1,1", ""), {"1:0:0", "9"}, {"99999:0:0", "6"}}) {
        EXPECT_EQ(first.Put(L"Statistics", {text.c_str()}).substr(0, 1), outcome);
        EXPECT_EQ(first.Get(L"Statistics"), text);
    }
    EXPECT_EQ(kept.Get(L"Statistics"), days + "8,9,10");
}

}  // namespace
