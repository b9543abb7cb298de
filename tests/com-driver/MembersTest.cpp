#include "tests/com-driver/Bench.h"

// What members take and give beside plain values: byte arrays, objects, arguments by name and of other types.

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Members : OnLine {
    Script script{driver.get()};
};
using FunctionTable = Members;
using Invoke = Members;

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

TEST_F(Members, HandOutStatistics) {
    const std::string days = "24:0:0,48:0:0,-,72:0:0,-,96:0:0,-,120:0:0,-,144:0:0,-,168:0:0,-,",
                      report = days + "8,9,10";
    peer.Answers("READ:DVBT:ALAR:STAT? = " + report);
    ComPtr<_clsStatistics> first, second;
    ASSERT_EQ(driver->get_AlarmStatistics(first.put()), S_OK);
    ASSERT_EQ(driver->get_AlarmStatistics(second.put()), S_OK);
    ASSERT_NE(first.get(), second.get());
    Script members(first.get());
    const wchar_t* const names[] = {L"BerAfterRs",      L"MonitoringTime",         L"Level",
                                    L"Synchronisation", L"ModErrorRatio",          L"BerBeforeVit",
                                    L"BerBeforeRs",     L"MpegDataErrorTime",      L"CorrCntBeforeVit",
                                    L"CorrCntBeforeRs", L"MpegDataErrorCntAfterRs"};
    for (int n = 0; n < 11; ++n) {
        EXPECT_EQ(members.Value(names[n]).vt, n < 8 ? VT_DATE : VT_R8) << n;
        EXPECT_DOUBLE_EQ(members.result.dblVal, n);
    }
    const std::pair<std::string, HRESULT> reports[] = {{days + "1,1,1", S_OK},
                                                       {"1:0:0,1:0:0", 0x800A0009},
                                                       {"99999:0:0", 0x800A0006},
                                                       {days + "many,1,1", 0x800A000D}};
    for (const auto& [text, result] : reports) {
        EXPECT_EQ(first->put_Statistics(com::Bstr(text).get()), result) << text;
        EXPECT_EQ(com::Utf8(members.Value(L"Statistics").bstrVal), text);
    }
    com::Bstr kept;
    EXPECT_EQ(second->get_Statistics(kept.put()), S_OK);
    EXPECT_EQ(kept.Utf8(), report);
    ASSERT_EQ(script.Value(L"AlarmStatistics").vt, VT_DISPATCH);
    EXPECT_EQ(Script(script.result.pdispVal).Value(L"CorrCntBeforeRs").dblVal, 9.0);
}

TEST_F(Invoke, FillsAVariantByReferenceWithTheScreen) {
    peer.Answers("READ:BUFFER:PCX? = #13xyz");
    com::Variant positional(com::ToVariant(std::string("before"))), named, mixed, array,
        inner(com::ToVariant(Bytes{9}));
    VARIANT typed{}, nested{};
    typed.vt = nested.vt = VT_BYREF | VT_ARRAY | VT_UI1;
    typed.pparray = &array.parray;
    nested.pparray = &inner.parray;
    EXPECT_EQ(script.Value(L"ScreenShot", {Number(tarnTransfer), Reference(&positional)}).vt, VT_BOOL);
    EXPECT_EQ(script.result.boolVal, VARIANT_TRUE);
    script.Value(L"ScreenShot", {}, {{L"bytBuffer", Reference(&named)}, {L"udtMode", Number(tarnTransfer)}});
    script.Value(L"ScreenShot", {Number(tarnTransfer)}, {{L"bytBuffer", Reference(&mixed)}});
    script.Value(L"ScreenShot", {Number(tarnTransfer), typed});
    array.vt = VT_ARRAY | VT_UI1;
    script.Value(L"ScreenShot", {Number(tarnTransfer), Reference(&nested)});
    for (const VARIANT* filled : {&positional, &named, &mixed, &array, &inner}) {
        ASSERT_EQ(filled->vt, VT_ARRAY | VT_UI1);
        EXPECT_EQ(com::BytesOf(*filled), (Bytes{'x', 'y', 'z'}));
    }
    const com::Variant text(com::ToVariant(std::string("lost")));
    for (const VARIANT& value : {VARIANT(array), VARIANT(text)}) {
        EXPECT_EQ(script.Get(L"ScreenShot", {Number(tarnTransfer), value}), DISP_E_TYPEMISMATCH) << value.vt;
    }
    EXPECT_EQ(script.Get(L"ScreenShot", {Number(tarnTransfer), Reference(nullptr)}), E_POINTER);
}

TEST_F(Invoke, LeavesTheVariantAloneWithoutATransfer) {
    peer.Answers("READ:SCREEN:BUFFER? = 1 | READ:BUFFER:PCX? = no block");
    com::Variant buffer(com::ToVariant(std::string("before")));
    EXPECT_EQ(script.Value(L"ScreenShot", {Number(tarnCapture), Reference(&buffer)}).boolVal, VARIANT_FALSE);
    EXPECT_EQ(script.Get(L"ScreenShot", {Number(tarnTransfer), Reference(&buffer)}), DISP_E_EXCEPTION);
    EXPECT_EQ(script.raised, (Failure{0x800407D4, "clsTarn4x.ScreenShot", "Get ScreenShot failed"}));
    ASSERT_EQ(buffer.vt, VT_BSTR);
    EXPECT_EQ(com::Utf8(buffer.bstrVal), "before");
}

TEST_F(Invoke, TakesArgumentsByNameAndOfOtherTypes) {
    peer.Answers("SENS:DVBT:MEAS? = IR_1 | SENSE:DVBT:CODE:RATE:MODE? = MAN | SENSE:DVBT:CODE:RATE:HP? = 2,3 | " +
                 Echoes());
    EXPECT_EQ(script.Value(L"StatusOfdmCodeRate", {}, {{L"udtPriority", Number(tarnHigh)}}).lVal, tarn2_3);
    EXPECT_SENDS(script.Put(L"StatusOfdmCodeRate", Number(tarn1_2), {}, {{L"udtPriority", Number(tarnLow)}}),
                 "SENSE:DVBT:CODE:RATE:LP 1,2");
    com::Variant variable(Number(3));
    for (const VARIANT& echo : {Number(3), Real(3), Reference(&variable)}) {
        EXPECT_EQ(script.Value(L"impulseresponseatten", {echo}).dblVal, 3.5);
    }
    EXPECT_SENDS(script.Put(L"RF", Number(474000000)), "SENS:FREQ:CENT  474000000");
    EXPECT_SENDS(script.Put(L"MeasureCdSymbolCount", Real(1000)), "SENS:DVBT:INT:COUN 1000");
}

TEST_F(Invoke, TakesNamesBeforeOrder) {
    peer.Answers("SENS:DVBT:MEAS? = PAR | READ:DVBT:FFT:MODE? = 2K");
    VARIANT start{}, stop{};
    start.vt = stop.vt = VT_I2;
    start.iVal = 10;
    stop.iVal = 1704;
    const auto call = [&](const std::vector<VARIANT>& ordered, const std::vector<Script::Named>& named) {
        return script.Get(L"MeasureOfdmCarrierRange", ordered, named);
    };
    EXPECT_SENDS(call({start, stop}, {}), "SENSE:DVBT:CARRIER:START_STOP  10, 1704");
    EXPECT_SENDS(call({}, {{L"intStart", start}, {L"intStop", stop}}), "SENSE:DVBT:CARRIER:START_STOP  10, 1704");
    start.iVal = 20;
    EXPECT_SENDS(call({}, {{L"intStop", stop}, {L"intStart", start}}), "SENSE:DVBT:CARRIER:START_STOP  20, 1704");
}

TEST_F(Invoke, KnowsItsDefaultMemberAndRefusesWhatIsNoMember) {
    peer.Answers("SENS:FREQ:CENT? = 666000000");
    com::Variant object;
    VARIANT number{};
    object.vt = VT_DISPATCH;
    object.pdispVal = ComPtr<IDispatch>(driver.get()).detach();
    ASSERT_HRESULT_SUCCEEDED(VariantChangeType(&number, &object, 0, VT_R8));
    EXPECT_EQ(number.dblVal, 666000000.0);
    EXPECT_EQ(script.Get(L"MeasureNothing"), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(Script(setup.get()).Get(L"RF"), DISP_E_UNKNOWNNAME) << "each interface knows its own names only";
    EXPECT_EQ(script.Get(L"StatusOfdmCodeRate", {}, {{L"udtWrong", Number(1)}}), DISP_E_UNKNOWNNAME);
    DISPPARAMS none{};
    const auto invoke = [&](DISPID member, const IID& reserved, WORD flags) {
        return driver->Invoke(member, reserved, LOCALE_USER_DEFAULT, flags, &none, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(invoke(0x12345, IID_NULL, DISPATCH_METHOD), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(0, IID_IUnknown, DISPATCH_PROPERTYGET), DISP_E_UNKNOWNINTERFACE);
}

}  // namespace
