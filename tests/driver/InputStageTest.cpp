#include "tests/driver/Bench.h"

using namespace tarn4x::test;

const std::string Rf = "ROUTE:ISELECT? = RF", Impedance = Rf + " | INPUT:ATTENUATION:IMP? = ";

TEST(InputPort, HasAnImpedanceWhereTheOptionIs) {
    Bench bench;
    bench.LearnOptions("1");
    CHECK(bench, "ROUT:ISEL RF", put_InputPort(tarnReceiver), Done);
    CHECK(bench, "ROUT:ISEL RF | INP:ATT:IMP O50", put_InputPort(tarnReceiver50ohm), Done);
    CHECK(bench, "ROUT:ISEL RF | INP:ATT:IMP O75", put_InputPort(tarnReceiver75ohm), Done);
    EXPECT_EQ(bench.world->Delays, std::vector<float>(3, 1.0F));
    CHECK(bench, Impedance + "O50", get_InputPort(), tarnReceiver50ohm);
    CHECK(bench, Impedance + "O75", get_InputPort(), tarnReceiver75ohm);
    CHECK(bench, Impedance + "O750", get_InputPort(), "+380 .InputPort: Invalid Property Value  (InputPort = O750)");
}

TEST(InputAttenuationMode, HasItsOwnCommandsForThePortsWithImpedance) {
    const std::string ohms = Impedance + "O50 | INP:ATT:REC";
    Bench bench;
    bench.LearnOptions("1");
    CHECK(bench, ohms + " LNO", put_InputAttenuationMode_Receiver(tarnRxAttenLoNoise), Done);
    CHECK(bench, ohms + " NORM", put_InputAttenuationMode_Receiver(tarnRxAttenNormal), Done);
    CHECK(bench, ohms + " LDIS", put_InputAttenuationMode_Receiver(tarnRxAttenLoDistn), Done);
    CHECK(bench, Impedance + "O50", put_InputAttenuationMode_Receiver(tarnRxAttenLowestDistn),
          "+380 .InputAttenuationMode_Receiver: Invalid Property Value (3)");
    CHECK(bench, ohms + "? = NORM", get_InputAttenuationMode_Receiver(), tarnRxAttenNormal);
}

TEST(InputAttenuationValue, OfTheDemodulatorNeedsItsFirmware) {
    Bench bench("*IDN? = VANTERRA,TARN,100123,5.04 | READ:RF:LEVEL? = <1");
    bench->get_FirmwareVersion();
    bench->get_MeasureRfLevel();
    CHECK(bench, "", get_InputAttenuationValue_Demod(),
          "+2019 .InputAttenuationValue_Demod: InputAttenuationValue_Demod is not supported by current firmware.");
    EXPECT_EQ(bench->get_Prefix(), "---");
}
