#include "tests/com-driver/Bench.h"

// Every member of the driver, failing and succeeding, and every kind of argument and result, through the function table
// and through Invoke.

namespace {

/// Error information that another object has left behind on this thread.
void LeaveStaleInformation() {
    ComPtr<ICreateErrorInfo> stale;
    ASSERT_EQ(CreateErrorInfo(stale.put()), S_OK);
    stale->SetSource(com::Bstr(std::string_view("Somebody.else")).get());
    ASSERT_EQ(SetErrorInfo(0, stale.As<IErrorInfo>().get()), S_OK);
}

VARIANT ArgumentOf(const Slot::Parameter& parameter) {
    VARIANT value{};
    if (parameter.type == VT_BSTR) {
        value.vt = VT_BSTR;
        value.bstrVal = com::ToBstr(std::string_view("Receiver"));
    } else {
        value.vt = VT_I4;
        value.lVal = parameter.value;
        EXPECT_HRESULT_SUCCEEDED(VariantChangeType(&value, &value, 0, parameter.type));
    }
    return value;
}

constexpr LONGLONG Poison = 0x5555555555555555;

struct ThroughTable {
    /// With a null pointer for the parameter, if one is given.
    static Failure Call(IDispatch* object, const Slot& slot, com::Variant& result,
                        const Slot::Parameter* without = nullptr) {
        std::vector<com::Variant> values;
        std::vector<VARIANT> passed;
        for (const auto& parameter : slot.parameters) {
            const bool input = !parameter.result && parameter.type != (VT_ARRAY | VT_UI1);
            values.emplace_back(input ? ArgumentOf(parameter) : VARIANT{});
        }
        for (std::size_t index = 0; index < values.size(); ++index) {
            const auto& parameter = slot.parameters[index];
            passed.push_back(values[index]);
            if (!parameter.reference) continue;
            // What comes is freed with the values.
            VARIANT& value = values[index];
            value.vt = parameter.type;
            if (parameter.result) value.llVal = Poison;
            passed.back().vt = VT_BYREF | value.vt;
            passed.back().byref = value.vt == VT_VARIANT ? static_cast<void*>(&value) : &value.byref;
            if (value.vt == VT_VARIANT) VariantInit(&value);
            if (&parameter == without) passed.back().byref = nullptr;
        }
        std::vector<VARTYPE> types;
        std::vector<VARIANT*> arguments;
        for (auto& value : passed) {
            types.push_back(value.vt);
            arguments.push_back(&value);
        }
        com::Variant called;
        EXPECT_EQ(DispCallFunc(object, slot.offset, CC_STDCALL, VT_ERROR, static_cast<UINT>(types.size()), types.data(),
                               arguments.data(), &called),
                  S_OK);
        if (!slot.parameters.empty() && slot.parameters.back().result) {
            VARIANT& value = values.back();
            if (FAILED(called.scode)) {
                // Numbers and Booleans stay as they were; what a caller would free is empty.
                const bool freed = value.vt == VT_BSTR || value.vt == VT_DISPATCH;
                if (freed && !without) {
                    EXPECT_EQ(value.byref, nullptr) << slot.Text();
                } else if (value.vt != VT_EMPTY) {
                    EXPECT_EQ(value.llVal, Poison) << slot.Text();
                }
                value.vt = VT_EMPTY;
            }
            result = std::move(values.back());
        }
        return TakeFailure(called.scode);
    }
};

struct ThroughInvoke {
    static Failure Call(IDispatch* object, const Slot& slot, com::Variant& result) {
        std::vector<com::Variant> inputs;
        std::vector<VARIANT> arguments;
        com::Variant bytes;
        for (const auto& parameter : slot.parameters) {
            if (parameter.result) continue;
            inputs.emplace_back(parameter.type == (VT_ARRAY | VT_UI1) ? Reference(&bytes) : ArgumentOf(parameter));
        }
        for (const auto& input : inputs) arguments.push_back(input);
        Script script(object);
        const auto name = com::Wide(slot.name);
        if (slot.kind == INVOKE_PROPERTYPUT) {
            const VARIANT value = arguments.back();
            arguments.pop_back();
            script.Put(name.c_str(), value, arguments);
        } else {
            script.Get(name.c_str(), arguments);
        }
        result = std::move(script.result);
        return script.raised;
    }
};

/// Makes the calls of a walk. Each finds error information of somebody else and leaves its own or none.
template <class Way>
class Calls : public Walker {
  public:
    void Begin(const std::string& state) override {
        state_ = state;
        faces_[DriverFace] = Create<IDispatch>(CLSID_clsTarn4x);
        faces_[IdentifyFace] = ComPtr<IDispatch>(faces_[DriverFace].template As<IDriverIdentify>().get());
        faces_[SetupFace] = ComPtr<IDispatch>(faces_[DriverFace].template As<IDriverSetup>().get());
        Select(faces_[DriverFace].template As<IDriverSetup>().get(), {{"Remote Control", std::string("RS232")}});
    }

    void Call(const Slot& slot, const Failure& expected) override {
        LeaveStaleInformation();
        com::Variant result;
        EXPECT_EQ(Way::Call(faces_[slot.face].get(), slot, result), expected) << slot.Text() << ", " << state_;
        ComPtr<IErrorInfo> left;
        EXPECT_EQ(GetErrorInfo(0, left.put()), S_FALSE) << slot.Text() << ", " << state_;
        ++(expected.result == S_OK ? succeeded : failed);
    }

    int failed = 0, succeeded = 0;

  private:
    std::string state_;
    ComPtr<IDispatch> faces_[Faces];
};

template <class Way>
struct EveryMember : testing::Test {
    const std::vector<Slot> slots = SlotsOf(ComponentFile(L"XTarn4x"));
};
using Ways = testing::Types<ThroughTable, ThroughInvoke>;
TYPED_TEST_SUITE(EveryMember, Ways);

TYPED_TEST(EveryMember, RaisesItsErrorAndLeavesNothingBehindASuccess) {
    ASSERT_EQ(this->slots.size(), 136U + 5U + 5U);
    Calls<TypeParam> calls;
    Walk(this->slots, calls);
    std::printf("%d calls failed, %d succeeded\n", calls.failed, calls.succeeded);
}

TYPED_TEST(EveryMember, RaisesItsErrorWithThatOfTheInstrumentBehindItsChecks) {
    Session session;
    session.peer.Answers(
        "*IDN? = VANTERRA,TARN,100123,5.05 | READ:INFO:DATA? = 0 | SYSTEM:SERVICE:GET:BOARD:INFO? = 0x83 8.0 | "
        "SENSE:DVBT:CODE:RATE:MODE? = MAN | READ:DVBT:FFT:MODE? = 2K | SENSE:DVBT:CARRIER:START_STOP? = 1,1 | "
        "SENS:DVBT:SPEC:FREQ:STAR? = -400 | SENS:DVBT:SPEC:FREQ:STOP? = 400");
    com::Bstr options;  // asked for once, not by each member
    ASSERT_EQ(session.driver->get_InstalledHardware(options.put()), S_OK);
    for (const auto& behind : BehindAnother(this->slots)) {
        ASSERT_EQ(session.driver->put_MeasureMode(static_cast<TarnMeasureModes>(behind.mode)), S_OK);
        session.peer.Answers(behind.port == tarnDemod ? "ROUTE:ISELECT? = DEM" : "ROUTE:ISELECT? = RF");
        session.peer.BreaksProtocolAfter(behind.line);
        com::Variant result;
        EXPECT_EQ(TypeParam::Call(session.driver.get(), behind.slot, result), behind.expected) << behind.slot.Text();
    }
}

TEST(FunctionTable, RefusesMissingOutputs) {
    const auto driver = Create<IDispatch>(CLSID_clsTarn4x);
    for (const auto& slot : SlotsOf(ComponentFile(L"XTarn4x"))) {
        if (slot.face != DriverFace) continue;
        for (const auto& parameter : slot.parameters) {
            com::Variant result;
            if (!parameter.reference) continue;
            EXPECT_EQ(ThroughTable::Call(driver.get(), slot, result, &parameter),
                      (Failure{static_cast<unsigned>(E_POINTER), "", ""}))
                << slot.Text();
        }
    }
}

const struct Use {
    const char* member;
    std::vector<LONG> arguments;
    std::string line;  ///< a query and its answer, or a command
    VARTYPE type;
    const char* result;
} uses[] = {
    {"put RF", {474000000}, "SENS:FREQ:CENT  474000000", VT_EMPTY, ""},
    {"put MeasureCdSymbolCount", {99999}, "SENS:DVBT:INT:COUN 99999", VT_EMPTY, ""},
    {"put SetupLevelUnit", {3}, "UNIT:LEVEL:POWER DBM", VT_EMPTY, ""},
    {"put SetupDate", {46096}, "SYST:DATE 26,3,15", VT_EMPTY, ""},
    {"call MeasureResetBer", {}, "SENS:DVBT:BER:RES", VT_EMPTY, ""},
    {"put MeasureMode", {18}, "SENS:DVBT:MEAS PAR", VT_EMPTY, ""},
    {"call MeasureOfdmCarrierRange", {10, 1704}, "SENSE:DVBT:CARRIER:START_STOP  10, 1704", VT_EMPTY, ""},
    {"put StatusOfdmCodeRate", {0, 2}, "SENSE:DVBT:CODE:RATE:LP 3,4", VT_EMPTY, ""},
    {"get StatusOfdmCodeRate", {1}, "SENSE:DVBT:CODE:RATE:HP? = 7,8", VT_I4, "4"},
    {"get MeasureTsBitrate", {}, "READ:DVBT:TS:BITRATE? = 22.39", VT_R8, "22.39"},
    {"get MeasureBitrateOffset", {}, "READ:DVBT:BITRATE:OFFSET? = -1.5", VT_R8, "-1.5"},
    {"get MeasureCdSymbolCount", {}, "SENS:DVBT:INT:COUN? = 70000", VT_I4, "70000"},
    {"get MeasureOfdmAverage", {}, "READ:DVBT:AVERAGE:PROGRESS? = 3.5", VT_I2, "4"},
    {"get MeasureFftMode", {}, "READ:DVBT:FFT:MODE? = 8K", VT_I4, "1"},
    {"get StateSignal", {}, "READ:SIGN:RF? = OK", VT_BOOL, "-1"},
    {"get MeasureMpegTsUnSync", {}, "READ:DVBT:MPEG:TS:LOCKED? = 1", VT_BOOL, "0"},
    {"get SetupTime", {}, "SYST:TIME? = 18,45,0", VT_DATE, "0.78125"},
    {"get SerialNumber", {}, "*IDN? = VANTERRA,TARN,100123,5.05", VT_BSTR, "100123"},
    {"get MeasureBerAfterRS", {}, "READ:DVBT:BER:ARS? = <0.5 (est)", VT_R8, "0.5"},
    {"get Prefix", {}, "", VT_BSTR, "<"},
    {"get Postfix", {}, "", VT_BSTR, "(est)"},
    {"get ResponseString", {}, "", VT_BSTR, "<0.5 (est)"},
    {"call FormatFftMode", {1}, "", VT_BSTR, "8K"},
    {"call FormatGuardInterval", {16}, "", VT_BSTR, "'1/16'"},
    {"call FormatOrderOfQam", {64}, "", VT_BSTR, "64QAM"},
    {"call FormatAlpha", {2}, "", VT_BSTR, "alpha = 2"},
    {"call FormatCodeRate", {2}, "", VT_BSTR, "'3/4'"},
    {"call ValueCodeRate", {4}, "", VT_R8, "0.875"},
    {"put MeasureMode", {14}, "SENS:DVBT:MEAS IR_1", VT_EMPTY, ""},
    {"get ImpulseResponseAtten", {25}, Echoes(), VT_R8, "25.5"},
    {"get ImpulseResponseDelay", {25}, "", VT_R8, "125"},
};

TYPED_TEST(EveryMember, TakesArgumentsAndGivesItsResult) {
    Session session;
    session.peer.Answers("SENSE:DVBT:CODE:RATE:MODE? = MAN | READ:DVBT:FFT:MODE? = 2K");
    for (const auto& use : uses) {
        auto slot = Find(this->slots, use.member);
        for (std::size_t n = 0; n < use.arguments.size(); ++n) slot.parameters[n].value = use.arguments[n];
        const bool reads = use.line.find(" = ") != use.line.npos;
        if (reads) session.peer.Answers(use.line);
        com::Variant result;
        EXPECT_EQ(TypeParam::Call(session.driver.get(), slot, result), Failure{}) << use.member;
        EXPECT_TRUE(reads || use.line.empty() || session.peer.Received(use.line)) << use.line;
        EXPECT_EQ(result.vt, use.type) << use.member;
        if (result.vt != VT_BSTR && result.vt != VT_EMPTY) {
            EXPECT_EQ(VariantChangeType(&result, &result, 0, VT_R8), S_OK);
        }
        EXPECT_EQ(com::TextOf(result), use.result) << use.member;
    }
}

}  // namespace
