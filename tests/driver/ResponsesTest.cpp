#include "tests/driver/Bench.h"

using namespace tarn4x::test;

const std::string Echo = "READ:DVBT:IRESPONSE:PEAK? = ", Carriers = "SENSE:DVBT:CARRIER:START_STOP";

TEST(FrequencyResponse, IsAskedForUntilItHasTwoNumbers) {
    const std::string query = "READ:DVBT:AMPL_PHAS_GD:VALUE? = ";
    Bench bench(tarnAPH);
    CHECK(bench, query + "(est) | 8 x " + query + "<1 | " + query + "1.5,-3.2", get_MeasureFdPhaseResponse(), -3.2);
    CHECK(bench, "10 x " + query + "7 dB", get_MeasureFdPhaseResponse(),
          "+2004 .MeasureFdPhaseResponse: Invalid TARN response string (7 dB)");
    EXPECT_EQ(bench.world->Delays, std::vector<float>(9 + 9, 1.0F));
    bench.world->AbortAfterSending = bench.world->Sent + 2;
    CHECK(bench, query + "<1 | " + query + "<1,2", get_MeasureFdAmplitudeResponse(), 0);
    EXPECT_EQ(bench->get_Prefix(), "---");
}

std::string Echoes(int items) {  // the third is empty
    std::string text = "\"";
    for (int i = 0; i < items; ++i) text += (i == 0 ? "" : ",") + (i == 2 ? "" : ' ' + std::to_string(i) + ".5 ");
    return text + '"';
}

TEST(ImpulseResponse, IsMeasuredOnceAndReadByEcho) {
    const std::string refused = ": index value out of range";
    Bench bench(tarnIR_1);
    CHECK(bench, Echo + Echoes(50), get_ImpulseResponseAtten(1), 0.5);
    CHECK(bench, "", get_ImpulseResponseDelay(1), 1.5);
    EXPECT_EQ(bench->get_Prefix(), "");
    CHECK(bench, "", get_ImpulseResponseDelay(25), 49.5);
    CHECK(bench, "", get_ImpulseResponseAtten(2), 0);  // the item is empty
    EXPECT_EQ(bench->get_Prefix(), "---");
    CHECK(bench, "", get_ImpulseResponseAtten(0), "+2004 .ImpulseResponseAtten: Get ImpulseResponseAtten" + refused);
    CHECK(bench, "", get_ImpulseResponseDelay(26), "+2004 .ImpulseResponseDelay: Get ImpulseResponseDelay" + refused);
    CHECK(bench, Echo + Echoes(49), MeasureTdImpulseResponse(), Done);  // too few
    CHECK(bench, "", get_ImpulseResponseAtten(1), 0);
    // The query is sent once, however it ends; others are repeated as before.
    CHECK(bench, "READ:DVBT:IRESPONSE:PEAK? ! 2015", MeasureTdImpulseResponse(), Done);
    CHECK(bench, "READ:RF:LEVEL? = --- | READ:RF:LEVEL? = 1", get_MeasureRfLevel(), 1);
}

TEST(Carriers, StayWithinTheBoundsOfTheFftMode) {
    const std::string fft = "READ:DVBT:FFT:MODE? = ", now = "K | " + Carriers + "? = 10,6816",
                      start = OutOfRange("MeasureOfdmStartCarrier"), stop = OutOfRange("MeasureOfdmStopCarrier"),
                      range = "+380 .MeasureOfdmCarrierRange: ";
    Bench bench(tarnCDI);
    CHECK(bench, fft + "2K", put_MeasureOfdmStartCarrier(1705), start);
    CHECK(bench, fft + "8K", put_MeasureOfdmStopCarrier(6817), stop);
    CHECK(bench, fft + "8K", put_MeasureOfdmStopCarrier(-1), stop);
    CHECK(bench, fft + "8" + now + " | " + Carriers + "  10, 6816", put_MeasureOfdmStopCarrier(6816), Done);
    CHECK(bench, fft + "8" + now, put_MeasureOfdmStopCarrier(9), stop);
    CHECK(bench, fft + "2K | " + Carriers + "? = 10,20", put_MeasureOfdmStartCarrier(21), start);
    CHECK(bench, fft + "2K8" + now + " | " + Carriers + " -5, 6816", put_MeasureOfdmStartCarrier(-5), Done);  // unknown
    CHECK(bench, fft + "2K", MeasureOfdmCarrierRange(1705, 1), range + "intStart value out of range");
    CHECK(bench, fft + "2K", MeasureOfdmCarrierRange(1, 1705), range + "intStop value out of range");
    CHECK(bench, fft + "2K", MeasureOfdmCarrierRange(2, 1), range + "intStart value greater than intStop value");
    CHECK(bench, fft + "2K | " + Carriers + "  7, 7", MeasureOfdmCarrierRange(7, 7), Done);
}
