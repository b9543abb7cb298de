#include "tests/driver/Bench.h"

using namespace tarn4x::test;

const std::string Identification = "*IDN? = VANTERRA,TARN,100123,5.10",
                  Mask = "READ:INFO:DATA? = ", Boards = "SYSTEM:SERVICE:GET:BOARD:INFO? = ";

TEST(Identity, IsReadOnceAndSplit) {
    Bench bench;
    CHECK(bench, Identification, get_Identity(), "VANTERRA,TARN,100123,5.10");
    CHECK(bench, "", get_Manufacturer(), "VANTERRA");
    CHECK(bench, "", get_IDriverIdentify_ModelNumber(), "TARN");
    CHECK(bench, "", get_SerialNumber(), "100123");
    CHECK(bench, "", get_FirmwareVersion(), "5.10");
    CHECK(bench, "SYST:MODE DVBT", put_Mode(tarnDVBT), Done);
    CHECK(bench, "*IDN? = \"VANTERRA,TARN\"", get_ModelNumber(), "TARN");
    CHECK(bench, "", get_SerialNumber(), "");  // fewer fields
}

TEST(Identity, ReportsFailuresWithTheSourceOfTheInterface) {
    Bench bench;
    CHECK(bench, "*IDN? ! 2011", get_Identity(), GetFailed("Identity") + Refused);
    CHECK(bench, "*IDN? ! 2014", get_Identity(), GetFailed("Identity"));
    CHECK(bench, "*IDN? ! 2011", get_SerialNumber(), "+2004 .IDriverIdentify_SerialNumber: Get SerialNumber failed");
    CHECK(bench, "READ:INFO:DATA? ! 2011", get_InstalledHardware(),
          "+2004 .IDriverIdentify_InstalledHardware: Get InstalledHardware failed");
}

TEST(Identity, CachesNothingWhenTheUserAsksToStop) {
    Bench bench;
    bench.world->Abort = true;
    CHECK(bench, Identification, get_Identity(), "");
    CHECK(bench, Mask + "33", get_InstalledHardware(), "");
    bench.world->Abort = false;
    CHECK(bench, Identification, get_Manufacturer(), "VANTERRA");
}

TEST(InstalledHardware, ComesFromTheMaskAndTheBoards) {
    const struct {
        const char *Mask, *Boards, *Options;
    } cases[] = {
        {"33", "0x83 none", "TARN-B1,TARN-B3"},
        {"0", "0x84", ""},
        {"65536", "0x83", "EXTMEM"},
        {"8388608", "0x83", ""},
        {"8323072", "0x83", "EXTMEM"},
        {"32 (mask)", "0x83 6.0 8.0;0x84 7.0", "TARN-B13,TARN-B11,TARN-B1"},
        {"0", "0x82 6.0;0x84 7.0;0x85 8.0", "TARN-B12"},
        {"0", "x 6.0 0x83 7.0 0x84 8.0", "TARN-B13,TARN-B12"},
        {"62914560", "0x83", "EXTREF,TARN-K25,EXTMEM"},  // bits 22 to 25: 22 is memory, 23 nothing
        {"1023", "0x83", "TARN-B5,TARN-B8,TARN-B6,TARN-B4,TARN-B1,TARN-B2,AD,RB,EAMOD,TARN-B3"},
        {"64512", "0x83", "TARN-K23,TARN-K22,TARN-K21,TARN-B20,TARN-B7,TARN-B10"},
    };
    for (const auto& c : cases) {
        Bench bench;
        CHECK(bench, Mask + c.Mask + " | " + Identification + " | " + Boards + c.Boards, get_InstalledHardware(),
              c.Options);
        CHECK(bench, "", get_InstalledHardware(), c.Options);
    }
}

TEST(InstalledHardware, TriesTheFiltersWhereNoBoardTells) {
    const std::string probe =
        " | SENSE:DVBT:FILTER:SAW? = OFF | SENSE:DVBT:FILTER:SAW MHZ6 | SENSE:DVBT:FILTER:SAW? = MHZ6"
        " | SENSE:DVBT:FILTER:SAW MHZ7 ! 2010 | SENSE:DVBT:FILTER:SAW? ! 2014 | SENSE:DVBT:FILTER:SAW MHZ8 ! 2014"
        " | SENSE:DVBT:FILTER:SAW? = MHZ8 | SENSE:DVBT:FILTER:SAW OFF";
    Bench old, boardless;
    CHECK(old, Mask + "16 | *IDN? = VANTERRA,TARN,1,4.99" + probe, get_InstalledHardware(),
          "TARN-B13,TARN-B11,TARN-B2");
    CHECK(boardless, Mask + "0 | " + Identification + " | " + Boards + "0X83 6.0" + probe, get_InstalledHardware(),
          "TARN-B13,TARN-B11");
}
