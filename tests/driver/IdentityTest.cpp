#include "tests/driver/Bench.h"

using namespace tarn4x::test;

const std::string Mask = "READ:INFO:DATA?", Identification = " | *IDN? = VANTERRA,TARN,100123,5.00",
                  Boards = " | SYSTEM:SERVICE:GET:BOARD:INFO? = ", Saw = " | SENSE:DVBT:FILTER:SAW";

TEST(InstalledHardware, ComesFromTheMaskAndTheBoardsOnce) {
    const struct {
        const char *Mask, *Boards, *Options;
    } cases[] = {
        {"33", "0x83 none", "TARN-B1,TARN-B3"},
        {"0", "0x84", ""},
        {"65536", "0x83", "EXTMEM"},
        {"32 (mask)", "0x83 6.0 8.0;0x84 7.0", "TARN-B13,TARN-B11,TARN-B1"},
        {"0", "0x82 6.0;0x84 7.0;0x85 8.0", "TARN-B12"},
        {"0", "x 6.0 0x83 7.0 0x84 8.0", "TARN-B13,TARN-B12"},
        {"62914560", "0x83", "EXTREF,TARN-K25,EXTMEM"},  // bits 22 to 25: 22 is memory, 23 nothing
        {"1023", "0x83", "TARN-B5,TARN-B8,TARN-B6,TARN-B4,TARN-B1,TARN-B2,AD,RB,EAMOD,TARN-B3"},
        {"64512", "0x83", "TARN-K23,TARN-K22,TARN-K21,TARN-B20,TARN-B7,TARN-B10"},
    };
    for (const auto& c : cases) {
        Bench bench;
        CHECK(bench, Mask + " = " + c.Mask + Identification + Boards + c.Boards, get_InstalledHardware(), c.Options);
        CHECK(bench, "", get_InstalledHardware(), c.Options);
    }
}

TEST(InstalledHardware, TriesTheFiltersWhereNoBoardTells) {
    const std::string tried = Saw + "? = OFF" + Saw + " MHZ6" + Saw + "? = MHZ6" + Saw + " MHZ7 ! 2010" + Saw +
                              "? ! 2014" + Saw + " MHZ8 ! 2014" + Saw + "? = MHZ8" + Saw + " OFF";
    for (const auto& boards : {std::string(" | *IDN? = VANTERRA,TARN,1,4.99"), Identification + Boards + "0X83 6.0"}) {
        Bench bench;
        CHECK(bench, Mask + " = 16" + boards + tried, get_InstalledHardware(), "TARN-B13,TARN-B11,TARN-B2");
    }
}

TEST(InstalledHardware, StoppedAnywhereKeepsNothingAndPutsTheFilterBack) {
    const std::string dialogue = Mask + " = 16" + Identification + Boards + "none" + Saw + "? = OFF" + Saw + " MHZ6" +
                                 Saw + "? = MHZ6" + Saw + " MHZ7" + Saw + "? = MHZ7" + Saw + " MHZ8" + Saw + "? = MHZ8";
    const auto lines = Split(dialogue, " | ");
    for (std::size_t stop = 1; stop <= lines.size() + 1; ++stop) {
        Bench bench;
        const auto tried = std::min(lines.size(), stop == 5 || stop == 7 || stop == 9 ? stop + 1 : stop);  // and read
        for (std::size_t i = 0; i < tried; ++i) bench.Expect(lines[i]);
        if (stop > 4) bench.Expect("SENSE:DVBT:FILTER:SAW OFF");
        bench.world->AbortAfterSending = stop;
        EXPECT_EQ(bench->get_InstalledHardware(), "") << stop;
        bench.ExpectEnd();
        bench.world->AbortAfterSending = SIZE_MAX;
        CHECK(bench, Mask + " ! 2014", get_InstalledHardware(),
              "+2004 .IDriverIdentify_InstalledHardware: Get InstalledHardware failed");
    }
}
