#include <stdexcept>

#include "tests/com/Bench.h"

// The conversions between automation and this system's own values and errors, which all faces share.

namespace {

using com::FromVariant;
using platform::AutomationError;
using platform::Value;

/// An object whose default value is 42.5.
class Meter : public Fake<IDispatch> {
  public:
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
        return member == DISPID_VALUE ? Give(result, com::ToVariant(Value(42.5))) : DISP_E_MEMBERNOTFOUND;
    }
};

VARIANT Whole(VARTYPE type, LONGLONG number) {
    VARIANT value{};
    value.vt = type;
    value.llVal = number;
    return value;
}

TEST(Variants, BecomeValues) {
    short two = -2;
    VARIANT inner = com::ToVariant(Value(7));
    Meter meter;
    IDispatch* const object = &meter;
    VARIANT single{};
    single.vt = VT_R4;
    single.fltVal = 0.5F;
    const std::pair<VARIANT, Value> cases[] = {
        {VARIANT{}, {}},
        {Whole(VT_BOOL, VARIANT_TRUE), true},
        {Whole(VT_UI1, 200), 200},
        {Whole(VT_I2, -5), std::int16_t{-5}},
        {Whole(VT_I4, 70000), 70000},
        {single, 0.5},
        {Whole(VT_CY, 125000), std::string("12.5")},
        {Whole(VT_UI4, 4000000000), 4e9},
        {Whole(VT_I8, -7), -7},
        {Typed(VT_I2 | VT_BYREF, &two), std::int16_t{-2}},
        {Reference(&inner), 7},
        {Typed(VT_DISPATCH, object), 42.5},
        {Typed(VT_UNKNOWN, object), 42.5},
    };
    for (const auto& [variant, value] : cases) EXPECT_EQ(FromVariant(variant), value) << "type " << variant.vt;
    EXPECT_FALSE(com::InUse());
}

TEST(Variants, ThatAreNoValuesAreRefused) {
    Fake<IDispatch> plain;
    const Arg bytes(com::ToVariant(std::vector<std::uint8_t>{1, 2}));
    const auto refused = [](const VARIANT& variant) { return Raised([&] { FromVariant(variant); }); };
    for (const VARIANT& variant : {Whole(VT_NULL, 0), VARIANT(bytes), com::MissingArgument(),
                                   Typed(VT_DISPATCH, static_cast<IDispatch*>(&plain))}) {
        EXPECT_EQ(refused(variant), "13 test-com: Type mismatch") << variant.vt;
    }
    EXPECT_EQ(refused(Typed(VT_DISPATCH, nullptr)), "91 test-com: Object variable not set");
    EXPECT_EQ(refused(Reference(nullptr)), "80004003 test-com: Invalid pointer");
}

TEST(Variants, TellWhetherAnArgumentWasGiven) {
    VARIANT missing = com::MissingArgument();
    EXPECT_TRUE(com::ParameterNotFound(Reference(&missing)));
    EXPECT_FALSE(com::ParameterNotFound(Whole(VT_ERROR, E_FAIL)));
    EXPECT_FALSE(com::ParameterNotFound(VARIANT{}));
    EXPECT_TRUE(com::Missing(VARIANT{}));
    EXPECT_FALSE(com::Missing(Arg("")));
    EXPECT_EQ(com::OptionalText(missing), std::nullopt);
    EXPECT_EQ(com::OptionalText(Arg(12)), "12");
    EXPECT_EQ(com::OptionalNumber(Arg("12")), 12);
    EXPECT_EQ(Raised([] { com::OptionalNumber(Arg("x")); }), "13 test-com: Type mismatch");
}

TEST(Variants, AreAssignedInTheTypeOfTheVariable) {
    Arg text("old"), name("old");
    com::Assign(text, Value(5));
    EXPECT_EQ(FromVariant(text), Value(5));
    short number = 0;
    LONG whole = 0;
    double real = 0;
    for (auto& [type, variable] : {std::pair(VT_I2, static_cast<void*>(&number)), {VT_I4, &whole}, {VT_R8, &real}}) {
        VARIANT reference = Typed(static_cast<VARTYPE>(VT_BYREF | type), variable);
        com::Assign(reference, Value(std::string("31")));
        EXPECT_EQ(Raised([&] { com::Assign(reference, Value(std::string("---"))); }), "13 test-com: Type mismatch");
    }
    EXPECT_EQ(std::tuple(number, whole, real), std::tuple(31, 31, 31.0));
    VARIANT reference = Typed(VT_BYREF | VT_I2, &number);
    EXPECT_EQ(Raised([&] { com::Assign(reference, Value(40000)); }), "6 test-com: Overflow");
    reference = Typed(VT_BYREF | VT_BSTR, &name.bstrVal);
    com::Assign(reference, Value(-1.5));
    EXPECT_EQ(Text(name), "-1.5");
}

TEST(Variants, AreArraysOfBytes) {
    EXPECT_EQ(Text(Arg(com::ToVariant(std::vector<std::uint8_t>{}))), "");
    Arg array(Typed(VT_ARRAY | VT_VARIANT, SafeArrayCreateVector(VT_VARIANT, 5, 2)));  // from 5 on
    const auto put = [&](LONG index, Arg element) {
        EXPECT_EQ(SafeArrayPutElement(array.parray, &index, &element), S_OK);
    };
    put(5, 9);
    put(6, "255");
    EXPECT_EQ(com::BytesOf(array), (std::vector<std::uint8_t>{9, 255}));
    put(6, 256);
    EXPECT_EQ(Raised([&] { com::BytesOf(array); }), "6 test-com: Overflow");
    EXPECT_EQ(Raised([] { com::BytesOf(Arg("text")); }), "13 test-com: Type mismatch");
}

TEST(Errors, TravelAsResultCodes) {
    const std::pair<std::int32_t, std::uint32_t> cases[] = {{5, 0x800A0005U},
                                                            {40006, 0x800A9C46U},
                                                            {65535, 0x800AFFFFU},
                                                            {static_cast<std::int32_t>(0x800407D5U), 0x800407D5U}};
    for (const auto& [number, result] : cases) {
        EXPECT_EQ(static_cast<std::uint32_t>(com::ResultOf(number)), result);
        EXPECT_EQ(com::NumberOf(static_cast<HRESULT>(result)), number);
    }
    EXPECT_EQ(com::NumberOf(DISP_E_TYPEMISMATCH), 13);
    EXPECT_EQ(com::NumberOf(DISP_E_OVERFLOW), 6);
    EXPECT_EQ(com::NumberOf(DISP_E_BADINDEX), 9);
    for (const std::int32_t none : {0, 65536, 0x7FFFFFFF}) EXPECT_EQ(com::ResultOf(none), E_FAIL);
}

TEST(Errors, StopAtTheBorderWithTheirInformation) {
    const auto border = [](auto exception) { return Told(com::Border(IID_IDispatch, [&] { throw exception; })); };
    AutomationError error(2003, "source", "text");
    EXPECT_EQ(border(error), "2003 source: text");
    EXPECT_EQ(border(std::bad_alloc()), "8007000E");
    EXPECT_EQ(border(std::runtime_error("broken")), "8000FFFF test-com: broken");
    EXPECT_EQ(border(7), "8000FFFF test-com: Unknown failure");
    EXPECT_EQ(com::Border(IID_IDispatch, [] { return S_FALSE; }), S_FALSE);

    Fake<IDispatch> object, silent;
    silent.SupportsErrors = false;
    const auto passOn = [](HRESULT result, IDispatch* from) { return Raised([&] { com::Check(result, from); }); };
    const auto leave = [&] { return com::Border(IID_IDispatch, [&] { throw error; }); };
    error.HelpFile = "tarn.hlp";
    error.HelpContext = 12;
    try {
        com::Check<IDispatch>(leave(), &object);
        ADD_FAILURE() << "nothing raised";
    } catch (const AutomationError& came) {
        EXPECT_EQ(Told(came) + came.HelpFile + std::to_string(came.HelpContext.value_or(0)),
                  "2003 source: texttarn.hlp12");
    }
    EXPECT_FALSE(com::InUse());
    leave();
    EXPECT_EQ(com::Border(IID_IDispatch, [] {}), S_OK);
    EXPECT_EQ(passOn(DISP_E_OVERFLOW, &object), "6 test-com: Overflow") << "an older error is forgotten";
    leave();
    EXPECT_EQ(passOn(DISP_E_TYPEMISMATCH, &silent), "13 test-com: Type mismatch") << "another's error";
    EXPECT_EQ(passOn(S_FALSE, &object), "");
}

}  // namespace
