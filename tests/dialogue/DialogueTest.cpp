// The driver with the stand-alone framework and its real links, against the simulated receiver.
#include <map>

#include "driver/members/clsStatistics.h"
#include "tests/dialogue/Station.h"

namespace {

using namespace tarn4x;

class Dialogue : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Links, Dialogue, testing::ValuesIn(EveryLink), LinkName);

using Member = double (*)(clsTarn4x&);
#define READ(name)                                                               \
    {                                                                            \
#name, [](clsTarn4x & d) { return static_cast<double>(d.get_##name()); } \
    }

// What every measure mode has.
const std::map<std::string, Member> Everywhere{READ(MeasureTsBitrate),
                                               READ(MeasureBitrateOffset),
                                               READ(MeasureRfLevel),
                                               READ(MeasureBerBeforeVit),
                                               READ(MeasureBerBeforeRS),
                                               READ(MeasureBerAfterRS),
                                               READ(MeasureCarrierLoopOutOfLock),
                                               READ(MeasureMpegTsUnSync),
                                               READ(ReferenceLocked),
                                               READ(StateSignal),
                                               READ(MeasureCdAddNoise),
                                               READ(MeasureCdAddNoiseCn),
                                               READ(MeasureCdSymbolCount),
                                               READ(SpecFuncLoopBandwidth),
                                               READ(SpecFuncMinBerIntegration),
                                               READ(MeasureOrderOfQam),
                                               READ(StatusSawFilterBW),
                                               READ(StatusChannelBW),
                                               READ(Setup10MhzRef),
                                               READ(SetupLevelUnit),
                                               READ(SetupDate),
                                               READ(InputAttenuation),
                                               READ(InputAttenuationMode_Receiver),
                                               READ(InputAttenuationValue),
                                               READ(InputPort),
                                               READ(Mode),
                                               READ(RF),
                                               READ(MeasureFftMode),
                                               READ(StatusOfdmAlpha),
                                               READ(StatusOfdmCodeRateMode),
                                               READ(StatusOfdmFftMode),
                                               READ(StatusOfdmGuardInterval),
                                               READ(StatusOfdmOrderOfQam),
                                               READ(StatusMpegDataOutput),
                                               READ(MeasureFftModeTps),
                                               READ(MeasureGuardIntervalTps),
                                               READ(MeasureOrderOfQamTps),
                                               READ(MeasureAlphaTps),
                                               READ(MeasureCodeRateTps),
                                               READ(MeasureCodeRate),
                                               READ(SpecFuncSystOptims),
                                               READ(InputAttenHighAdjChanPower)};

const std::map<TarnMeasureModes, std::map<std::string, Member>> InMode{
    {tarnNORM, {READ(MeasureFrequencyOffset)}},
    {tarnPAR,
     {READ(MeasureOfdmMerRmsDb), READ(MeasureOfdmMerRmsPct), READ(MeasureOfdmMerPeakPct), READ(MeasureOfdmPhaseJitter),
      READ(MeasureOfdmIqPhaseError), READ(MeasureOfdmIqAmplImbalance), READ(MeasureOfdmSignalToNoiseRatio),
      READ(MeasureOfdmCarrierSuppression), READ(MeasureOfdmCarrierSuppressionPhase), READ(MeasureOfdmAverage),
      READ(MeasureOfdmStartCarrier), READ(MeasureOfdmStopCarrier)}},
    {tarnSP_1,
     {READ(MeasureFdSpectrumShoulderLower), READ(MeasureFdSpectrumShoulderUpper), READ(MeasureFdSpectrumStartFreq),
      READ(MeasureFdSpectrumStopFreq), READ(MeasureFdSpectrumDetector), READ(MeasureFdSpectrumAverage),
      READ(MeasureFdSpectrumAverageCount)}},
    {tarnCCDF,
     {READ(MeasureTdCcdfCrestFactorMargin), READ(MeasureTdCcdfCrestFactorMax), READ(MeasureTdCcdfCrestFactorCurrent),
      READ(MeasureTdCrestFactorAqu)}},
    {tarnAPH, {READ(MeasureFdAmplitudeResponse), READ(MeasureFdPhaseResponse)}},
    {tarnAGD, {READ(MeasureFdAmplitudeResponse), READ(MeasureFdGroupDelayResponse)}},
};

/// Everything that can be read, by name.
std::map<std::string, double> Survey(clsTarn4x& driver) {
    std::map<std::string, double> values;
    driver.put_StatusOfdmCodeRateMode(tarnMan);
    for (const auto& [name, read] : Everywhere) values[name] = read(driver);
    for (const auto& [mode, members] : InMode) {
        driver.put_MeasureMode(mode);
        for (const auto& [name, read] : members) values[name + std::to_string(mode)] = read(driver);
    }
    driver.put_MeasureMode(tarnIR_1);
    for (std::int16_t echo = 1; echo <= 25; ++echo) {
        values["ImpulseResponseAtten" + std::to_string(echo)] = driver.get_ImpulseResponseAtten(echo);
        values["ImpulseResponseDelay" + std::to_string(echo)] = driver.get_ImpulseResponseDelay(echo);
    }
    return values;
}

const std::vector<std::string> SeedSeven{"--seed", "7", "--options", "TARN-B3"};

/// What the receiver with that seed says to the driver.
const std::map<std::string, double>& Expected() {
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
    EXPECT_DOUBLE_EQ(values.at("RF"), 474e6);
    EXPECT_EQ(values.at("Mode"), tarnDVBT);

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
