#include "tests/simulator/Bench.h"

namespace {

// Every command that sets something, spelled as a driver does, takes each of its values and tells it again.
TEST(Commands, SetWhatTheirQueriesTell) {
    constexpr std::string_view commands =
        "SYST:MODE NYQI NYQM NYQN QAM QAMA J83A J83B J83C MPEG M83A M83B M83C ATSC NTSC|SENS:REF EXT INT|"
        "SENS:DVBT:MEAS CDI MDB MPCT INT IQ APH AGD POL SP_1 SP_2 SP_3 ADIS CCDF IR_1 IR_2 IR_3 HIST PAR CENV NORM|"
        "SENS:FREQ:CENT 3000000 474000000.3|ROUT:ISEL DEM IF RF|UNIT:LEVEL:POWER DBMV DBPW DBUW DBM DBUV MV|"
        "INPUT:ATTENUATION 0 55|INPUT:ATTENUATION:AUTO 0 1|INPUT:ATTENUATION:MODE LNO IGN LDIS LSD|"
        "INP:ATT:REC LNO NORM LDIS|INP:ATT:IMP O50 O75|INPUT:ATTENUATION:DEM MNLW MNLE MNHI AUTO|"
        "INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER ON OFF|SENSE:DVBT:OPT MOB FAST HI SLOW|SENS:DVBT:NOISE:MODE ON OFF|"
        "SENSE:DVBT:LOOP:BWIDTH:FREQ LO MED HI|SENSE:DVBT:FFT:MODE F2K F8K|SENSE:DVBT:GuardInterval GI4 GI8 GI16 GI32|"
        "SENSE:DVBT:ORDER 4 16 64|SENSE:DVBT:ALPHA NH1 H1 H2 H4|SENSE:DVBT:CODE:RATE:HP 1,2 2,3 3,4 5,6 7,8|"
        "SENSE:DVBT:CODE:RATE:LP 1,2 7,8|SENSE:DVBT:MPEG:DATA:OUTPUT LO HI|SENS:DVBT:INT:COUN 1 99999|SYST:Time 0,5,7|"
        "SENS:DVBT:BERATE:INTEGRATION 0 1 10 100 1000|SENSE:DVBT:FILTER:SAW OFF MHZ6 MHZ7 MHZ8|SENS:DVBT:NOISE 2 56|"
        "SENS:DVBT:CHANNEL:BWIDTH MHZ6 MHZ7 MHZ8|SENS:DVBT:SPEC:DET MIN RMS MAX|SENS:DVBT:SPEC:AVG 1 0|"
        "SENS:DVBT:SPEC:AVG:COUN 1 999|SENS:DVBT:SPEC:FREQ:STAR 266 -448|SENS:DVBT:SPEC:FREQ:STOP 134.5 448|"
        "SENSE:DVBT:CARRIER:START_STOP 0,1704|SENSE:DVBT:CODE:RATE:MODE AUTO TPS MAN|*SRE 3|*ESE 4";
    for (const std::string_view row : sim::Split(commands, '|')) {
        const std::string header{row.substr(0, row.find(' '))};
        Bench bench{"TARN-B3,TARN-B11,TARN-B12,TARN-B13"};
        bench.Play("SENSE:DVBT:CODE:RATE:MODE MAN");
        for (const std::string_view value : sim::Split(row.substr(header.size() + 1), ' ')) {
            bench.Play((header + "  ").append(value).append(";:" + header + "? -> ").append(value));
        }
    }
    Bench{}.Play("SENSE:DVBT:FFT:MODE?;:SENSE:DVBT:GUAR?;:INP:ATT:AUTO ON;AUTO?;AUTO OFF;AUTO? -> AUTO;AUTO;1;0");
}

// What is refused leaves the settings alone. On a line commands share their path, which common commands keep; what is
// unknown there is looked for from the root.
TEST(Commands, AreRefusedWithTheErrorOfTheStandard) {
    Bench{}.Play(R"(SENS:FRE:CENT?;:SENS:FREQ:CENT;:SYST:ERR?;ERR? -> -113,"Undefined header";-109,"Missing parameter"
SENS2:FREQ:CENT 5E8;:SYST:ERR? -> -114,"Header suffix out of range"
SENSE:DVBT:CARRIER:START_STOP 1,;:SYST:ERR? -> -109,"Missing parameter"
SYST:REM 1;:SYST:ERR? -> -108,"Parameter not allowed"
SENS:FREQ:CENT? 1;:SYST:ERR? -> -108,"Parameter not allowed"
SENS:FREQ:CENT 5E8,1;:SYST:ERR? -> -108,"Parameter not allowed"
SENS:FREQ:CENT NAN;:SYST:ERR? -> -104,"Data type error"
SENS:FREQ:CENT 500 MHZ;:SYST:ERR? -> -138,"Suffix not allowed"
SENS:FREQ:CENT 2999999;:SYST:ERR? -> -222,"Data out of range"
SENS:DVBT:INT:COUN 0;:SYST:ERR? -> -222,"Data out of range"
SYST:DATE 26,2,29;:SYST:ERR? -> -222,"Data out of range"
SENS:DVBT:MEAS SP_4;:SYST:ERR? -> -224,"Illegal parameter value"
SENS:DVBT:SPEC:FREQ:STAR 315;:SYST:ERR? -> -221,"Settings conflict"
SENSE:DVBT:CARRIER:START_STOP 2,1;:SYST:ERR? -> -221,"Settings conflict"
INP:ATT:IMP O50;:SYST:ERR? -> -241,"Hardware missing"
SENS:DVBT:SPEC:FREQ:STAR?;*OPC?;STOP?;  ;; sense1:freq:center1?  ;ROUT:ISEL? -> -448;1;448;474000000;RF)");
}

}  // namespace
