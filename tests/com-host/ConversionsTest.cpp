#include <algorithm>

#include "tests/com-host/Client.h"
#include "tests/com-host/Fake.h"

using com::FromVariant;
using platform::Value;

TEST(Text, GoesThroughUtf16ByLength) {
    using namespace std::string_literals;
    const std::pair<std::string, std::wstring> cases[] = {{"", L""},
                                                          {"READ:DVBT?", L"READ:DVBT?"},
                                                          {"a\0b"s, L"a\0b"s},
                                                          {"50 \xCE\xA9, \xC2\xB5V", L"50 \x03A9, \x00B5V"},
                                                          {"\xF0\x9F\x93\xA1", L"\xD83D\xDCE1"}};
    for (const auto& [utf8, utf16] : cases) {
        const com::Bstr bstr{utf8};
        EXPECT_EQ(std::wstring(bstr.get(), SysStringLen(bstr.get())), utf16);
        EXPECT_EQ(bstr.Utf8(), utf8);
        EXPECT_EQ(com::Wide(utf8), utf16);
    }
    EXPECT_EQ(com::Utf8(BSTR{nullptr}), "");
    // What is no text is replaced.
    EXPECT_EQ(com::Wide("a\xFF."), L"a\xFFFD.");
    EXPECT_EQ(com::Utf8(std::wstring_view(L"a\xD83D.")), "a\xEF\xBF\xBD.");
}

namespace {

VARIANT Raw(VARTYPE type, auto fill) {
    VARIANT value;
    VariantInit(&value);
    V_VT(&value) = type;
    fill(value);
    return value;
}

/// An object whose default value is 42.5.
class Meter : public Fake<IDispatch> {
  public:
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
        if (member != DISPID_VALUE) return DISP_E_MEMBERNOTFOUND;
        *result = com::ToVariant(Value(42.5));
        return S_OK;
    }
};

}  // namespace

TEST(Variants, BecomeValues) {
    short two = -2;
    VARIANT inner = com::ToVariant(Value(7));
    Meter meter;
    const std::pair<VARIANT, Value> cases[] = {
        {Raw(VT_EMPTY, [](auto&) {}), {}},
        {Raw(VT_BOOL, [](auto& v) { V_BOOL(&v) = VARIANT_TRUE; }), true},
        {Raw(VT_UI1, [](auto& v) { V_UI1(&v) = 200; }), 200},
        {Raw(VT_I2, [](auto& v) { V_I2(&v) = -5; }), std::int16_t{-5}},
        {Raw(VT_I4, [](auto& v) { V_I4(&v) = 70000; }), 70000},
        {Raw(VT_R4, [](auto& v) { V_R4(&v) = 0.5F; }), 0.5},
        {Raw(VT_R8, [](auto& v) { V_R8(&v) = 1e300; }), 1e300},
        {Raw(VT_CY, [](auto& v) { V_CY(&v).int64 = 125000; }), std::string("12.5")},
        {Raw(VT_UI4, [](auto& v) { V_UI4(&v) = 4000000000U; }), 4e9},
        {Raw(VT_I8, [](auto& v) { V_I8(&v) = -7; }), -7},
        {Raw(VT_UI8, [](auto& v) { V_UI8(&v) = 5025; }), 5025},
        {Raw(VT_I2 | VT_BYREF, [&](auto& v) { V_I2REF(&v) = &two; }), std::int16_t{-2}},
        {Raw(VT_VARIANT | VT_BYREF, [&](auto& v) { V_VARIANTREF(&v) = &inner; }), 7},
        {Raw(VT_DISPATCH, [&](auto& v) { V_DISPATCH(&v) = &meter; }), 42.5},
        {Raw(VT_UNKNOWN, [&](auto& v) { V_UNKNOWN(&v) = static_cast<IDispatch*>(&meter); }), 42.5},
    };
    for (const auto& [variant, value] : cases) EXPECT_EQ(FromVariant(variant), value) << "type " << V_VT(&variant);
    EXPECT_EQ(meter.References, 0);
    EXPECT_EQ(FromVariant(Arg("\xC2\xB5")), Value(std::string("\xC2\xB5")));
}

TEST(Variants, ThatAreNoValuesAreRefused) {
    Fake<IDispatch> plain;
    const com::Variant bytes(com::ToVariant(std::vector<std::uint8_t>{1, 2}));
    const auto null = Raw(VT_NULL, [](auto&) {}), nothing = Raw(VT_DISPATCH, [](auto&v) { V_DISPATCH(&v) = nullptr; }),
               object = Raw(VT_DISPATCH, [&](auto&v) { V_DISPATCH(&v) = &plain; });
    for (const VARIANT& variant : {null, VARIANT(bytes), com::MissingArgument(), object}) {
        EXPECT_EQ(Raised([&] { FromVariant(variant); }), "13|test-com-host|Type mismatch") << V_VT(&variant);
    }
    EXPECT_EQ(Raised([&] { FromVariant(nothing); }), "91|test-com-host|Object variable not set");
    EXPECT_EQ(Raised([&] { FromVariant(Raw(VT_VARIANT | VT_BYREF, [](auto& v) { V_VARIANTREF(&v) = nullptr; })); }),
              std::to_string(E_POINTER) + "|test-com-host|Invalid pointer");
}

TEST(Variants, TellWhetherAnArgumentWasGiven) {
    VARIANT missing = com::MissingArgument();
    const auto reference = Raw(VT_VARIANT | VT_BYREF, [&](auto& v) { V_VARIANTREF(&v) = &missing; });
    EXPECT_TRUE(com::ParameterNotFound(missing));
    EXPECT_TRUE(com::ParameterNotFound(reference));
    EXPECT_FALSE(com::ParameterNotFound(Arg(Value())));
    EXPECT_TRUE(com::Missing(Arg(Value())));
    EXPECT_FALSE(com::Missing(Arg("")));
    EXPECT_EQ(com::OptionalText(missing), std::nullopt);
    EXPECT_EQ(com::OptionalText(Arg(Value(12))), "12");
    EXPECT_EQ(com::OptionalNumber(Arg("12")), 12);
    EXPECT_EQ(Raised([] { com::OptionalNumber(Arg("x")); }), "13|test-com-host|Type mismatch");
}

TEST(Variants, AreAssignedInTheTypeOfTheVariable) {
    com::Variant text = Arg("old");
    com::Assign(text, Value(5));
    EXPECT_EQ(FromVariant(text), Value(5));

    short number = 0;
    auto reference = Raw(VT_I2 | VT_BYREF, [&](auto& v) { V_I2REF(&v) = &number; });
    com::Assign(reference, Value(std::string("31")));
    EXPECT_EQ(number, 31);
    EXPECT_EQ(Raised([&] { com::Assign(reference, Value(40000)); }), "6|test-com-host|Overflow");
    EXPECT_EQ(Raised([&] { com::Assign(reference, Value(std::string("---"))); }), "13|test-com-host|Type mismatch");
    EXPECT_EQ(number, 31);

    BSTR name = com::ToBstr(std::string_view("old"));
    auto nameReference = Raw(VT_BSTR | VT_BYREF, [&](auto& v) { V_BSTRREF(&v) = &name; });
    com::Assign(nameReference, Value(-1.5));
    EXPECT_EQ(com::Utf8(name), "-1.5");
    SysFreeString(name);
}

TEST(ByteArrays, GoBothWays) {
    const std::vector<std::uint8_t> bytes{0, 255, 10};
    EXPECT_EQ(com::BytesOf(com::Variant(com::ToVariant(bytes))), bytes);
    EXPECT_EQ(com::BytesOf(com::Variant(com::ToVariant(std::vector<std::uint8_t>{}))), std::vector<std::uint8_t>{});
}

TEST(ByteArrays, AreMadeOfAScriptsArray) {
    com::Variant array;
    V_ARRAY(&array) = SafeArrayCreateVector(VT_VARIANT, 5, 2);  // a lower bound other than 0
    V_VT(&array) = VT_ARRAY | VT_VARIANT;
    const auto put = [&](LONG index, const Value& value) {
        com::Variant element = Arg(value);
        ASSERT_EQ(SafeArrayPutElement(V_ARRAY(&array), &index, &element), S_OK);
    };
    put(5, 9);
    put(6, std::string("255"));
    EXPECT_EQ(com::BytesOf(array), (std::vector<std::uint8_t>{9, 255}));
    put(6, 256);
    EXPECT_EQ(Raised([&] { com::BytesOf(array); }), "6|test-com-host|Overflow");
    EXPECT_EQ(Raised([] { com::BytesOf(Arg("text")); }), "13|test-com-host|Type mismatch");
}
