#include "tests/driver/Bench.h"

using namespace tarn4x::test;

const std::string Rf = "ROUTE:ISELECT? = RF", Demod = "ROUTE:ISELECT? = DEM", If = "ROUTE:ISELECT? = IF";

/// A bench on the RF input whose options are known; bit 0 is TARN-B3, the impedance option.
struct InputBench : Bench {
    explicit InputBench(bool impedance) {
        const std::string mask = impedance ? "1" : "0", port = impedance ? " | INPUT:ATTENUATION:IMP? = O50" : "";
        CHECK(*this,
              Rf + " | READ:INFO:DATA? = " + mask +
                  " | *IDN? = VANTERRA,TARN,100,5.05 | SYSTEM:SERVICE:GET:BOARD:INFO? = 0x83" + port,
              get_InputPort(), impedance ? tarnReceiver50ohm : tarnReceiver);
    }
};

TEST(InputPort, IsReadWithItsImpedanceWhenTheOptionIsThere) {
    InputBench plain(false), option(true);
    CHECK(plain, Rf, get_InputPort(), tarnReceiver);
    CHECK(plain, Demod, get_InputPort(), tarnDemod);
    CHECK(plain, If, get_InputPort(), tarnIF);
    CHECK(plain, "ROUTE:ISELECT? = RF1", get_InputPort(), "+380 .InputPort: Invalid Property Value  (InputPort = RF1)");
    CHECK(option, Rf + " | INPUT:ATTENUATION:IMP? = O75", get_InputPort(), tarnReceiver75ohm);
    CHECK(option, Rf + " | INPUT:ATTENUATION:IMP? = O750", get_InputPort(),
          "+380 .InputPort: Invalid Property Value  (InputPort = O750)");
}

TEST(InputPort, IsWrittenWithItsImpedanceWhenTheOptionIsThere) {
    InputBench plain(false), option(true);
    CHECK(plain, "ROUT:ISEL RF", put_InputPort(tarnReceiver), Done);
    CHECK(plain, "ROUT:ISEL RF", put_InputPort(tarnReceiver75ohm), Done);
    EXPECT_THAT(plain.world->Delays, ElementsAre(1.0F, 1.0F));
    CHECK(option, "ROUT:ISEL RF", put_InputPort(tarnReceiver), Done);
    CHECK(option, "ROUT:ISEL DEM", put_InputPort(tarnDemod), Done);
    CHECK(option, "ROUT:ISEL IF", put_InputPort(tarnIF), Done);
    CHECK(option, "ROUT:ISEL RF | INP:ATT:IMP O50", put_InputPort(tarnReceiver50ohm), Done);
    CHECK(option, "ROUT:ISEL RF | INP:ATT:IMP O75", put_InputPort(tarnReceiver75ohm), Done);
    CHECK(option, "", put_InputPort(TarnInputPorts(3)), "+380 .InputPort: Invalid Property Value (InputPort = 3)");
    EXPECT_EQ(option.world->Delays, std::vector<float>(5, 1.0F));
}

TEST(InputAttenuation, AlwaysAsksForThePortFirst) {
    const std::string automatic = If + " | INPUT:ATTENUATION:AUTO? = ",
                      manual = If + " | INPUT:ATTENUATION:AUTO? = OFF | INPUT:ATTENUATION? = ",
                      unknown = "+380 .InputAttenuation_Receiver: Device reported an unrecognised attenuator setting ";
    InputBench bench(false);
    CHECK(bench, If + " | INPUT:ATTENUATION:AUTO ON", put_InputAttenuation(tarnAttenAuto), Done);
    CHECK(bench, If + " | INPUT:ATTENUATION:AUTO OFF | INPUT:ATTENUATION 7",
          put_InputAttenuation_Receiver(TarnInputAttenuations(7)), Done);
    CHECK(bench, automatic + "ON", get_InputAttenuation(), tarnAttenAuto);
    CHECK(bench, automatic + "0 | INPUT:ATTENUATION? = 35", get_InputAttenuation_Receiver(), tarnAtten35);
    CHECK(bench, manual + "\"12.5\"", get_InputAttenuation(), unknown + "(\"12.5\")");
    CHECK(bench, automatic + "10", get_InputAttenuation_Receiver(), unknown + "(10)");
    CHECK(bench, manual + "5 dB", get_InputAttenuation_Receiver(), GetFailed("InputAttenuation_Receiver"));
}

TEST(InputAttenuationValue, IsTheAttenuationInUse) {
    InputBench bench(false);
    CHECK(bench, Rf + " | INPUT:ATTENUATION? = 55", get_InputAttenuationValue(), tarnAtten55);
    CHECK(bench, Rf + " | INPUT:ATTENUATION? = 60 or 55", get_InputAttenuationValue_Receiver(),
          GetFailed("InputAttenuationValue_Receiver"));
}

TEST(InputAttenuationMode, HasItsOwnCommandsForEachReceiverPort) {
    const std::string receiver = Rf + " | INPUT:ATTENUATION:MODE ", fifty = Rf + " | INPUT:ATTENUATION:IMP? = O50",
                      invalid = "+380 .InputAttenuationMode_Receiver: Invalid Property Value (";
    InputBench plain(false), option(true);
    CHECK(plain, receiver + "LNO", put_InputAttenuationMode_Receiver(tarnRxAttenLoNoise), Done);
    CHECK(plain, receiver + "IGN", put_InputAttenuationMode_Receiver(tarnRxAttenNormal), Done);
    CHECK(plain, receiver + "LDIS", put_InputAttenuationMode_Receiver(tarnRxAttenLoDistn), Done);
    CHECK(plain, receiver + "LSD", put_InputAttenuationMode_Receiver(tarnRxAttenLowestDistn), Done);
    CHECK(plain, Rf, put_InputAttenuationMode_Receiver(TarnRxAttenModes(4)), invalid + "4)");
    CHECK(option, fifty + " | INP:ATT:REC LNO", put_InputAttenuationMode_Receiver(tarnRxAttenLoNoise), Done);
    CHECK(option, fifty + " | INP:ATT:REC NORM", put_InputAttenuationMode_Receiver(tarnRxAttenNormal), Done);
    CHECK(option, fifty + " | INP:ATT:REC LDIS", put_InputAttenuationMode_Receiver(tarnRxAttenLoDistn), Done);
    CHECK(option, fifty, put_InputAttenuationMode_Receiver(tarnRxAttenLowestDistn), invalid + "3)");
}

TEST(InputAttenuationMode, ReadsEitherSetOfWords) {
    const std::string member = "+380 .InputAttenuationMode_Receiver";
    InputBench plain(false), option(true);
    for (const auto& [mode, word] : Words("0=LNO | 1=IGN | 1=NORM | 2=LDIS | 3=LSD")) {
        CHECK(plain, Rf + " | INP:ATT:MODE? = " + word, get_InputAttenuationMode_Receiver(), mode);
    }
    CHECK(option, Rf + " | INPUT:ATTENUATION:IMP? = O75 | INP:ATT:REC? = HIGH", get_InputAttenuationMode_Receiver(),
          member + ": Device reported an unrecognised demod attenuator setting (HIGH)");
    option.world->Abort = true;  // lets nothing pass here
    CHECK(option, Demod, get_InputAttenuationMode_Receiver(),
          "+2018 .InputAttenuationMode_Receiver: Wrong input port selected");
}

TEST(DemodAttenuation, MapsItsWordsOnTheDemodulatorPort) {
    constexpr auto value = [](int number) { return TarnDemodAttenuations(number); };
    const std::string demod = Demod + " | INPUT:ATTENUATION:DEM", member = ".InputAttenuation_Demod";
    Bench bench;
    for (const auto& [number, word] : Words("1=AUTO | 2=MNLW | 3=MNLE | 4=MNHI")) {
        CHECK(bench, demod + ' ' + word, put_InputAttenuation_Demod(value(number)), Done);
        CHECK(bench, demod + "? = " + word, get_InputAttenuation_Demod(), number);
    }
    for (const int number : {0, 5}) {
        CHECK(bench, Demod, put_InputAttenuation_Demod(value(number)),
              "+380 " + member + ": Invalid Property Value (InputAttenuation_Demod = " + Text(number) + ")");
    }
    CHECK(bench, demod + "? = AUTO?", get_InputAttenuation_Demod(),
          "+380 " + member + ": Device reported an unrecognised demod attenuator setting (AUTO?)");
}

TEST(DemodAttenuationValue, NeedsItsFirmware) {
    const std::string member = ".InputAttenuationValue_Demod", query = Demod + " | INPUT:ATTENUATION:DEM:VAL? = ";
    Bench old, bench;
    CHECK(old, "*IDN? = VANTERRA,TARN,100,5.04", get_InputAttenuationValue_Demod(),
          "+2019 " + member + ": InputAttenuationValue_Demod is not supported by current firmware.");
    CHECK(bench, "*IDN? = VANTERRA,TARN,100,5.05 | " + query + "12", get_InputAttenuationValue_Demod(), 12);
    CHECK(bench, query + "3", get_InputAttenuationValue_Demod(),
          "+380 " + member + ": Device reported an unrecognised demod attenuator setting (3)");
}
