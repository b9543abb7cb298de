#include "tests/simulator/Bench.h"

namespace {

TEST(Results, ExistOnlyInTheirMeasureModes) {
    constexpr std::string_view modes =
        "NORM CDI MDB MPCT INT IQ APH AGD POL SP_1 SP_2 SP_3 ADIS CCDF IR_1 IR_2 IR_3 HIST PAR CENV";
    constexpr std::string_view results =
        "FREQ:OFFS NORM|CRES:MARG ADIS CENV CCDF|CRES:MAX ADIS CENV CCDF|CRES:CURR ADIS CENV CCDF|"
        "CRES:ACQ ADIS CENV CCDF|SPEC:SHO:LOW SP_1 SP_2 SP_3|SPEC:SHO:UPP SP_1 SP_2 SP_3|SPEC:AVG:COUN SP_1 SP_2 SP_3|"
        "MER:RMS HIST PAR|MER:PEAK PAR|JITT PAR|IQ:QERR PAR|IQ:IMB PAR|SIGN:NOIS PAR|CARR:SUPP PAR|CARR:SUPP:PHAS PAR|"
        "AVER:PROG PAR|AMPL_PHAS_GD:VAL APH AGD|IRES:PEAK IR_1 IR_2 IR_3";
    for (const std::string_view mode : sim::Split(modes, ' ')) {
        Bench bench;
        bench.Play("SENS:DVBT:MEAS " + std::string{mode} + "\n+1 *CLS");
        for (const std::string_view row : sim::Split(results, '|')) {
            const std::string answer = bench.Ask("READ:DVBT:" + std::string{row.substr(0, row.find(' '))} + '?');
            EXPECT_EQ(answer != "---", row.find(' ' + std::string{mode}) != row.npos) << mode << ": " << row;
        }
    }
}

// 2E7 of 1E8 bits are counted with each result.
// 22.118 Mbit/s: EN 300 744, table 17, and 20 ppm more. The error vectors (TR 101 290, 9.18) have the power of the
// noise, 27.5 dB below the signal and 0.6 dB more from the receiver, and of the impairments: 5 degrees of jitter are
// 0.0076 of the signal's power, 3 degrees and 7 % of the quadrature's errors 0.0019.
TEST(Results, SettleAndCountAndFollowTheSignal) {
    Bench{}.Play(R"(READ:DVBT:BER:ARS?;ARS?;ARS?;ARS? -> ---;---;<5.0E-8 (2/10);<2.5E-8 (4/10)
SENS:FREQ:CENT 474E6
+0.299 READ:RF:LEVEL? -> ---
+0.001 READ:RF:LEVEL?;:READ:DVBT:BER:ARS?;ARS?;ARS?;ARS? ~ -4[67]..;<2.5.*;<1.7.*;<1.2E-8 \(8/10\);<1.0E-8
SENS:DVBT:BER:RES;:READ:DVBT:BER:ARS? -> <5.0E-8 (2/10)
signal offset 1000;bitrate 20
+1 READ:DVBT:FREQ:OFFS?;:READ:DVBT:BITR:OFFS?;:READ:DVBT:TS:BITR? ~ (0.99|1.00).;(19.9|20.0).;22.118089
READ:DVBT:TPS:ORD?;ALPH?;CODE:RATE?;:READ:DVBT:FFT:MODE?;:READ:DVBT:TPS:GUAR:INT? -> 64;1 NH;2/3;8K;1/8
SENS:DVBT:MEAS PAR
+1 READ:DVBT:MER:RMS?;RMS? PCT;PEAK?;:READ:DVBT:AVER:PROG? ~ (26.[89]|27.0);4.[45].;(16.[0-4]|15.[7-9]);40
SENS:DVBT:NOISE 16;NOISE:MODE ON
+1 READ:DVBT:SIGN:NOIS?;:READ:DVBT:BER:BVIT?;BRS? ~ 15.[67];5.[34]E-2 .*;[0-9.]+E-3 .*
SENS:DVBT:NOISE 8
+1 READ:DVBT:MER:PEAK?;:READ:DVBT:BER:BRS?;ARS?;:READ:DVBT:OFDM:UNL? ~ \*.*;>2.0E-2;---;0
signal jitter 5;iq-phase 3;iq-imbalance 7;suppression 20
SENS:DVBT:NOISE:MODE OFF
+1 READ:DVBT:JITT?;:READ:DVBT:IQ:QERR?;IMB?;:READ:DVBT:MER:RMS? DB ~ (4.9|5.0).;(2.9|3.0).;(6.9|7.0).;19.[2-6]
signal fft 2k;guard 1/32;qam 16;alpha 2;rate 3/4;lp-rate 5/6;shoulders 20
READ:DVBT:CARR:SUPP?;:READ:DVBT:TPS:ORD?;ALPH?;CODE:RATE? ~ (19.[5-9]|20.[0-5]);16;2 H;3/4
SENS:DVBT:MPEG:DATA:OUTP LO;:SENS:DVBT:MEAS SP_1
+1 READ:DVBT:SPEC:SHO:LOW?;:READ:DVBT:CODE:RATE?;:READ:DVBT:FFT:MODE?;:READ:DVBT:TPS:GUAR:INT? ~ (19|20)..;5/6;2K;1/32
signal level -90
READ:RF:LEVEL?;:READ:SIGN:RF? -> UNDER;UND
signal level 50
READ:RF:LEVEL?;:READ:SIGN:RF? -> OVER;OVER)");
}

TEST(Clock, RunsOnWithTheCalendarAndTheStatistics) {
    Bench{}.Play(R"(SYST:DATE 28,2,28;TIME 23,0,5
+3600 SYST:DATE?;TIME?;:READ:DVBT:ALAR:STAT? ~ 2028,2,29;0,0,5;1:0:0,0:0:0,0.0,0:0:0,0.0,.*
signal present off
+1230 signal present on
+70 READ:DVBT:ALAR:STAT? ~ 1:21:40(,0:20:30,25.1){6}(,[^,]*){3}
CONF:DVBT:ALAR:RES;:READ:DVBT:ALAR:STAT?;:SYST:DATE 99,12,31;DATE? ~ 0:0:0(,0:0:0,0.0){6}(,---){3};1999,12,31)");
}

// -47 dBm are 61.75 dBuV, 1.75 dBmV or 1.223 mV at 75 ohm, 59.99 dBuV at 50 ohm.
TEST(Input, HasWhatItsOptionsBring) {
    Bench{"TARN-B1,tarn-b3,TARN-B11,TARN-B13,EXTREF"}.Play(R"(UNIT:LEVEL:POWER DBUV
+1 READ:RF:LEVEL?;:INP:ATT:IMP O50;:READ:RF:LEVEL?;:INP:ATT:IMP O75 ~ 61.[6-9];(59.9|60.[01])
UNIT:LEV:POW DBMV;:READ:RF:LEV?;:UNIT:LEV:POW MV;:READ:RF:LEV?;:UNIT:LEV:POW DBUW;:READ:RF:LEV? ~ 1.[6-9];1.2.*;-1[67]..
SENSE:DVBT:FILTER:SAW MHZ7;SAW?;:SYST:ERR? -> MHZ8;-241,"Hardware missing"
*OPT?;:READ:INFO:DATA?;:INP:ATT?;ATT:AUTO?;DEM:VAL? -> EXTREF,TARN-B1,TARN-B11,TARN-B13,TARN-B3;33554465;10;1;11
SYST:SERV:GET:BOAR:INFO? -> "0x01 CPU 5.1;0x40 TUNER 3.2;0x83 SAW 6.0 8.0"
signal level -20
INP:ATT?;ATT:DEM:VAL?;:INP:ATT 25;ATT?;ATT:AUTO?;AUTO ON;:INP:ATT? -> 35;12;25;0;35)");
}

}  // namespace
