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
    VARIANT value = Typed(type, nullptr);
    value.llVal = number;
    return value;
}

TEST(Variants, BecomeValues) {
    short two = -2;
    Arg seven(7), bytes(com::ToVariant(std::vector<std::uint8_t>{1, 2}));
    Meter meter;
    Fake<IDispatch> plain;
    IDispatch *object = &meter, *none = &plain;
    // clang-format off
    const std::pair<VARIANT, Value> cases[] = {
        {VARIANT{}, {}}, {Whole(VT_BOOL, VARIANT_TRUE), true}, {Whole(VT_UI1, 200), 200}, {Whole(VT_I2, -5), std::int16_t{-5}},
        {Whole(VT_I4, 70000), 70000}, {Whole(VT_R4, 0x3F000000), 0.5}, {Whole(VT_CY, 125000), std::string("12.5")},
        {Whole(VT_UI4, 4000000000), 4e9}, {Whole(VT_I8, -7), -7}, {Typed(VT_I2 | VT_BYREF, &two), std::int16_t{-2}},
        {Reference(&seven), 7}, {Typed(VT_DISPATCH, object), 42.5}, {Typed(VT_UNKNOWN, object), 42.5}};
    // clang-format on
    for (const auto& [variant, value] : cases) EXPECT_EQ(FromVariant(variant), value) << "type " << variant.vt;
    const auto refused = [](const VARIANT& variant) { return Raised([&] { FromVariant(variant); }); };
    for (const VARIANT& variant :
         {Whole(VT_NULL, 0), VARIANT(bytes), com::MissingArgument(), Typed(VT_DISPATCH, none)}) {
        EXPECT_EQ(refused(variant), "13 test-com: Type mismatch") << variant.vt;
    }
    EXPECT_EQ(refused(Typed(VT_DISPATCH, nullptr)), "91 test-com: Object variable not set");
    EXPECT_EQ(refused(Reference(nullptr)), "80004003 test-com: Invalid pointer");
    EXPECT_FALSE(com::InUse());
}

TEST(Variants, AreAssignedInTheTypeOfTheVariable) {
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
}

TEST(Variants, AreArraysOfBytes) {
    Arg array(Typed(VT_ARRAY | VT_VARIANT, SafeArrayCreateVector(VT_VARIANT, 5, 2)));  // from 5 on
    const auto bytesWith = [&](Arg last) {
        LONG index = 6;
        EXPECT_EQ(SafeArrayPutElement(array.parray, &index, &last), S_OK);
        return Raised([&] { EXPECT_EQ(com::BytesOf(array), (std::vector<std::uint8_t>{0, 255})); });
    };
    EXPECT_EQ(bytesWith("255"), "");
    EXPECT_EQ(bytesWith(256), "6 test-com: Overflow");
    EXPECT_EQ(Raised([] { com::BytesOf(Arg("text")); }), "13 test-com: Type mismatch");
    EXPECT_EQ(Text(Arg(com::ToVariant(std::vector<std::uint8_t>{}))), "");
}

TEST(Errors, StopAtTheBorderWithTheirInformation) {
    const auto border = [](auto exception) { return Told(com::Border(IID_IDispatch, [&] { throw exception; })); };
    EXPECT_EQ(border(AutomationError(2003, "source", "text")), "2003 source: text");
    EXPECT_EQ(border(AutomationError(0, "", "")), "80004005");
    EXPECT_EQ(border(std::bad_alloc()), "8007000E");
    EXPECT_EQ(border(std::runtime_error("broken")), "8000FFFF test-com: broken");
    EXPECT_EQ(border(7), "8000FFFF test-com: Unknown failure");
    EXPECT_EQ(com::Border(IID_IDispatch, [] { return S_FALSE; }), S_FALSE);
}

TEST(Errors, ArePassedOnWithTheInformationOfTheirObject) {
    Fake<IDispatch> object, silent;
    silent.SupportsErrors = false;
    const auto leave = [] {
        AutomationError error(2003, "source", "text");
        error.HelpFile = "tarn.hlp";
        error.HelpContext = 12;
        return com::Border(IID_IDispatch, [&] { throw error; });
    };
    const auto passOn = [](HRESULT result, IDispatch* from) { return Raised([&] { com::Check(result, from); }); };
    EXPECT_EQ(passOn(leave(), &object), "2003 source: texttarn.hlp12");
    leave();
    EXPECT_EQ(com::Border(IID_IDispatch, [] {}), S_OK);
    EXPECT_EQ(passOn(DISP_E_OVERFLOW, &object), "6 test-com: Overflow") << "an older error is forgotten";
    leave();
    EXPECT_EQ(passOn(DISP_E_TYPEMISMATCH, &silent), "13 test-com: Type mismatch") << "another's error";
    EXPECT_EQ(passOn(DISP_E_BADINDEX, nullptr), "9 test-com: Subscript out of range");
    EXPECT_EQ(passOn(S_FALSE, &object), "");
    EXPECT_FALSE(com::InUse());
}

}  // namespace
