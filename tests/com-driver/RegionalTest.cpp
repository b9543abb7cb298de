#include <Seamcfg_h.h>

#include "tests/com-driver/Bench.h"

// A user whose regional format has a decimal comma: the wire keeps points, texts in calls follow the user.

namespace {

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

struct DecimalComma : OnLine {
    DecimalComma() {
        peer.Answers("SENS:DVBT:MEAS? = SP_1 | SENS:DVBT:SPEC:FREQ:STAR? = -400.5 | SENS:DVBT:SPEC:FREQ:STOP? = 400");
    }
    com::Variant Text(const char* text) { return com::Variant(com::ToVariant(std::string(text))); }

    // Conversions of numbers look at the format of currencies too.
    UserFormat decimal{LOCALE_SDECIMAL, L","}, thousand{LOCALE_STHOUSAND, L"."};
    UserFormat moneyDecimal{LOCALE_SMONDECIMALSEP, L","}, moneyThousand{LOCALE_SMONTHOUSANDSEP, L"."};
    Script script{driver.get()};
};

TEST_F(DecimalComma, IsTheUsers) {
    com::Bstr text;
    ASSERT_EQ(VarBstrFromR8(1.5, LOCALE_USER_DEFAULT, 0, text.put()), S_OK);
    EXPECT_EQ(text.Utf8(), "1,5");
}

TEST_F(DecimalComma, NeverGoesToTheInstrument) {
    EXPECT_SENDS(driver->put_RF(474000000.25), "SENS:FREQ:CENT  474000000.3");
    EXPECT_SENDS(driver->put_MeasureCdAddNoiseCn(12.5), "SENS:DVBT:NOISE 12.5");
    EXPECT_SENDS(driver->put_MeasureFdSpectrumStartFreq(-2004500), "SENS:DVBT:SPEC:FREQ:STAR -200.45");
    EXPECT_SENDS(driver->put_SetupTime(0.5), "SYST:Time 12,0,0");
    EXPECT_SENDS(script.Put(L"RF", Real(474000001.75)), "SENS:FREQ:CENT  474000001.8");
    EXPECT_SENDS(script.Put(L"MeasureCdAddNoiseCn", Real(3.5)), "SENS:DVBT:NOISE 3.5");
}

TEST_F(DecimalComma, IsReadInTextsOfCalls) {
    EXPECT_SENDS(script.Put(L"RF", Text("474000000,25")), "SENS:FREQ:CENT  474000000.3");
    EXPECT_SENDS(script.Put(L"RF", Text("474.000.001,5")), "SENS:FREQ:CENT  474000001.5");
    EXPECT_SENDS(script.Put(L"MeasureCdAddNoiseCn", Text("3,5")), "SENS:DVBT:NOISE 3.5");
    EXPECT_SENDS(script.Put(L"MeasureCdSymbolCount", Text("1.000")), "SENS:DVBT:INT:COUN 1000");
    EXPECT_EQ(script.Put(L"RF", Text("4,7,4")), DISP_E_TYPEMISMATCH);
}

TEST_F(DecimalComma, IsNoneInAnswers) {
    const std::pair<const char*, double> answers[] = {
        {"-45.5", -45.5}, {"-45,5", -45}, {"1.2E-07", 1.2E-07}, {"1.234.567", 1.234}};
    for (const auto& [answer, number] : answers) {
        peer.Answers(std::string("READ:RF:LEVEL? = ") + answer);
        EXPECT_EQ(Get<double>(&_clsTarn4x::get_MeasureRfLevel), number);
        EXPECT_EQ(script.Value(L"MeasureRfLevel").dblVal, number);
    }
    EXPECT_EQ(Get<double>(&_clsTarn4x::get_MeasureFdSpectrumStartFreq), -4005000);
    peer.Answers("*IDN? = VANTERRA,TARN,1,5.05 | ROUTE:ISELECT? = DEM | INPUT:ATTENUATION:DEM:VAL? = 11");
    EXPECT_EQ(Get<TarnDemodAttenVals>(&_clsTarn4x::get_InputAttenuationValue_Demod), tarnDAVAutoLowAtten)
        << "the firmware is recent enough";
}

TEST_F(DecimalComma, IsNoneInTextsForUsers) {
    const auto invalid = [](const char* member, const char* text) {
        return Failure{0x8004017C, std::string("clsTarn4x.") + member,
                       std::string("Invalid property value (") + text + ")"};
    };
    EXPECT_EQ(TakeFailure(driver->put_RF(2999999.9)), invalid("RF", "RF = 2999999.9 Hz"));
    EXPECT_EQ(script.Put(L"MeasureCdAddNoiseCn", Text("1,99")), DISP_E_EXCEPTION);
    EXPECT_EQ(script.raised, invalid("MeasureCdAddNoiseCn", "MeasureCdAddNoiseCn = 1.99"));
}

TEST_F(DecimalComma, IsReadInCountsOfAReport) {
    peer.Answers("READ:DVBT:ALAR:STAT? = 0:0:0,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,0:0:0,,1.500,12,3");
    ComPtr<_clsStatistics> statistics;
    ASSERT_EQ(driver->get_AlarmStatistics(statistics.put()), S_OK);
    double count = 0;
    EXPECT_EQ(statistics->get_CorrCntBeforeVit(&count), S_OK);
    EXPECT_EQ(count, 1500) << "a point separates thousands";
}

TEST_F(DecimalComma, StaysOutOfSettings) {
    ComPtr<INode> settings, setting;
    ASSERT_EQ(setup->get_Settings(settings.put()), S_OK);
    ASSERT_EQ(settings->get_Item(Text("Serial Number"), setting.put()), S_OK);
    VARIANT currency{};
    currency.vt = VT_CY;
    currency.cyVal.int64 = 125000;
    com::Variant value;
    EXPECT_EQ(setting->put_Value(currency), S_OK);
    EXPECT_EQ(setting->get_Value(&value), S_OK);
    EXPECT_EQ(com::TextOf(value), "12.5");
    com::Bstr display;
    EXPECT_EQ(setting->put_Value(Real(0.5)), S_OK);
    EXPECT_EQ(setting->get_DisplayValue(display.put()), S_OK);
    EXPECT_EQ(display.Utf8(), "0.5");
}

}  // namespace
