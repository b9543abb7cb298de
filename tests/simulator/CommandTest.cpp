#include <gtest/gtest.h>

#include <random>

#include "simulator/LineBuffer.h"
#include "tests/simulator/Bench.h"

namespace {

constexpr const char* kNoError = "0,\"No error\"";

struct Case {
    const char* line;
    const char* answer;
};

// Every text that a driver sends, the irregular spellings and blanks included, is understood.
TEST(Commands, UnderstandsEveryTextOfTheRemoteProtocol) {
    sim::Configuration configuration;
    configuration.options = sim::InstalledOptions{"TARN-B3,TARN-B11,TARN-B12,TARN-B13"};
    for (const char* line : {"*CLS;*SRE 0;*ESE 0",
                             "SYST:REM",
                             "SYST:LOC",
                             "SYST:RES",
                             "SYST:MODE DVBT",
                             "SENS:DVBT:MEAS IR_1",
                             "SENS:FREQ:CENT  474000000.3",
                             "SENS:DVBT:BER:RES",
                             "INPUT:ATTENUATION:AUTO ON",
                             "INPUT:ATTENUATION:AUTO OFF",
                             "INPUT:ATTENUATION 25",
                             "INPUT:ATTENUATION:MODE IGN",
                             "INPUT:ATTENUATION:MODE LSD",
                             "INP:ATT:REC NORM",
                             "INPUT:ATTENUATION:DEM MNLE",
                             "ROUT:ISEL DEM",
                             "INP:ATT:IMP O50",
                             "SENSE:DVBT:CARRIER:START_STOP  100, 200",
                             "SENS:DVBT:SPEC:DET MAX",
                             "SENS:DVBT:SPEC:AVG ON",
                             "SENS:DVBT:SPEC:AVG:COUN 999",
                             "SENSE:DVBT:ALPHA H4",
                             "SENSE:DVBT:CODE:RATE:HP 5,6",
                             "SENSE:DVBT:CODE:RATE:LP 3,4",
                             "SENSE:DVBT:CODE:RATE:MODE MAN",
                             "SENSE:DVBT:FFT:MODE F2K",
                             "SENSE:DVBT:GuardInterval GI32",
                             "SENSE:DVBT:ORDER 16",
                             "SENSE:DVBT:MPEG:DATA:OUTPUT LO",
                             "SENSE:DVBT:OPT MOB",
                             "INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER ON",
                             "SENS:DVBT:NOISE:MODE ON",
                             "SENS:DVBT:NOISE 56",
                             "SENS:DVBT:INT:COUN 99999",
                             "SENS:DVBT:SPEC:FREQ:STAR 266",
                             "SENS:DVBT:SPEC:FREQ:STOP 134.5",
                             "SENSE:DVBT:LOOP:BWIDTH:FREQ HI",
                             "SENS:DVBT:BERATE:INTEGRATION 1000",
                             "SENSE:DVBT:FILTER:SAW MHZ7",
                             "SENS:DVBT:CHANNEL:BWIDTH MHZ6",
                             "SENS:REF EXT",
                             "UNIT:LEVEL:POWER DBUV",
                             "SYST:Time 9,5,7",
                             "SYST:DATE 26,3,15",
                             "CONF:DVBT:ALAR:RES"}) {
        Bench bench{configuration};
        EXPECT_EQ(bench.Ask(line), "(none)") << line;
        EXPECT_EQ(bench.Error(), kNoError) << line;
    }
    for (const char* line : {"SYST:MODE?",
                             "SENS:DVBT:MEAS?",
                             "SENS:FREQ:CENT?",
                             "READ:DVBT:TS:BITRATE?",
                             "READ:DVBT:BITRATE:OFFSET?",
                             "READ:DVBT:CREST:MARGIN?",
                             "READ:DVBT:CREST:MAX?",
                             "READ:DVBT:CREST:CURRENT?",
                             "READ:DVBT:SPECTRUM:SHO:LOW?",
                             "READ:DVBT:SPECTRUM:SHO:UPP?",
                             "READ:DVBT:FREQ:OFFSET?",
                             "READ:RF:LEVEL?",
                             "READ:DVBT:CARRIER:SUPPRESSION?",
                             "READ:DVBT:CARRIER:SUPPRESSION:PHASE?",
                             "READ:DVBT:MER:RMS? DB",
                             "READ:DVBT:MER:RMS? PCT",
                             "READ:DVBT:MER:PEAK? PCT",
                             "READ:DVBT:JITTER?",
                             "READ:DVBT:IQ:QERROR?",
                             "READ:DVBT:IQ:IMBALANCE?",
                             "READ:DVBT:SIGNAL:NOISE?",
                             "READ:DVBT:BER:BVIT?",
                             "READ:DVBT:BER:BRS?",
                             "READ:DVBT:BER:ARS?",
                             "READ:DVBT:OFDM:UNLOCKED?",
                             "READ:DVBT:MPEG:TS:LOCKED?",
                             "INPUT:ATTENUATION:AUTO?",
                             "INPUT:ATTENUATION?",
                             "INP:ATT:MODE?",
                             "INP:ATT:REC?",
                             "INPUT:ATTENUATION:DEM:VAL?",
                             "INPUT:ATTENUATION:DEM?",
                             "ROUTE:ISELECT?",
                             "INPUT:ATTENUATION:IMP?",
                             "READ:DVBT:AMPL_PHAS_GD:VALUE?",
                             "READ:DVBT:IRESPONSE:PEAK?",
                             "SENSE:DVBT:CARRIER:START_STOP?",
                             "SENS:DVBT:SPEC:DET?",
                             "READ:DVBT:SPEC:AVG:COUN?",
                             "SENS:DVBT:SPEC:AVG?",
                             "SENS:DVBT:SPEC:AVG:COUN?",
                             "READ:DVBT:CRES:ACQ?",
                             "SENSE:DVBT:ALPHA?",
                             "SENSE:DVBT:CODE:RATE:HP?",
                             "SENSE:DVBT:CODE:RATE:LP?",
                             "SENSE:DVBT:CODE:RATE:MODE?",
                             "SENSE:DVBT:FFT:MODE?",
                             "SENSE:DVBT:GuardInterval?",
                             "SENSE:DVBT:ORDER?",
                             "SENSE:DVBT:MPEG:DATA:OUTPUT?",
                             "SENSE:DVBT:OPT?",
                             "INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER?",
                             "READ:DVBT:FFT:MODE?",
                             "READ:DVBT:TPS:FFT:MODE?",
                             "READ:DVBT:TPS:GUARD:INTERVAL?",
                             "READ:DVBT:TPS:ORDER?",
                             "READ:DVBT:TPS:ALPHA?",
                             "READ:DVBT:TPS:CODE:RATE?",
                             "READ:DVBT:CODE:RATE?",
                             "READ:DVBT:AVERAGE:PROGRESS?",
                             "SENS:DVBT:NOISE:MODE?",
                             "SENS:DVBT:NOISE?",
                             "SENS:DVBT:INT:COUN?",
                             "SENS:DVBT:SPEC:FREQ:STAR?",
                             "SENS:DVBT:SPEC:FREQ:STOP?",
                             "SENS:REF:UNL?",
                             "READ:SIGN:RF?",
                             "SENSE:DVBT:LOOP:BWIDTH:FREQ?",
                             "SENSE:DVBT:BERATE:INTEGRATION?",
                             "READ:DVBT:ORDER?",
                             "SENSE:DVBT:FILTER:SAW?",
                             "SENSE:DVBT:CHANNEL:BWIDTH?",
                             "SENS:REF?",
                             "UNIT:LEVEL:POWER?",
                             "SYST:TIME?",
                             "SYST:DATE?",
                             "*IDN?",
                             "*OPT?",
                             "*OPC?",
                             "READ:INFO:DATA?",
                             "SYSTEM:SERVICE:GET:BOARD:INFO?",
                             "READ:SCREEN:BUFFER?",
                             "READ:BUFFER:PCX?",
                             "READ:DVBT:ALAR:STAT?"}) {
        Bench bench{configuration};
        EXPECT_NE(bench.Ask(line), "(none)") << line;
        EXPECT_EQ(bench.Error(), kNoError) << line;
    }
}

TEST(Commands, RefusesWithTheErrorOfTheStandard) {
    for (const auto& [line, error] : std::initializer_list<Case>{
             {"BOGUS:HEADER?", "-113,\"Undefined header\""},
             {"SENS:FRE:CENT 5E8", "-113,\"Undefined header\""},
             {"SYST:ERR", "-113,\"Undefined header\""},  // there is only the query
             {"SYST:RES?", "-113,\"Undefined header\""},
             {"SENS2:FREQ:CENT 5E8", "-114,\"Header suffix out of range\""},
             {"SENS:FREQ:CENT\xFF 5E8", "-101,\"Invalid character\""},
             {"SENS:FREQ:CENT", "-109,\"Missing parameter\""},
             {"SENSE:DVBT:ORDER ", "-109,\"Missing parameter\""},
             {"SENSE:DVBT:CARRIER:START_STOP 1,", "-109,\"Missing parameter\""},
             {"SYST:REM 1", "-108,\"Parameter not allowed\""},
             {"SENS:FREQ:CENT? 1", "-108,\"Parameter not allowed\""},
             {"SENS:FREQ:CENT 5E8,1", "-108,\"Parameter not allowed\""},
             {"SENS:FREQ:CENT NAN", "-104,\"Data type error\""},
             {"SENS:FREQ:CENT HIGH", "-104,\"Data type error\""},
             {"SENS:FREQ:CENT 500 MHZ", "-138,\"Suffix not allowed\""},
             {"SENS:FREQ:CENT 2999999", "-222,\"Data out of range\""},
             {"SENS:FREQ:CENT 1E999", "-222,\"Data out of range\""},
             {"INPUT:ATTENUATION 7", "-222,\"Data out of range\""},
             {"SYST:DATE 26,2,29", "-222,\"Data out of range\""},
             {"SENS:DVBT:MEAS SP_4", "-224,\"Illegal parameter value\""},
             {"SENSE:DVBT:CODE:RATE:HP 4,5", "-224,\"Illegal parameter value\""},
             {"READ:DVBT:MER:RMS? FURLONG", "-224,\"Illegal parameter value\""},
             {"SENS:DVBT:SPEC:FREQ:STAR 315", "-221,\"Settings conflict\""},  // stop is at 448, 134 is the least
             {"SENSE:DVBT:CARRIER:START_STOP 2,1", "-221,\"Settings conflict\""},
             {"INP:ATT:IMP O50", "-241,\"Hardware missing\""},
         }) {
        Bench bench;
        EXPECT_EQ(bench.Ask(line), "(none)") << line;
        EXPECT_EQ(bench.Error(), error) << line;
        EXPECT_EQ(bench.Error(), kNoError) << line;
    }
}

TEST(Commands, RefusedValuesLeaveTheSettingAlone) {
    Bench bench;
    bench.Ask("SENS:DVBT:SPEC:FREQ:STAR 315;STAR 400;:SENS:FREQ:CENT 1;:INP:ATT:IMP O50");
    EXPECT_EQ(bench.Ask("SENS:DVBT:SPEC:FREQ:STAR?;:SENS:FREQ:CENT?"), "-448;474000000");
}

TEST(Commands, SeveralOnALineShareTheirPath) {
    for (const auto& [line, answer] : std::initializer_list<Case>{
             {"SENS:DVBT:SPEC:FREQ:STAR -134.5;STOP 0;STAR?;STOP?", "-134.5;0"},
             {"sense:dvbt:spectrum:frequency:start?;*OPC?;STOP?", "-448;1;448"},  // common commands keep the path
             {":SENS:FREQ:CENT?;:ROUT:ISEL?", "474000000;RF"},
             {"SENS:FREQ:CENT?;ROUTE:ISELECT?", "474000000;RF"},  // from the root when unknown here
             {"SENS1:FREQ:CENT1?", "474000000"},
             {"  SENS:FREQ:CENT?  ; ;; *OPC?;", "474000000;1"},
             {"BOGUS?;*OPC?", "1"},
             {"", "(none)"},
         }) {
        Bench bench;
        EXPECT_EQ(bench.Ask(line), answer) << line;
    }
}

TEST(ErrorQueue, IsFirstInFirstOutAndOverflowsAtThirty) {
    Bench bench;
    bench.Ask("BOGUS");
    for (int i = 0; i < 40; ++i) bench.Ask("SYST:REM 1");
    EXPECT_EQ(bench.Error(), "-113,\"Undefined header\"");
    for (int i = 0; i < 28; ++i) EXPECT_EQ(bench.Error(), "-108,\"Parameter not allowed\"");
    EXPECT_EQ(bench.Error(), "-350,\"Queue overflow\"");
    EXPECT_EQ(bench.Error(), kNoError);
    bench.Ask("BOGUS;*CLS");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(FrontPanel, HasNeitherErrorQueueNorBlocks) {
    Bench bench;
    EXPECT_EQ(bench.Ask("SENS:FREQ:CENT?", sim::Face::FrontPanel), "474000000");
    EXPECT_EQ(bench.Ask("READ:SCREEN:BUFFER?", sim::Face::FrontPanel), "0");
    for (const char* line : {"SYST:ERR?", "SYSTEM:ERROR:NEXT?", "READ:BUFFER:PCX?", "BOGUS?"}) {
        EXPECT_EQ(bench.Ask(line, sim::Face::FrontPanel), "(none)") << line;
    }
    EXPECT_EQ(bench.Error(), kNoError);  // the remote side is not told either
}

TEST(LineBuffer, EndsLinesAtLineFeedsAndDropsWhatIsTooLong) {
    sim::LineBuffer buffer;
    buffer.Add("ab\r\nc\rd\n\ne");
    EXPECT_EQ(buffer.Next()->text, "ab");
    EXPECT_EQ(buffer.Next()->text, "c\rd");
    EXPECT_EQ(buffer.Next()->text, "");
    EXPECT_FALSE(buffer.Next());
    buffer.Add(std::string(sim::LineBuffer::kLongestLine - 1, 'x') + "\n");
    EXPECT_EQ(buffer.Next()->text.size(), sim::LineBuffer::kLongestLine);
    for (int i = 0; i < 40; ++i) {
        buffer.Add(std::string(5000, 'x'));
        EXPECT_FALSE(buffer.Next());
    }
    buffer.Add("tail\nnext\n");
    EXPECT_TRUE(buffer.Next()->overrun);
    EXPECT_EQ(buffer.Next()->text, "next");
}

// Whatever arrives is answered or refused; the sanitizers watch.
TEST(Commands, TakesAnyBytes) {
    const std::string pieces[] = {"SENS", ":",    ";",    "*",    "?",   " ", ",",
                                  "\"",   "'",    "FREQ", "CENT", "1",   "-", "E9",
                                  "9",    "DVBT", "READ", "MER",  "RMS", "#", std::string(1, '\0'),
                                  "\xFF", "MEAS", "PAR",  "_"};
    std::mt19937 random{7};
    Bench bench;
    for (int i = 0; i < 20'000; ++i) {
        std::string line;
        for (auto n = random() % 12; n > 0; --n) line += pieces[random() % std::size(pieces)];
        if (i % 3 == 0 && !line.empty()) line[random() % line.size()] = static_cast<char>(random());
        bench.Ask(line);
    }
    bench.Ask("*CLS");
    EXPECT_EQ(bench.Ask("*IDN?"), "VANTERRA,TARN,100042,5.10");
}

}  // namespace
