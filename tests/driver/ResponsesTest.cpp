#include "tests/driver/Bench.h"

using namespace tarn4x::test;

const std::string Echo = "READ:DVBT:IRESPONSE:PEAK? = ", Carriers = "SENSE:DVBT:CARRIER:START_STOP",
                  Fft2k = "READ:DVBT:FFT:MODE? = 2K", Fft8k = "READ:DVBT:FFT:MODE? = 8K";

TEST(FrequencyResponse, ReadsOneNumberOfThePair) {
    const std::string query = "READ:DVBT:AMPL_PHAS_GD:VALUE? = ", pair = query + "1.5 | " + query + "1.5,-3.2";
    Bench phase(tarnAPH), delay(tarnAGD);
    CHECK(phase, pair, get_MeasureFdAmplitudeResponse(), 1.5);  // the first answer has no second number
    CHECK(phase, pair, get_MeasureFdPhaseResponse(), -3.2);
    CHECK(phase, "", get_MeasureFdGroupDelayResponse(), WrongMode("MeasureFdGroupDelayResponse"));
    CHECK(delay, pair, get_MeasureFdAmplitudeResponse(), 1.5);
    CHECK(delay, pair, get_MeasureFdGroupDelayResponse(), -3.2);
    CHECK(delay, "", get_MeasureFdPhaseResponse(), WrongMode("MeasureFdPhaseResponse"));
    CHECK(phase, "10 x " + query + "7 dB", get_MeasureFdPhaseResponse(),
          "+2004 .MeasureFdPhaseResponse: Invalid TARN response string (7 dB)");
    EXPECT_EQ(phase.world->Delays, std::vector<float>(2 + 9, 1.0F));
}

std::string Echoes(int items) {  // the third is empty
    std::string text = "\"";
    for (int i = 0; i < items; ++i) text += (i == 0 ? "" : ",") + (i == 2 ? "" : ' ' + std::to_string(i) + ".5 ");
    return text + '"';
}

TEST(ImpulseResponse, IsMeasuredOnceAndReadByEcho) {
    Bench bench(tarnIR_1);
    CHECK(bench, Echo + Echoes(50), get_ImpulseResponseAtten(1), 0.5);
    CHECK(bench, "", get_ImpulseResponseDelay(1), 1.5);
    EXPECT_EQ(bench->get_Prefix(), "");
    CHECK(bench, "", get_ImpulseResponseDelay(25), 49.5);
    CHECK(bench, "", get_ImpulseResponseAtten(2), 0);  // the item is empty
    EXPECT_EQ(bench->get_Prefix(), "---");
    for (const auto index : {std::int16_t{0}, std::int16_t{26}, std::int16_t{-1}}) {
        CHECK(bench, "", get_ImpulseResponseAtten(index),
              "+2004 .ImpulseResponseAtten: Get ImpulseResponseAtten: index value out of range");
    }
    CHECK(bench, "", get_ImpulseResponseDelay(26),
          "+2004 .ImpulseResponseDelay: Get ImpulseResponseDelay: index value out of range");
}

TEST(ImpulseResponse, IsAskedForOnlyOnce) {
    Bench bench(tarnIR_1);
    CHECK(bench, Echo + "---", MeasureTdImpulseResponse(), Done);
    CHECK(bench, Echo + Echoes(49), MeasureTdImpulseResponse(), Done);
    CHECK(bench, "", get_ImpulseResponseAtten(25), 0);  // 49 items are too few
    EXPECT_EQ(bench->get_Prefix(), "---");
    CHECK(bench, "READ:DVBT:IRESPONSE:PEAK? ! 2015", MeasureTdImpulseResponse(), Done);
    // Other queries are repeated as before.
    CHECK(bench, "READ:RF:LEVEL? = --- | READ:RF:LEVEL? = 1", get_MeasureRfLevel(), 1);
}

TEST(Carriers, AreWrittenTogether) {
    const std::string unbounded = "READ:DVBT:FFT:MODE? = 2K8K";  // an unknown FFT mode sets no bound
    Bench bench(tarnPAR);
    CHECK(bench, Fft2k + " | " + Carriers + "? = 0,1704 | " + Carriers + "  100, 1704",
          put_MeasureOfdmStartCarrier(100), Done);
    CHECK(bench, Fft8k + " | " + Carriers + "? = 0,100 | " + Carriers + "  0, 6816", put_MeasureOfdmStopCarrier(6816),
          Done);
    CHECK(bench, unbounded + " | " + Carriers + "? = 0,9000 | " + Carriers + " -5, 9000",
          put_MeasureOfdmStartCarrier(-5), Done);
    CHECK(bench, Fft8k + " | " + Carriers + "  0, 6816", MeasureOfdmCarrierRange(0, 6816), Done);
    CHECK(bench, Fft8k + " | " + Carriers + "  7, 7", MeasureOfdmCarrierRange(7, 7), Done);
}

TEST(Carriers, StayWithinTheirBounds) {
    const auto answer = " | " + Carriers + "? = 10,20";
    const std::string start = OutOfRange("MeasureOfdmStartCarrier"), stop = OutOfRange("MeasureOfdmStopCarrier"),
                      range = "+380 .MeasureOfdmCarrierRange: ";
    Bench bench(tarnCDI);
    CHECK(bench, Fft2k, put_MeasureOfdmStartCarrier(1705), start);
    CHECK(bench, Fft2k + answer, put_MeasureOfdmStartCarrier(21), start);
    CHECK(bench, Fft8k, put_MeasureOfdmStopCarrier(6817), stop);
    CHECK(bench, Fft8k + answer, put_MeasureOfdmStopCarrier(9), stop);
    CHECK(bench, Fft2k, MeasureOfdmCarrierRange(1705, 1), range + "intStart value out of range");
    CHECK(bench, Fft2k, MeasureOfdmCarrierRange(1, 1705), range + "intStop value out of range");
    CHECK(bench, Fft2k, MeasureOfdmCarrierRange(2, 1), range + "intStart value greater than intStop value");
}

TEST(Carriers, AreReadFromOneAnswer) {
    Bench bench(tarnIQ);
    CHECK(bench, Carriers + "? = \"10.5, 20.6\"", get_MeasureOfdmStartCarrier(), 10);
    CHECK(bench, Carriers + "? = 10, 20.6", get_MeasureOfdmStopCarrier(), 21);
    CHECK(bench, Carriers + "? = (none)", get_MeasureOfdmStartCarrier(),
          "+380 .MeasureOfdmStartCarrier: Device did not report a start carrier ((none))");
    CHECK(bench, Carriers + "?", get_MeasureOfdmStopCarrier(),
          "+380 .MeasureOfdmStopCarrier: Device did  not report a stop carrier ()");
    CHECK(bench, Carriers + "? = 7", get_MeasureOfdmStopCarrier(), GetFailed("MeasureOfdmStopCarrier"));
}

TEST(Carriers, BelongToTheConstellationModes) {
    for (int mode = tarnNORM; mode <= tarnCENV; ++mode) {
        Bench bench{TarnMeasureModes(mode)};
        if ((mode >= tarnCDI && mode <= tarnPOL) || mode == tarnPAR) {
            CHECK(bench, Carriers + "? = 1,2", get_MeasureOfdmStopCarrier(), 2);
            continue;
        }
        const auto wrong = WrongMode("MeasureOfdmStartCarrier");  // also of the stop carrier
        CHECK(bench, "", get_MeasureOfdmStopCarrier(), wrong);
        CHECK(bench, "", put_MeasureOfdmStartCarrier(1), wrong);
        bench.world->Abort = true;
        CHECK(bench, "", put_MeasureOfdmStartCarrier(1), Done);  // silently nothing
        CHECK(bench, "", put_MeasureOfdmStopCarrier(1), Done);
    }
}

TEST(Spectrum, HasDetectorAndAveraging) {
    const std::string average = "SENS:DVBT:SPEC:AVG", count = OutOfRange("MeasureFdSpectrumAverageCount");
    Bench bench(tarnSP_3), crest(tarnCENV);
    CHECK(crest, "READ:DVBT:CRES:ACQ? = 100", get_MeasureTdCrestFactorAqu(), 100);
    CHECK(crest, "", get_MeasureFdSpectrumDetector(), WrongMode("MeasureFdSpectrumDetector"));
    CHECK(bench, "SENS:DVBT:SPEC:DET MAX", put_MeasureFdSpectrumDetector(tarnMAX), Done);
    CHECK(bench, "SENS:DVBT:SPEC:DET? = RMS", get_MeasureFdSpectrumDetector(), tarnRMS);
    CHECK(bench, "", put_MeasureFdSpectrumDetector(TarnFdSpectrumDetectors(3)),
          OutOfRange("MeasureFdSpectrumDetector"));
    CHECK(bench, average + " OFF", put_MeasureFdSpectrumAverageCount(0), Done);
    CHECK(bench, average + " ON | " + average + ":COUN 999", put_MeasureFdSpectrumAverageCount(999), Done);
    CHECK(bench, "", put_MeasureFdSpectrumAverageCount(-1), count);
    CHECK(bench, "", put_MeasureFdSpectrumAverageCount(1000), count);
    CHECK(bench, average + "? = OFF", get_MeasureFdSpectrumAverageCount(), 0);
    CHECK(bench, average + "? = 1 | " + average + ":COUN? = 12.5", get_MeasureFdSpectrumAverageCount(), 12);
    CHECK(bench, "READ:DVBT:SPEC:AVG:COUN? = 3.5", get_MeasureFdSpectrumAverage(), 4);
}
