#include "tests/driver/Bench.h"

using namespace tarn4x::test;

TEST(StatusOfdmCodeRate, IsThatOfOnePriority) {
    const std::string manual = "SENSE:DVBT:CODE:RATE:MODE? = MAN", low = manual + " | SENSE:DVBT:CODE:RATE:LP";
    Bench bench;
    CHECK(bench, low + " 3,4", put_StatusOfdmCodeRate(tarnLow, tarn3_4), Done);
    CHECK(bench, low + "? = 3,4", get_StatusOfdmCodeRate(tarnLow), tarn3_4);
    const auto refused = "+380 .StatusOfdmCodeRate: udtPriority value out of range";
    CHECK(bench, manual, get_StatusOfdmCodeRate(TarnStatusHierarchicalModes(-1)), refused);
    CHECK(bench, manual, put_StatusOfdmCodeRate(TarnStatusHierarchicalModes(2), tarnCrUnknown), refused);
}
