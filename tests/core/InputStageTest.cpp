#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

using testing::ElementsAre;

const Exchange Rf{"ROUTE:ISELECT?", "RF"}, Demod{"ROUTE:ISELECT?", "DEM"}, If{"ROUTE:ISELECT?", "IF"};

/// What it takes to learn the options once; bit 0 is TARN-B3.
std::vector<Exchange> Options(bool impedance) {
    return {{"READ:INFO:DATA?", impedance ? "1" : "0"},
            {"*IDN?", "VANTERRA,TARN,100,5.05"},
            {"SYSTEM:SERVICE:GET:BOARD:INFO?", "0x83"}};
}

/// A bench on the RF input whose options are known.
struct InputBench : Bench {
    explicit InputBench(bool impedance) {
        Expect({Rf});
        Expect(Options(impedance));
        if (impedance) Expect({{"INPUT:ATTENUATION:IMP?", "O50"}});
        EXPECT_EQ(driver.get_InputPort(), impedance ? tarnReceiver50ohm : tarnReceiver);
        world->Sent.clear();
    }
};

TEST(InputPort, IsReadWithItsImpedanceWhenTheOptionIsThere) {
    InputBench plain(false);
    plain.Expect({Rf, Demod, If, {"ROUTE:ISELECT?", "RF1"}});
    EXPECT_EQ(plain.driver.get_InputPort(), tarnReceiver);
    EXPECT_EQ(plain.driver.get_InputPort(), tarnDemod);
    EXPECT_EQ(plain.driver.get_InputPort(), tarnIF);
    EXPECT_RAISES(plain.driver.get_InputPort(), 0x8004017C, "clsTarn4x.InputPort",
                  "Invalid Property Value  (InputPort = RF1)");
    InputBench option(true);
    option.Expect({Rf, {"INPUT:ATTENUATION:IMP?", "O75"}, Rf, {"INPUT:ATTENUATION:IMP?", "O750"}});
    EXPECT_EQ(option.driver.get_InputPort(), tarnReceiver75ohm);
    EXPECT_RAISES(option.driver.get_InputPort(), 0x8004017C, "clsTarn4x.InputPort",
                  "Invalid Property Value  (InputPort = O750)");
}

TEST(InputPort, IsWrittenWithItsImpedanceWhenTheOptionIsThere) {
    const struct {
        bool Impedance;
        TarnInputPorts Port;
        std::vector<Exchange> Sent;
    } cases[] = {
        {false, tarnReceiver, {"ROUT:ISEL RF"}},
        {false, tarnReceiver75ohm, {"ROUT:ISEL RF"}},
        {true, tarnReceiver, {"ROUT:ISEL RF"}},
        {true, tarnDemod, {"ROUT:ISEL DEM"}},
        {true, tarnIF, {"ROUT:ISEL IF"}},
        {true, tarnReceiver50ohm, {"ROUT:ISEL RF", "INP:ATT:IMP O50"}},
        {true, tarnReceiver75ohm, {"ROUT:ISEL RF", "INP:ATT:IMP O75"}},
    };
    for (const auto& c : cases) {
        InputBench bench(c.Impedance);
        bench.Expect(c.Sent);
        bench.driver.put_InputPort(c.Port);
        EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
    }
    Bench bench;
    EXPECT_RAISES(bench.driver.put_InputPort(static_cast<TarnInputPorts>(3)), 0x8004017C, "clsTarn4x.InputPort",
                  "Invalid Property Value (InputPort = 3)");
}

TEST(InputAttenuation, AlwaysAsksForThePortFirst) {
    InputBench bench(false);
    bench.Expect({If,
                  {"INPUT:ATTENUATION:AUTO ON"},
                  If,
                  {"INPUT:ATTENUATION:AUTO OFF"},
                  {"INPUT:ATTENUATION 7"},
                  If,
                  {"INPUT:ATTENUATION:AUTO?", "ON"},
                  If,
                  {"INPUT:ATTENUATION:AUTO?", "0"},
                  {"INPUT:ATTENUATION?", "35"},
                  If,
                  {"INPUT:ATTENUATION:AUTO?", "OFF"},
                  {"INPUT:ATTENUATION?", "\"12.5\""},
                  If,
                  {"INPUT:ATTENUATION:AUTO?", "10"},
                  If,
                  {"INPUT:ATTENUATION:AUTO?", "OFF"},
                  {"INPUT:ATTENUATION?", "5 dB"}});
    bench.driver.put_InputAttenuation(tarnAttenAuto);
    bench.driver.put_InputAttenuation_Receiver(static_cast<TarnInputAttenuations>(7));
    EXPECT_EQ(bench.driver.get_InputAttenuation(), tarnAttenAuto);
    EXPECT_EQ(bench.driver.get_InputAttenuation_Receiver(), tarnAtten35);
    EXPECT_RAISES(bench.driver.get_InputAttenuation(), 0x8004017C, "clsTarn4x.InputAttenuation_Receiver",
                  "Device reported an unrecognised attenuator setting (\"12.5\")");
    EXPECT_RAISES(bench.driver.get_InputAttenuation_Receiver(), 0x8004017C, "clsTarn4x.InputAttenuation_Receiver",
                  "Device reported an unrecognised attenuator setting (10)");
    EXPECT_RAISES(bench.driver.get_InputAttenuation_Receiver(), 0x800407D4, "clsTarn4x.InputAttenuation_Receiver",
                  "Get InputAttenuation_Receiver failed");
}

TEST(InputAttenuationValue, IsTheAttenuationInUse) {
    InputBench bench(false);
    bench.Expect({Rf, {"INPUT:ATTENUATION?", "55"}, Rf, {"INPUT:ATTENUATION?", "60 or 55"}, Demod});
    EXPECT_EQ(bench.driver.get_InputAttenuationValue(), tarnAtten55);
    EXPECT_RAISES(bench.driver.get_InputAttenuationValue_Receiver(), 0x800407D4,
                  "clsTarn4x.InputAttenuationValue_Receiver", "Get InputAttenuationValue_Receiver failed");
    EXPECT_RAISES(bench.driver.get_InputAttenuationValue_Receiver(), 0x800407E2,
                  "clsTarn4x.InputAttenuationValue_Receiver", "Wrong input port selected");
}

TEST(InputAttenuationMode, HasItsOwnCommandsForEachReceiverPort) {
    const struct {
        bool Impedance;
        int Mode;
        const char* Sent;  // nullptr: refused
    } cases[] = {
        {false, 0, "INPUT:ATTENUATION:MODE LNO"},
        {false, 1, "INPUT:ATTENUATION:MODE IGN"},
        {false, 2, "INPUT:ATTENUATION:MODE LDIS"},
        {false, 3, "INPUT:ATTENUATION:MODE LSD"},
        {false, 4, nullptr},
        {true, 0, "INP:ATT:REC LNO"},
        {true, 1, "INP:ATT:REC NORM"},
        {true, 2, "INP:ATT:REC LDIS"},
        {true, 3, nullptr},
    };
    for (const auto& c : cases) {
        InputBench bench(c.Impedance);
        bench.Expect({Rf});
        if (c.Impedance) bench.Expect({{"INPUT:ATTENUATION:IMP?", "O50"}});
        if (c.Sent != nullptr) bench.Expect({c.Sent});
        const auto raised =
            Raised([&] { bench.driver.put_InputAttenuationMode_Receiver(static_cast<TarnRxAttenModes>(c.Mode)); });
        if (c.Sent != nullptr) continue;
        EXPECT_EQ(raised.Number, static_cast<std::int32_t>(0x8004017C));
        EXPECT_EQ(raised.Source, "clsTarn4x.InputAttenuationMode_Receiver");
        EXPECT_EQ(raised.Description, "Invalid Property Value (" + std::to_string(c.Mode) + ")");
    }
}

TEST(InputAttenuationMode, ReadsEitherSetOfWords) {
    const struct {
        const char* Answer;
        int Mode;
    } answers[] = {{"LNO", 0}, {"IGN", 1}, {"NORM", 1}, {"LDIS", 2}, {"LSD", 3}};
    for (const auto& a : answers) {
        InputBench bench(false);
        bench.Expect({Rf, {"INP:ATT:MODE?", a.Answer}});
        EXPECT_EQ(bench.driver.get_InputAttenuationMode_Receiver(), a.Mode);
    }
    InputBench bench(true);
    bench.Expect({Rf, {"INPUT:ATTENUATION:IMP?", "O75"}, {"INP:ATT:REC?", "HIGH"}, Demod});
    EXPECT_RAISES(bench.driver.get_InputAttenuationMode_Receiver(), 0x8004017C,
                  "clsTarn4x.InputAttenuationMode_Receiver",
                  "Device reported an unrecognised demod attenuator setting (HIGH)");
    bench.world->Abort = true;  // lets nothing pass here
    EXPECT_RAISES(bench.driver.get_InputAttenuationMode_Receiver(), 0x800407E2,
                  "clsTarn4x.InputAttenuationMode_Receiver", "Wrong input port selected");
}

TEST(DemodAttenuation, MapsItsWordsOnTheDemodulatorPort) {
    const struct {
        int Value;
        const char* Word;
    } words[] = {{1, "AUTO"}, {2, "MNLW"}, {3, "MNLE"}, {4, "MNHI"}};
    for (const auto& w : words) {
        Bench bench{
            {Demod, {std::string("INPUT:ATTENUATION:DEM ") + w.Word}, Demod, {"INPUT:ATTENUATION:DEM?", w.Word}}};
        bench.driver.put_InputAttenuation_Demod(static_cast<TarnDemodAttenuations>(w.Value));
        EXPECT_EQ(bench.driver.get_InputAttenuation_Demod(), w.Value);
    }
    Bench bench{{Demod, Demod, Demod, {"INPUT:ATTENUATION:DEM?", "AUTO?"}, If, If}};
    for (const int value : {0, 5}) {
        EXPECT_RAISES(bench.driver.put_InputAttenuation_Demod(static_cast<TarnDemodAttenuations>(value)), 0x8004017C,
                      "clsTarn4x.InputAttenuation_Demod",
                      "Invalid Property Value (InputAttenuation_Demod = " + std::to_string(value) + ")");
    }
    EXPECT_RAISES(bench.driver.get_InputAttenuation_Demod(), 0x8004017C, "clsTarn4x.InputAttenuation_Demod",
                  "Device reported an unrecognised demod attenuator setting (AUTO?)");
    EXPECT_RAISES(bench.driver.get_InputAttenuation_Demod(), 0x800407E2, "clsTarn4x.InputAttenuation_Demod",
                  "Wrong input port selected");
    EXPECT_RAISES(bench.driver.put_InputAttenuation_Demod(tarnDemodAttenAuto), 0x800407E2,
                  "clsTarn4x.InputAttenuation_Demod", "Wrong input port selected");
}

TEST(DemodAttenuationValue, NeedsItsFirmware) {
    Bench old{{{"*IDN?", "VANTERRA,TARN,100,5.04"}}};
    EXPECT_RAISES(old.driver.get_InputAttenuationValue_Demod(), 0x800407E3, "clsTarn4x.InputAttenuationValue_Demod",
                  "InputAttenuationValue_Demod is not supported by current firmware.");
    Bench bench{{{"*IDN?", "VANTERRA,TARN,100,5.05"},
                 Demod,
                 {"INPUT:ATTENUATION:DEM:VAL?", "12"},
                 Demod,
                 {"INPUT:ATTENUATION:DEM:VAL?", "3"},
                 If}};
    EXPECT_EQ(bench.driver.get_InputAttenuationValue_Demod(), tarnDAVAutoHigh);
    EXPECT_RAISES(bench.driver.get_InputAttenuationValue_Demod(), 0x8004017C, "clsTarn4x.InputAttenuationValue_Demod",
                  "Device reported an unrecognised demod attenuator setting (3)");
    EXPECT_RAISES(bench.driver.get_InputAttenuationValue_Demod(), 0x800407E2, "clsTarn4x.InputAttenuationValue_Demod",
                  "Wrong input port selected");
}

}  // namespace
}  // namespace tarn4x::test
