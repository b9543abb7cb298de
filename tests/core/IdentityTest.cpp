#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

const Exchange Identification{"*IDN?", "VANTERRA,TARN,100123,5.10"};
constexpr auto BoardQuery = "SYSTEM:SERVICE:GET:BOARD:INFO?";

TEST(Identity, IsReadOnceAndSplit) {
    Bench bench{{Identification}};
    EXPECT_EQ(bench.driver.get_Identity(), "VANTERRA,TARN,100123,5.10");
    EXPECT_EQ(bench.driver.get_Manufacturer(), "VANTERRA");
    EXPECT_EQ(bench.driver.get_IDriverIdentify_ModelNumber(), "TARN");
    EXPECT_EQ(bench.driver.get_SerialNumber(), "100123");
    EXPECT_EQ(bench.driver.get_FirmwareVersion(), "5.10");
    bench.Expect({{"SYST:MODE DVBT"}, {"*IDN?", "\"VANTERRA,TARN\""}});
    bench.driver.put_Mode(tarnDVBT);
    EXPECT_EQ(bench.driver.get_ModelNumber(), "TARN");
    EXPECT_EQ(bench.driver.get_SerialNumber(), "") << "fewer fields";
}

TEST(Identity, ReportsFailuresWithTheSourceOfTheInterface) {
    Bench bench{{{"*IDN?", TransportFailure(2011)},
                 {"*IDN?", TransportFailure(2014)},
                 {"*IDN?", TransportFailure(2011)},
                 {"READ:INFO:DATA?", TransportFailure(2011)}}};
    EXPECT_RAISES(bench.driver.get_Identity(), 0x800407D4, "clsTarn4x.Identity",
                  "Get Identity failed.  Error : 0,\"No error\"");
    EXPECT_RAISES(bench.driver.get_Identity(), 0x800407D4, "clsTarn4x.Identity", "Get Identity failed");
    EXPECT_RAISES(bench.driver.get_SerialNumber(), 0x800407D4, "clsTarn4x.IDriverIdentify_SerialNumber",
                  "Get SerialNumber failed");
    EXPECT_RAISES(bench.driver.get_InstalledHardware(), 0x800407D4, "clsTarn4x.IDriverIdentify_InstalledHardware",
                  "Get InstalledHardware failed");
}

TEST(Identity, CachesNothingWhenTheUserAsksToStop) {
    Bench bench{{Identification, {"READ:INFO:DATA?", "33"}, Identification}};
    bench.world->Abort = true;
    EXPECT_EQ(bench.driver.get_Identity(), "");
    EXPECT_EQ(bench.driver.get_InstalledHardware(), "");
    bench.world->Abort = false;
    EXPECT_EQ(bench.driver.get_Manufacturer(), "VANTERRA");
}

TEST(InstalledHardware, ComesFromTheMaskAndTheBoards) {
    const struct {
        const char *Mask, *Boards, *Options;
    } cases[] = {
        {"33", "0x83 none", "TARN-B1,TARN-B3"},
        {"0", "0x84", ""},
        {"65536", "0x83", "EXTMEM"},
        {"8323072", "0x83", "EXTMEM"},
        {"32 (mask)", "0x83 6.0 8.0;0x84 7.0", "TARN-B13,TARN-B11,TARN-B1"},
        {"0", "0x82 6.0;0x84 7.0;0x85 8.0", "TARN-B12"},
        {"0", "x 6.0 0x83 7.0 0x84 8.0", "TARN-B13,TARN-B12"},
        {"62914560", "0x83", "EXTREF,TARN-K25,EXTMEM"},  // bits 22 to 25: 22 is memory, 23 nothing
        {"1023", "0x83", "TARN-B5,TARN-B8,TARN-B6,TARN-B4,TARN-B1,TARN-B2,AD,RB,EAMOD,TARN-B3"},
        {"64512", "0x83", "TARN-K23,TARN-K22,TARN-K21,TARN-B20,TARN-B7,TARN-B10"},
    };
    for (const auto& c : cases) {
        Bench bench{{{"READ:INFO:DATA?", c.Mask}, Identification, {BoardQuery, c.Boards}}};
        EXPECT_EQ(bench.driver.get_InstalledHardware(), c.Options) << c.Mask;
        EXPECT_EQ(bench.driver.get_InstalledHardware(), c.Options) << "cached";
    }
}

TEST(InstalledHardware, TriesTheFiltersWhereNoBoardTells) {
    const auto probe = std::vector<Exchange>{{"SENSE:DVBT:FILTER:SAW?", "OFF"},
                                             {"SENSE:DVBT:FILTER:SAW MHZ6"},
                                             {"SENSE:DVBT:FILTER:SAW?", "MHZ6"},
                                             {"SENSE:DVBT:FILTER:SAW MHZ7", TransportFailure(2010)},
                                             {"SENSE:DVBT:FILTER:SAW?", TransportFailure(2014)},
                                             {"SENSE:DVBT:FILTER:SAW MHZ8", TransportFailure(2014)},
                                             {"SENSE:DVBT:FILTER:SAW?", "MHZ8"},
                                             {"SENSE:DVBT:FILTER:SAW OFF"}};
    Bench old{{{"READ:INFO:DATA?", "16"}, {"*IDN?", "VANTERRA,TARN,1,4.99"}}};
    old.Expect(probe);
    EXPECT_EQ(old.driver.get_InstalledHardware(), "TARN-B13,TARN-B11,TARN-B2");
    Bench boardless{{{"READ:INFO:DATA?", "0"}, Identification, {BoardQuery, "0X83 6.0"}}};
    boardless.Expect(probe);
    EXPECT_EQ(boardless.driver.get_InstalledHardware(), "TARN-B13,TARN-B11");
}

}  // namespace
}  // namespace tarn4x::test
