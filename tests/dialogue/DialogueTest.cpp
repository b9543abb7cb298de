// The driver with the stand-alone framework and its real links, against the simulated receiver.
#include <map>

#include "tests/dialogue/Station.h"
#include "tests/support/DriverCalls.h"
#include "tests/support/DriverMembers.h"

namespace {

using namespace tarn4x;

class Dialogue : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Links, Dialogue, testing::ValuesIn(EveryLink), LinkName);

/// Everything that can be read and does not change with the time, in a measure mode of each kind.
std::map<std::string, std::string> Survey(clsTarn4x& driver) {
    std::map<std::string, std::string> values;
    for (const auto mode : {tarnNORM, tarnPAR, tarnSP_1, tarnCCDF, tarnAPH, tarnAGD, tarnIR_1}) {
        driver.put_InputPort(tarnReceiver);
        driver.put_MeasureMode(mode);
        for (const auto& [kind, name, has, query, answers, words, command] : support::DriverMembers) {
            const bool due = has.In.Bits == 0 ? mode == tarnNORM : has.In.Have(mode);
            if (!due || (kind != support::Read && kind != support::Control)) continue;
            if (name == std::string_view("SetupTime") || name == std::string_view("AlarmStatistics")) continue;
            if (has.First.Value != 0) support::CallOf(has.First.Member).Put(driver, 0, has.First.Value);
            values[name + std::to_string(mode)] = support::CallOf(name).Get(driver, has.Argument);
        }
    }
    for (std::int16_t echo = 1; echo <= 25; ++echo) {
        values["Atten" + std::to_string(echo)] = support::Text(driver.get_ImpulseResponseAtten(echo));
        values["Delay" + std::to_string(echo)] = support::Text(driver.get_ImpulseResponseDelay(echo));
    }
    return values;
}

const std::vector<std::string> SeedSeven{"--seed", "7", "--options", "TARN-B3"};

/// What the receiver with that seed says to the driver.
const std::map<std::string, std::string>& Expected() {
    static const auto values = [] {
        Station station("TCP/IP", {}, SeedSeven);
        station.GoOnLine();
        return Survey(*station.driver);
    }();
    return values;
}

TEST_P(Dialogue, SurveysTheReceiverWithTheSameValuesOverEveryLink) {
    Station station(GetParam(), {}, SeedSeven);
    station.GoOnLine();
    auto& driver = *station.driver;
    EXPECT_THAT(driver.get_Identity(), testing::StartsWith("VANTERRA,TARN,"));
    EXPECT_THAT(driver.get_InstalledHardware(), testing::HasSubstr("TARN-B3"));
    const auto values = Survey(driver);
    EXPECT_EQ(values, Expected());
    EXPECT_EQ(Occurrences("1\tReceiver", station.framework->TheMessageLog()), 0) << "no failure of the link";
    EXPECT_EQ(values.at("RF0"), "474000000");
    EXPECT_EQ(values.at("Mode0"), "13");

    const auto statistics = driver.get_AlarmStatistics();
    EXPECT_GE(statistics->get_MonitoringTime(), 0.0);
    std::vector<std::uint8_t> screen;
    driver.put_MeasureMode(tarnCDI);
    const auto shoot = [&] {
        return driver.get_ScreenShot(static_cast<TarnScreenShotModes>(tarnCapture + tarnTransfer), screen);
    };
    if (GetParam() == std::string_view("GUI")) {
        EXPECT_THROW(shoot(), platform::AutomationError);
    } else {
        EXPECT_TRUE(shoot());
        ASSERT_GT(screen.size(), 128U);
        EXPECT_EQ(screen[0], 0x0A) << "a PCX file";
    }
    driver.put_IDriverSetup_OnLine(false);
    EXPECT_FALSE(driver.get_IDriverSetup_OnLine());
}

TEST(Trace, OfASurveyGivesItsValuesAgain) {
    Station recorded("TCP/IP", {}, SeedSeven);
    const auto trace = (recorded.Folder / "trace").string();
    recorded.framework->TheMessageLog().SetFileName(trace);
    recorded.GoOnLine();
    const auto values = Survey(*recorded.driver);
    recorded.framework->TheMessageLog().SetFileName("");

    const std::vector<std::string> otherSeed{"--seed", "8"}, replay{"--seed", "8", "--replay", trace};
    for (const auto& arguments : {otherSeed, replay}) {
        Station station("TCP/IP", {}, arguments);
        station.GoOnLine();
        EXPECT_EQ(Survey(*station.driver) == values, arguments == replay);
    }
}

TEST_P(Dialogue, WritesWhatItReadsBack) {
    Station station(GetParam(), {}, SeedSeven);
    station.GoOnLine();
    auto& d = *station.driver;
    d.put_RF(522000000.5);
    EXPECT_DOUBLE_EQ(d.get_RF(), 522000000.5);
    d.put_MeasureCdAddNoiseCn(23.5);
    d.put_MeasureCdAddNoise(tarnOn);
    EXPECT_DOUBLE_EQ(d.get_MeasureNoiseGenerator(), 23.5);
    EXPECT_EQ(d.get_MeasureCdAddNoise(), tarnOn);
    d.put_MeasureCdSymbolCount(500);
    EXPECT_EQ(d.get_MeasureCdSymbolCount(), 500);
    d.put_SetupLevelUnit(tarnDBUV);
    EXPECT_EQ(d.get_SetupLevelUnit(), tarnDBUV);
    d.put_StatusOfdmCodeRateMode(tarnMan);
    d.put_StatusOfdmCodeRate(tarnLow, tarn3_4);
    EXPECT_EQ(d.get_StatusOfdmCodeRate(tarnLow), tarn3_4);
    d.put_StatusOfdmGuardInterval(tarn1_16);
    EXPECT_EQ(d.get_StatusOfdmGuardInterval(), tarn1_16);
    d.put_InputPort(tarnReceiver75ohm);
    EXPECT_EQ(d.get_InputPort(), tarnReceiver75ohm);
    d.put_InputAttenuation(tarnAtten20);
    EXPECT_EQ(d.get_InputAttenuation(), tarnAtten20);
    d.put_InputAttenuationMode_Receiver(tarnRxAttenLoDistn);
    EXPECT_EQ(d.get_InputAttenuationMode_Receiver(), tarnRxAttenLoDistn);
    d.put_InputPort(tarnDemod);
    d.put_InputAttenuation_Demod(tarnDemodManualHigh);
    EXPECT_EQ(d.get_InputAttenuation_Demod(), tarnDemodManualHigh);
    EXPECT_EQ(d.get_InputAttenuationValue_Demod(), tarnDAVManualHigh);
    d.put_SetupDate(46096.0);
    EXPECT_DOUBLE_EQ(d.get_SetupDate(), 46096.0);
    d.put_MeasureMode(tarnSP_2);
    d.put_MeasureFdSpectrumStartFreq(-1000000.0);
    d.put_MeasureFdSpectrumStopFreq(2000000.0);
    EXPECT_DOUBLE_EQ(d.get_MeasureFdSpectrumStartFreq(), -1000000.0);
    EXPECT_DOUBLE_EQ(d.get_MeasureFdSpectrumStopFreq(), 2000000.0);
    d.put_MeasureFdSpectrumAverageCount(12);
    EXPECT_EQ(d.get_MeasureFdSpectrumAverageCount(), 12);
    d.put_MeasureFdSpectrumDetector(tarnMAX);
    EXPECT_EQ(d.get_MeasureFdSpectrumDetector(), tarnMAX);
    d.put_MeasureMode(tarnPAR);
    d.MeasureOfdmCarrierRange(100, 200);
    EXPECT_EQ(d.get_MeasureOfdmStopCarrier(), 200);
    d.Reset();
    EXPECT_EQ(d.get_MeasureCdAddNoise(), tarnOff);
}

}  // namespace
