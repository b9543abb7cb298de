#include "tests/com-driver/Bench.h"

// Every member of the driver, failing and succeeding, through the function table and through Invoke.

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

struct ThroughTable {
    static Failure Call(IDispatch* object, const Slot& slot) {
        std::vector<com::Variant> values;
        std::vector<VARIANT> passed;
        for (const auto& parameter : slot.parameters) {
            const bool input = !parameter.result && parameter.type != (VT_ARRAY | VT_UI1);
            values.emplace_back(input ? ArgumentOf(parameter) : VARIANT{});
        }
        for (std::size_t index = 0; index < values.size(); ++index) {
            passed.push_back(values[index]);
            if (!slot.parameters[index].reference) continue;
            // What comes is freed with the values.
            VARIANT& value = values[index];
            value.vt = slot.parameters[index].type;
            passed.back().vt = VT_BYREF | value.vt;
            passed.back().byref = value.vt == VT_VARIANT ? static_cast<void*>(&value) : &value.byref;
            if (value.vt == VT_VARIANT) VariantInit(&value);
        }
        std::vector<VARTYPE> types;
        std::vector<VARIANT*> arguments;
        for (auto& value : passed) {
            types.push_back(value.vt);
            arguments.push_back(&value);
        }
        com::Variant result;
        EXPECT_EQ(DispCallFunc(object, slot.offset, CC_STDCALL, VT_ERROR, static_cast<UINT>(types.size()), types.data(),
                               arguments.data(), &result),
                  S_OK);
        return TakeFailure(result.scode);
    }
};

struct ThroughInvoke {
    static Failure Call(IDispatch* object, const Slot& slot) {
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
        EXPECT_EQ(Way::Call(faces_[slot.face].get(), slot), expected) << slot.Text() << ", " << state_;
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

struct Session : OnLine {
    void TestBody() override {}
};

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
        session.peer.BreaksProtocolAfter(behind.line, behind.times);
        EXPECT_EQ(TypeParam::Call(session.driver.get(), behind.slot), behind.expected) << behind.slot.Text();
    }
}

}  // namespace
