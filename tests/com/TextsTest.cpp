#include "tests/com/Bench.h"

// Texts that are no ASCII, long, or hold what others end at; and users whose regional format has a decimal comma.

namespace {

using namespace std::string_literals;

/// What a client gives, and what is kept of it: half a character becomes U+FFFD.
struct Sample {
    std::wstring Given, Kept = Given;
    std::string Utf8() const { return com::Utf8(Kept); }
};
const std::wstring Clef = L"\xD834\xDD1E";
const Sample Samples[] = {{L"Gr\u00F6\u00DFe"},
                          {Clef + L"\x6D4B"},
                          {L"a\0b"s},
                          {std::wstring(65536, L'\xF6')},
                          {std::wstring(65535, L'x') + Clef},
                          {L"a\xD834.", L"a\xFFFD."},
                          {L"\xDD1E\xD834", L"\xFFFD\xFFFD"}};

/// Short, for messages of long texts.
#define EXPECT_SAME(text, expected) EXPECT_TRUE((text) == (expected)) << (text).substr(0, 40)

std::string Name(IDriverSetup* setup) {
    Bstr name;
    EXPECT_EQ(setup->get_Name(name.put()), S_OK);
    return name.Utf8();
}

TEST(Texts, AreKeptByLength) {
    Bench bench("", false);
    Script setup(bench.setup), settings = setup.Object(L"Settings");
    for (const auto& sample : Samples) {
        EXPECT_EQ(bench.setup->put_Name(Bstr(std::wstring_view(sample.Given)).get()), S_OK);
        EXPECT_SAME(setup.Get(L"Name"), sample.Utf8());
        EXPECT_EQ(setup.Put(L"Name", {std::wstring_view(L"x" + sample.Given)}), "");
        EXPECT_SAME(Name(bench.setup.get()), 'x' + sample.Utf8());
        // A display text becomes the value behind it, and the other way round.
        const Arg given{std::wstring_view(sample.Given)};
        EXPECT_EQ(
            settings.Get(L"AddSetting", {given, 1, 2, std::wstring_view(sample.Given + L"=1,x=!" + sample.Given), ""}),
            "object");
        Script setting(settings.Result);
        EXPECT_SAME(setting.Get(L"Name"), sample.Utf8());
        EXPECT_EQ(settings.Object(L"Item", {given}).Put(L"Value", {given}), "");
        EXPECT_EQ(setting.Get(L"Value"), "1");
        EXPECT_EQ(setting.Put(L"Value", {"x"}), "");
        EXPECT_SAME(setting.Get(L"Value"), '!' + sample.Utf8());
    }
    EXPECT_EQ(bench.setup->put_Name(nullptr), S_OK);
    EXPECT_EQ(Name(bench.setup.get()), "");
}

TEST(Texts, NameATransportByLength) {
    Bench bench("", false);
    EXPECT_EQ(Script(bench.Setting("Remote Control")).Put(L"Value", {std::wstring_view(L"Conduit.clsEthernet\0"s)}),
              "");
    EXPECT_EQ(Told(bench.setup->put_OnLine(VARIANT_TRUE)),
              "429 XTarn4x: Component can't create object: \"Conduit.clsEthernet\xEF\xBF\xBD\"");
}

TEST(Texts, ArriveInMembersAndErrors) {
    for (const auto& sample : Samples) {
        const auto text = sample.Utf8();
        Bench bench("READ:RF:LEVEL? = <-12.5 (" + text + ") | SYST:MODE? = " + text + " | *IDN? = a,b," + text + ",d");
        EXPECT_EQ(bench.script.Get(L"MeasureRfLevel"), "-12.5");
        com::Variant postfix;
        EXPECT_EQ(bench.driver->get_Postfix(&postfix), S_OK);
        EXPECT_SAME(Text(postfix), '(' + text + ')');
        EXPECT_SAME(bench.script.Get(L"Postfix"), '(' + text + ')');
        EXPECT_EQ(bench.script.Get(L"Prefix"), "<");
        EXPECT_SAME(bench.script.Get(L"ResponseString"), "<-12.5 (" + text + ')');
        EXPECT_EQ(bench.script.Result.vt, VT_BSTR);
        EXPECT_SAME(bench.script.Get(L"SerialNumber"), text);
        auto told = sample.Kept;
        std::ranges::replace(told, L'\0', L'\xFFFD');
        const auto error = "+380 .Mode: Device reported an unrecognised mode (" + com::Utf8(told) + ')';
        TarnModes mode{};
        EXPECT_SAME(Told(bench.driver->get_Mode(&mode)), error);
        EXPECT_SAME(bench.script.Get(L"Mode"), error);
    }
}

/// Sets one piece of the user's regional format; the locale's own comes back at the end.
class UserFormat {
  public:
    UserFormat(LCTYPE type, const wchar_t* text) : type_(type) {
        EXPECT_GT(GetLocaleInfoW(LOCALE_USER_DEFAULT, type | LOCALE_NOUSEROVERRIDE, own_, 16), 0);
        Set(text);
    }
    ~UserFormat() { Set(own_); }
    UserFormat(const UserFormat&) = delete;
    UserFormat& operator=(const UserFormat&) = delete;

  private:
    void Set(const wchar_t* text) const {
        EXPECT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, type_, text));
        // Conversions remember the format of the last one, so that one with another format has to come in between.
        wchar_t zero[] = L"0";
        double number = 0;
        EXPECT_EQ(VarR8FromStr(zero, LOCALE_INVARIANT, LOCALE_NOUSEROVERRIDE, &number), S_OK);
    }

    LCTYPE type_;
    wchar_t own_[16];
};

TEST(Texts, FollowTheUsersDecimalCommaInCallsOnly) {
    // Conversions of numbers look at the format of currencies too.
    const UserFormat decimal(LOCALE_SDECIMAL, L","), thousand(LOCALE_STHOUSAND, L"."),
        moneyDecimal(LOCALE_SMONDECIMALSEP, L","), moneyThousand(LOCALE_SMONTHOUSANDSEP, L".");
    Bench bench(
        "READ:RF:LEVEL? = -45.5 | READ:DVBT:ALAR:STAT? = 0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1.500,12,3");
    for (const auto& [given, sent] : {std::pair(Arg(474000000.25), "474000000.3"),
                                      {Arg("474000000,25"), "474000000.3"},
                                      {Arg("474.000.001,5"), "474000001.5"}}) {
        EXPECT_EQ(bench.script.Put(L"RF", {given}), "");
        EXPECT_EQ(bench.link.Lines.back(), std::string("SENS:FREQ:CENT  ") + sent);
    }
    EXPECT_EQ(bench.script.Put(L"RF", {"4,7,4"}), "80020005");
    EXPECT_EQ(Told(bench.driver->put_RF(2999999.9)), "+380 .RF: Invalid property value (RF = 2999999.9 Hz)");
    EXPECT_EQ(bench.script.Get(L"MeasureRfLevel"), "-45.5");
    EXPECT_EQ(bench.script.Object(L"AlarmStatistics").Get(L"CorrCntBeforeVit"), "1500")
        << "a point separates thousands";
    VARIANT currency = Typed(VT_CY, nullptr);
    currency.cyVal.int64 = 125000;
    Script setting(bench.Setting("Serial Number"));
    EXPECT_EQ(setting.Put(L"Value", {currency}), "");
    EXPECT_EQ(setting.Get(L"Value"), "12.5");
    EXPECT_EQ(setting.Put(L"Value", {0.5}), "");
    EXPECT_EQ(setting.Get(L"DisplayValue"), "0.5");
}

}  // namespace
