#include <gtest/gtest.h>

#include <random>

#include "tests/simulator/Bench.h"

namespace {

// Every text that a driver sends, the irregular spellings and blanks included, is understood. A query has an answer, a
// command has none.
TEST(Commands, UnderstandsEveryTextOfTheRemoteProtocol) {
    constexpr std::string_view texts = R"(*CLS;*SRE 0;*ESE 0|SYST:REM|SYST:LOC|SYST:RES|SYST:MODE DVBT|SYST:MODE?
*IDN?|*OPT?|*OPC?|READ:INFO:DATA?|SYSTEM:SERVICE:GET:BOARD:INFO?|READ:SCREEN:BUFFER?|READ:BUFFER:PCX?
SENS:DVBT:MEAS IR_1|SENS:DVBT:MEAS?|SENS:FREQ:CENT  474000000.3|SENS:FREQ:CENT?|SENS:DVBT:BER:RES
INPUT:ATTENUATION:AUTO ON|INPUT:ATTENUATION:AUTO OFF|INPUT:ATTENUATION:AUTO?|INPUT:ATTENUATION 25|INPUT:ATTENUATION?
INPUT:ATTENUATION:MODE IGN|INPUT:ATTENUATION:MODE LSD|INP:ATT:MODE?|INP:ATT:REC NORM|INP:ATT:REC?
INPUT:ATTENUATION:DEM MNLE|INPUT:ATTENUATION:DEM?|INPUT:ATTENUATION:DEM:VAL?|ROUT:ISEL DEM|ROUTE:ISELECT?
INP:ATT:IMP O50|INPUT:ATTENUATION:IMP?|UNIT:LEVEL:POWER DBUV|UNIT:LEVEL:POWER?|READ:SIGN:RF?|READ:RF:LEVEL?
INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER ON|INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER?|SENS:REF EXT|SENS:REF?|SENS:REF:UNL?
SENSE:DVBT:CARRIER:START_STOP  100, 200|SENSE:DVBT:CARRIER:START_STOP?|SENSE:DVBT:OPT MOB|SENSE:DVBT:OPT?
SENS:DVBT:SPEC:DET MAX|SENS:DVBT:SPEC:DET?|SENS:DVBT:SPEC:AVG ON|SENS:DVBT:SPEC:AVG?|READ:DVBT:SPEC:AVG:COUN?
SENS:DVBT:SPEC:AVG:COUN 999|SENS:DVBT:SPEC:AVG:COUN?|SENS:DVBT:SPEC:FREQ:STAR 266|SENS:DVBT:SPEC:FREQ:STAR?
SENS:DVBT:SPEC:FREQ:STOP 134.5|SENS:DVBT:SPEC:FREQ:STOP?|SENSE:DVBT:ORDER 16|SENSE:DVBT:ORDER?|READ:DVBT:ORDER?
SENSE:DVBT:ALPHA H4|SENSE:DVBT:ALPHA?|SENSE:DVBT:CODE:RATE:HP 5,6|SENSE:DVBT:CODE:RATE:HP?
SENSE:DVBT:CODE:RATE:LP 3,4|SENSE:DVBT:CODE:RATE:LP?|SENSE:DVBT:CODE:RATE:MODE MAN|SENSE:DVBT:CODE:RATE:MODE?
SENSE:DVBT:FFT:MODE F2K|SENSE:DVBT:FFT:MODE?|SENSE:DVBT:GuardInterval GI32|SENSE:DVBT:GuardInterval?
SENSE:DVBT:MPEG:DATA:OUTPUT LO|SENSE:DVBT:MPEG:DATA:OUTPUT?|SENSE:DVBT:LOOP:BWIDTH:FREQ HI|SENSE:DVBT:LOOP:BWIDTH:FREQ?
SENS:DVBT:NOISE:MODE ON|SENS:DVBT:NOISE:MODE?|SENS:DVBT:NOISE 56|SENS:DVBT:NOISE?|SENS:DVBT:INT:COUN 99999
SENS:DVBT:INT:COUN?|SENS:DVBT:BERATE:INTEGRATION 1000|SENSE:DVBT:BERATE:INTEGRATION?|SENSE:DVBT:FILTER:SAW MHZ7
SENSE:DVBT:FILTER:SAW?|SENS:DVBT:CHANNEL:BWIDTH MHZ6|SENSE:DVBT:CHANNEL:BWIDTH?|SYST:Time 9,5,7|SYST:TIME?
SYST:DATE 26,3,15|SYST:DATE?|CONF:DVBT:ALAR:RES|READ:DVBT:ALAR:STAT?|READ:DVBT:AVERAGE:PROGRESS?
READ:DVBT:TS:BITRATE?|READ:DVBT:BITRATE:OFFSET?|READ:DVBT:CREST:MARGIN?|READ:DVBT:CREST:MAX?|READ:DVBT:CREST:CURRENT?
READ:DVBT:CRES:ACQ?|READ:DVBT:SPECTRUM:SHO:LOW?|READ:DVBT:SPECTRUM:SHO:UPP?|READ:DVBT:FREQ:OFFSET?
READ:DVBT:CARRIER:SUPPRESSION?|READ:DVBT:CARRIER:SUPPRESSION:PHASE?|READ:DVBT:MER:RMS? DB|READ:DVBT:MER:RMS? PCT
READ:DVBT:MER:PEAK? PCT|READ:DVBT:JITTER?|READ:DVBT:IQ:QERROR?|READ:DVBT:IQ:IMBALANCE?|READ:DVBT:SIGNAL:NOISE?
READ:DVBT:BER:BVIT?|READ:DVBT:BER:BRS?|READ:DVBT:BER:ARS?|READ:DVBT:OFDM:UNLOCKED?|READ:DVBT:MPEG:TS:LOCKED?
READ:DVBT:AMPL_PHAS_GD:VALUE?|READ:DVBT:IRESPONSE:PEAK?|READ:DVBT:FFT:MODE?|READ:DVBT:TPS:FFT:MODE?
READ:DVBT:TPS:GUARD:INTERVAL?|READ:DVBT:TPS:ORDER?|READ:DVBT:TPS:ALPHA?|READ:DVBT:TPS:CODE:RATE?|READ:DVBT:CODE:RATE?)";
    for (const std::string_view line : sim::Split(texts, '\n')) {
        for (const std::string_view text : sim::Split(line, '|')) {
            Bench bench{With("TARN-B3,TARN-B11,TARN-B12,TARN-B13")};
            EXPECT_EQ(bench.Ask(std::string{text}) != "(none)", text.find('?') != text.npos) << text;
            EXPECT_EQ(bench.Error(), kNoError) << text;
        }
    }
}

TEST(Commands, RefusesWithTheErrorOfTheStandard) {
    Bench{}.Play("SENS:FREQ:CENT\xFF 5E8 ! -101,\"Invalid character\"");
    PlayEach(R"(BOGUS:HEADER? ! -113,"Undefined header"
SENS:FRE:CENT 5E8 ! -113,"Undefined header"
SYST:ERR ! -113,"Undefined header"
SYST:RES? ! -113,"Undefined header"
SENS2:FREQ:CENT 5E8 ! -114,"Header suffix out of range"
SENS:FREQ:CENT ! -109,"Missing parameter"
SENSE:DVBT:ORDER  ! -109,"Missing parameter"
SENSE:DVBT:CARRIER:START_STOP 1, ! -109,"Missing parameter"
SYST:REM 1 ! -108,"Parameter not allowed"
SENS:FREQ:CENT? 1 ! -108,"Parameter not allowed"
SENS:FREQ:CENT 5E8,1 ! -108,"Parameter not allowed"
SENS:FREQ:CENT NAN ! -104,"Data type error"
SENS:FREQ:CENT HIGH ! -104,"Data type error"
SENS:FREQ:CENT 500 MHZ ! -138,"Suffix not allowed"
SENS:FREQ:CENT 2999999 ! -222,"Data out of range"
SENS:FREQ:CENT 1E999 ! -222,"Data out of range"
INPUT:ATTENUATION 7 ! -222,"Data out of range"
SYST:DATE 26,2,29 ! -222,"Data out of range"
SENS:DVBT:MEAS SP_4 ! -224,"Illegal parameter value"
SENSE:DVBT:CODE:RATE:HP 4,5 ! -224,"Illegal parameter value"
READ:DVBT:MER:RMS? FURLONG ! -224,"Illegal parameter value"
SENS:DVBT:SPEC:FREQ:STAR 315 ! -221,"Settings conflict"
SENSE:DVBT:CARRIER:START_STOP 2,1 ! -221,"Settings conflict"
INP:ATT:IMP O50 ! -241,"Hardware missing")");
    Bench{}.Play(R"(SENS:DVBT:SPEC:FREQ:STAR 315;STAR 400;:SENS:FREQ:CENT 1;:INP:ATT:IMP O50
SENS:DVBT:SPEC:FREQ:STAR?;:SENS:FREQ:CENT? -> -448;474000000)");  // and the settings are left alone
}

TEST(Commands, SeveralOnALineShareTheirPath) {
    // Common commands keep the path; what is unknown there is looked for from the root.
    PlayEach(R"(SENS:DVBT:SPEC:FREQ:STAR -134.5;STOP 0;STAR?;STOP? -> -134.5;0
sense:dvbt:spectrum:frequency:start?;*OPC?;STOP? -> -448;1;448
:SENS:FREQ:CENT?;:ROUT:ISEL? -> 474000000;RF
SENS:FREQ:CENT?;ROUTE:ISELECT? -> 474000000;RF
SENS1:FREQ:CENT1? -> 474000000
  SENS:FREQ:CENT?  ; ;; *OPC?; -> 474000000;1
BOGUS?;*OPC? -> 1)");
    EXPECT_EQ(Bench{}.Ask(""), "(none)");
}

TEST(ErrorQueue, IsFirstInFirstOutAndOverflowsAtThirty) {
    Bench bench;
    bench.Play("BOGUS");
    for (int i = 0; i < 40; ++i) bench.Play("SYST:REM 1");
    bench.Play(R"(SYST:ERR? -> -113,"Undefined header")");
    for (int i = 0; i < 28; ++i) bench.Play(R"(SYST:ERR? -> -108,"Parameter not allowed")");
    bench.Play("SYST:ERR? -> -350,\"Queue overflow\" | 0,\"No error\"\nBOGUS;*CLS ! 0,\"No error\"");
}

TEST(FrontPanel, HasNeitherErrorQueueNorBlocks) {
    Bench bench;
    for (const auto& [line, answer] : {std::pair{"SENS:FREQ:CENT?", "474000000"},
                                       {"READ:SCREEN:BUFFER?", "0"},
                                       {"SYST:ERR?", "(none)"},
                                       {"SYSTEM:ERROR:NEXT?", "(none)"},
                                       {"READ:BUFFER:PCX?", "(none)"},
                                       {"BOGUS?", "(none)"}}) {
        EXPECT_EQ(bench.Ask(line, sim::Face::FrontPanel), answer) << line;
    }
    EXPECT_EQ(bench.Error(), kNoError);  // the remote side is not told either
}

// Whatever arrives is answered or refused; the sanitizers watch.
TEST(Commands, TakesAnyBytes) {
    const auto pieces = sim::Split("SENS|:|;|*|?| |,|\"|'|FREQ|CENT|1|-|E9|9|DVBT|READ|MER|RMS|#|\xFF|MEAS|PAR|_", '|');
    std::mt19937 random{7};
    Bench bench;
    for (int i = 0; i < 20'000; ++i) {
        std::string line;
        for (auto n = random() % 12; n > 0; --n) line += pieces[random() % pieces.size()];
        if (i % 3 == 0 && !line.empty()) line[random() % line.size()] = static_cast<char>(random());
        bench.Ask(line);
    }
    bench.Play("*CLS\n*IDN? -> VANTERRA,TARN,100042,5.10");
}

}  // namespace
