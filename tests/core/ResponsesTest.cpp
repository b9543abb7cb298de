#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

constexpr auto PairQuery = "READ:DVBT:AMPL_PHAS_GD:VALUE?";
constexpr auto EchoQuery = "READ:DVBT:IRESPONSE:PEAK?";
constexpr auto CarrierQuery = "SENSE:DVBT:CARRIER:START_STOP?";
const Exchange Fft2k{"READ:DVBT:FFT:MODE?", "2K"}, Fft8k{"READ:DVBT:FFT:MODE?", "8K"};

TEST(FrequencyResponse, ReadsOneNumberOfThePair) {
    const struct {
        double (clsTarn4x::*Get)();
        const char* Name;
        std::vector<TarnMeasureModes> Modes;
        double Value;
    } cases[] = {
        {&clsTarn4x::get_MeasureFdAmplitudeResponse, "MeasureFdAmplitudeResponse", {tarnAPH, tarnAGD}, 1.5},
        {&clsTarn4x::get_MeasureFdPhaseResponse, "MeasureFdPhaseResponse", {tarnAPH}, -3.2},
        {&clsTarn4x::get_MeasureFdGroupDelayResponse, "MeasureFdGroupDelayResponse", {tarnAGD}, -3.2},
    };
    for (const auto& c : cases) {
        for (const auto mode : {tarnAPH, tarnAGD, tarnPOL}) {
            Bench bench;
            bench.KnowMode(mode);
            if (std::ranges::count(c.Modes, mode) != 0) {
                bench.Expect({{PairQuery, "1.5"}, {PairQuery, "1.5,-3.2"}});  // the first has no second number
                EXPECT_DOUBLE_EQ((bench.driver.*c.Get)(), c.Value) << c.Name;
                EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
            } else {
                EXPECT_RAISES((bench.driver.*c.Get)(), 0x800407E0, std::string("clsTarn4x.") + c.Name,
                              "Wrong measurement mode selected");
            }
        }
    }
    Bench bench;
    bench.KnowMode(tarnAPH);
    bench.Expect(std::vector<Exchange>(10, {PairQuery, "7 dB"}));
    EXPECT_RAISES(bench.driver.get_MeasureFdPhaseResponse(), 0x800407D4, "clsTarn4x.MeasureFdPhaseResponse",
                  "Invalid TARN response string (7 dB)");
    EXPECT_THAT(bench.world->Delays, testing::AllOf(SizeIs(9), Each(1.0F)));
}

std::string Echoes(int items, const std::string& odd = "") {
    std::string text = "\"";
    for (int i = 0; i < items; ++i) text += (i == 0 ? "" : ",") + (i == 2 ? odd : ' ' + std::to_string(i) + ".5 ");
    return text + '"';
}

TEST(ImpulseResponse, IsMeasuredOnceAndReadByEcho) {
    Bench bench;
    bench.KnowMode(tarnIR_1);
    bench.Expect({{EchoQuery, Echoes(52)}});
    EXPECT_DOUBLE_EQ(bench.driver.get_ImpulseResponseAtten(1), 0.5);
    EXPECT_DOUBLE_EQ(bench.driver.get_ImpulseResponseDelay(1), 1.5);
    EXPECT_EQ(bench.driver.get_Prefix(), "");
    EXPECT_DOUBLE_EQ(bench.driver.get_ImpulseResponseDelay(25), 49.5);
    EXPECT_DOUBLE_EQ(bench.driver.get_ImpulseResponseAtten(2), 0.0) << "the item is empty";
    EXPECT_EQ(bench.driver.get_Prefix(), "---");
    for (const int index : {0, 26, -1}) {
        EXPECT_RAISES(bench.driver.get_ImpulseResponseAtten(static_cast<std::int16_t>(index)), 0x800407D4,
                      "clsTarn4x.ImpulseResponseAtten", "Get ImpulseResponseAtten: index value out of range");
    }
    EXPECT_RAISES(bench.driver.get_ImpulseResponseDelay(26), 0x800407D4, "clsTarn4x.ImpulseResponseDelay",
                  "Get ImpulseResponseDelay: index value out of range");
}

TEST(ImpulseResponse, IsAskedForOnlyOnce) {
    Bench bench;
    bench.KnowMode(tarnIR_1);
    bench.Expect({{EchoQuery, "---"},
                  {EchoQuery, Echoes(49)},
                  {EchoQuery, TransportFailure(2015)},
                  {"READ:RF:LEVEL?", "---"},
                  {"READ:RF:LEVEL?", "1"}});
    bench.driver.MeasureTdImpulseResponse();
    bench.driver.MeasureTdImpulseResponse();
    EXPECT_DOUBLE_EQ(bench.driver.get_ImpulseResponseAtten(25), 0.0) << "49 items are too few";
    EXPECT_EQ(bench.driver.get_Prefix(), "---");
    bench.driver.MeasureTdImpulseResponse();
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureRfLevel(), 1.0) << "other queries are repeated as before";
}

TEST(ImpulseResponse, NeedsItsModeAndReportsAsAMethod) {
    Bench bench;
    bench.KnowMode(tarnIR_2);
    EXPECT_RAISES(bench.driver.MeasureTdImpulseResponse(), 0x800407E0, "clsTarn4x.MeasureTdImpulseResponse",
                  "Wrong measurement mode selected");
    EXPECT_RAISES(bench.driver.get_ImpulseResponseDelay(1), 0x800407E0, "clsTarn4x.MeasureTdImpulseResponse",
                  "Wrong measurement mode selected");
    Bench failing;
    failing.KnowMode(tarnIR_1);
    failing.Expect({{EchoQuery, TransportFailure(2014)}});
    EXPECT_RAISES(failing.driver.MeasureTdImpulseResponse(), 0x800407D5, "clsTarn4x.MeasureTdImpulseResponse",
                  "MeasureTdImpulseResponse failed");
}

TEST(Carriers, AreWrittenTogether) {
    Bench bench;
    bench.KnowMode(tarnPAR);
    bench.Expect({Fft2k,
                  {CarrierQuery, "0,1704"},
                  {"SENSE:DVBT:CARRIER:START_STOP  100, 1704"},
                  Fft8k,
                  {CarrierQuery, "0,100"},
                  {"SENSE:DVBT:CARRIER:START_STOP  0, 6816"},
                  {"READ:DVBT:FFT:MODE?", "2K8K"},
                  {CarrierQuery, "0,9000"},
                  {"SENSE:DVBT:CARRIER:START_STOP -5, 9000"},
                  Fft8k,
                  Fft8k,
                  {"SENSE:DVBT:CARRIER:START_STOP  0, 6816"}});
    bench.driver.put_MeasureOfdmStartCarrier(100);
    bench.driver.put_MeasureOfdmStopCarrier(6816);
    bench.driver.put_MeasureOfdmStartCarrier(-5);  // an unknown FFT mode sets no bound
    bench.driver.MeasureOfdmCarrierRange(0, 6816);
}

TEST(Carriers, StayWithinTheirBounds) {
    const struct {
        const char* Answer;  // to the carrier query; nullptr: not asked
        const char* Fft;
        int Start, Stop;  // -1: not written
        const char* Text;
    } cases[] = {
        {nullptr, "2K", 1705, -1, "MeasureOfdmStartCarrier value out of range"},
        {"10,20", "2K", 21, -1, "MeasureOfdmStartCarrier value out of range"},
        {nullptr, "8K", -1, 6817, "MeasureOfdmStopCarrier value out of range"},
        {"10,20", "8K", -1, 9, "MeasureOfdmStopCarrier value out of range"},
    };
    for (const auto& c : cases) {
        Bench bench;
        bench.KnowMode(tarnCDI);
        bench.Expect({{"READ:DVBT:FFT:MODE?", c.Fft}});
        if (c.Answer != nullptr) bench.Expect({{CarrierQuery, c.Answer}});
        const auto name = std::string(c.Text).substr(0, std::string(c.Text).find(' '));
        EXPECT_RAISES(c.Stop < 0 ? bench.driver.put_MeasureOfdmStartCarrier(static_cast<std::int16_t>(c.Start))
                                 : bench.driver.put_MeasureOfdmStopCarrier(static_cast<std::int16_t>(c.Stop)),
                      0x8004017C, "clsTarn4x." + name, c.Text);
    }
    Bench bench;
    bench.KnowMode(tarnPOL);
    bench.Expect({Fft2k, Fft2k, Fft2k, Fft2k, Fft2k});
    EXPECT_RAISES(bench.driver.MeasureOfdmCarrierRange(1705, 1), 0x8004017C, "clsTarn4x.MeasureOfdmCarrierRange",
                  "intStart value out of range");
    EXPECT_RAISES(bench.driver.MeasureOfdmCarrierRange(1, 1705), 0x8004017C, "clsTarn4x.MeasureOfdmCarrierRange",
                  "intStop value out of range");
    EXPECT_RAISES(bench.driver.MeasureOfdmCarrierRange(2, 1), 0x8004017C, "clsTarn4x.MeasureOfdmCarrierRange",
                  "intStart value greater than intStop value");
}

TEST(Carriers, AreReadFromOneAnswer) {
    Bench bench;
    bench.KnowMode(tarnIQ);
    bench.Expect({{CarrierQuery, "\"10.5, 20.6\""},
                  {CarrierQuery, "10, 20.6"},
                  {CarrierQuery, "(none)"},
                  {CarrierQuery, ""},
                  {CarrierQuery, "7"}});
    EXPECT_EQ(bench.driver.get_MeasureOfdmStartCarrier(), 10);
    EXPECT_EQ(bench.driver.get_MeasureOfdmStopCarrier(), 21);
    EXPECT_RAISES(bench.driver.get_MeasureOfdmStartCarrier(), 0x8004017C, "clsTarn4x.MeasureOfdmStartCarrier",
                  "Device did not report a start carrier ((none))");
    EXPECT_RAISES(bench.driver.get_MeasureOfdmStopCarrier(), 0x8004017C, "clsTarn4x.MeasureOfdmStopCarrier",
                  "Device did  not report a stop carrier ()");
    EXPECT_RAISES(bench.driver.get_MeasureOfdmStopCarrier(), 0x800407D4, "clsTarn4x.MeasureOfdmStopCarrier",
                  "Get MeasureOfdmStopCarrier failed");
}

TEST(Carriers, BelongToTheConstellationModes) {
    for (int mode = tarnNORM; mode <= tarnCENV; ++mode) {
        Bench bench;
        bench.KnowMode(static_cast<TarnMeasureModes>(mode));
        const bool allowed = (mode >= tarnCDI && mode <= tarnPOL) || mode == tarnPAR;
        if (allowed) {
            bench.Expect({{CarrierQuery, "1,2"}});
            EXPECT_EQ(bench.driver.get_MeasureOfdmStopCarrier(), 2);
            continue;
        }
        const auto text = "Wrong measurement mode selected";
        const auto start = "clsTarn4x.MeasureOfdmStartCarrier";  // also for the stop carrier
        EXPECT_RAISES(bench.driver.get_MeasureOfdmStartCarrier(), 0x800407E0, start, text);
        EXPECT_RAISES(bench.driver.get_MeasureOfdmStopCarrier(), 0x800407E0, start, text);
        EXPECT_RAISES(bench.driver.put_MeasureOfdmStartCarrier(1), 0x800407E0, start, text);
        EXPECT_RAISES(bench.driver.put_MeasureOfdmStopCarrier(1), 0x800407E0, start, text);
        EXPECT_RAISES(bench.driver.MeasureOfdmCarrierRange(1, 2), 0x800407E0, "clsTarn4x.MeasureOfdmCarrierRange",
                      text);
        bench.world->Abort = true;
        bench.driver.put_MeasureOfdmStartCarrier(1);  // silently nothing
        bench.driver.put_MeasureOfdmStopCarrier(1);
    }
}

TEST(Spectrum, HasDetectorAndAveraging) {
    Bench bench;
    bench.KnowMode(tarnSP_3);
    bench.Expect({"SENS:DVBT:SPEC:DET MAX",
                  {"SENS:DVBT:SPEC:DET?", "RMS"},
                  "SENS:DVBT:SPEC:AVG OFF",
                  "SENS:DVBT:SPEC:AVG ON",
                  "SENS:DVBT:SPEC:AVG:COUN 999",
                  {"SENS:DVBT:SPEC:AVG?", "OFF"},
                  {"SENS:DVBT:SPEC:AVG?", "1"},
                  {"SENS:DVBT:SPEC:AVG:COUN?", "12.5"},
                  {"READ:DVBT:SPEC:AVG:COUN?", "3.5"}});
    bench.driver.put_MeasureFdSpectrumDetector(tarnMAX);
    EXPECT_EQ(bench.driver.get_MeasureFdSpectrumDetector(), tarnRMS);
    bench.driver.put_MeasureFdSpectrumAverageCount(0);
    bench.driver.put_MeasureFdSpectrumAverageCount(999);
    EXPECT_EQ(bench.driver.get_MeasureFdSpectrumAverageCount(), 0);
    EXPECT_EQ(bench.driver.get_MeasureFdSpectrumAverageCount(), 12);
    EXPECT_EQ(bench.driver.get_MeasureFdSpectrumAverage(), 4);
    for (const int value : {-1, 1000}) {
        EXPECT_RAISES(bench.driver.put_MeasureFdSpectrumAverageCount(static_cast<std::int16_t>(value)), 0x8004017C,
                      "clsTarn4x.MeasureFdSpectrumAverageCount", "MeasureFdSpectrumAverageCount value out of range");
    }
    EXPECT_RAISES(bench.driver.put_MeasureFdSpectrumDetector(static_cast<TarnFdSpectrumDetectors>(3)), 0x8004017C,
                  "clsTarn4x.MeasureFdSpectrumDetector", "MeasureFdSpectrumDetector value out of range");
}

TEST(Counters, NeedTheirModes) {
    Bench bench;
    bench.KnowMode(tarnCENV);
    bench.Expect({{"READ:DVBT:CRES:ACQ?", "100"}});
    EXPECT_EQ(bench.driver.get_MeasureTdCrestFactorAqu(), 100);
    const std::vector<std::pair<const char*, void (*)(clsTarn4x&)>> wrong = {
        {"MeasureFdSpectrumDetector", [](clsTarn4x& d) { d.get_MeasureFdSpectrumDetector(); }},
        {"MeasureFdSpectrumDetector", [](clsTarn4x& d) { d.put_MeasureFdSpectrumDetector(tarnMIN); }},
        {"MeasureFdSpectrumAverage", [](clsTarn4x& d) { d.get_MeasureFdSpectrumAverage(); }},
        {"MeasureFdSpectrumAverageCount", [](clsTarn4x& d) { d.get_MeasureFdSpectrumAverageCount(); }},
        {"MeasureFdSpectrumAverageCount", [](clsTarn4x& d) { d.put_MeasureFdSpectrumAverageCount(1); }},
    };
    for (const auto& [name, call] : wrong) {
        EXPECT_RAISES(call(bench.driver), 0x800407E0, std::string("clsTarn4x.") + name,
                      "Wrong measurement mode selected");
    }
    Bench spectrum;
    spectrum.KnowMode(tarnSP_1);
    EXPECT_RAISES(spectrum.driver.get_MeasureTdCrestFactorAqu(), 0x800407E0, "clsTarn4x.MeasureTdCrestFactorAqu",
                  "Wrong measurement mode selected");
}

}  // namespace
}  // namespace tarn4x::test
