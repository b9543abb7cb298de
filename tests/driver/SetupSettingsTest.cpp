#include <cmath>

#include "tests/driver/Bench.h"

using namespace tarn4x::test;

// On the wire in 10 kHz.
TEST(SpectrumSpan, IsBoundedByWhatTheNumbersOnTheWireStandFor) {
    const std::string stop = "SENS:DVBT:SPEC:FREQ:STOP? = 134.14";
    Bench bench(tarnSP_2);
    CHECK(bench, stop + " | SENS:DVBT:SPEC:FREQ:STAR 0.14", put_MeasureFdSpectrumStartFreq(1400.0), Done);
    CHECK(bench, stop, put_MeasureFdSpectrumStartFreq(1400.000001), OutOfRange("MeasureFdSpectrumStartFreq"));
    bench.world->Abort = true;  // leaves no bounds but that of being a number
    const std::string start = stop + " | SENS:DVBT:SPEC:FREQ:STAR ";
    CHECK(bench, start + "-123456789012.35", put_MeasureFdSpectrumStartFreq(-1234567890123450.0), Done);
    CHECK(bench, start + "-1.5E+15", put_MeasureFdSpectrumStartFreq(-1.5e19), Done);
    CHECK(bench, "SENS:DVBT:SPEC:FREQ:STAR? = 1", put_MeasureFdSpectrumStopFreq(std::nan("")),
          OutOfRange("MeasureFdSpectrumStopFreq"));
}
