#include "simulator/CommandRows.h"
#include "simulator/Commands.h"
#include "simulator/OfdmParameters.h"
#include "simulator/Receiver.h"
#include "simulator/Text.h"

// What the demodulator and its measurements are set to.
namespace sim {

namespace {

constexpr double kSpectrumEdge = 448, kNarrowestSpan = 134;  // in 10 kHz

// Another measure mode restarts the results.
Command MeasureModeRow() {
    Command row = Choice("SENSe:DVBT:MEASure", &Settings::measureMode,
                         {"NORM", "CDI",  "MDB",  "MPCT", "INT",  "IQ",   "APH",  "AGD",  "POL", "SP_1",
                          "SP_2", "SP_3", "ADIS", "CCDF", "IR_1", "IR_2", "IR_3", "HIST", "PAR", "CENV"},
                         Effect::Restart);
    // In the modes of other standards there is none.
    row.query = [query = row.query](Receiver& receiver, const Arguments& arguments) {
        const std::string token = query(receiver, arguments);
        return receiver.settings.operatingMode == kDvbt ? token : "0";
    };
    return row;
}

// The start or the stop of the spectrum; they keep a distance, which makes each a limit of the other.
Command SpectrumEdge(std::string_view pattern, double Settings::*edge) {
    return Checked(Number(pattern, edge, -kSpectrumEdge, kSpectrumEdge), [](const Receiver& receiver) {
        if (receiver.settings.spectrumStop - receiver.settings.spectrumStart < kNarrowestSpan) throw ScpiError{-221};
    });
}

void SetCarriers(Receiver& receiver, const Arguments& arguments) {
    arguments.Expect(2);
    const int last = LastCarrier(receiver.Receive().ofdm.fft);
    const int start = arguments.Whole(0, 0, last), stop = arguments.Whole(1, 0, last);
    if (start > stop) throw ScpiError{-221};
    receiver.settings.startCarrier = start;
    receiver.settings.stopCarrier = stop;
}

std::string Carriers(Receiver& receiver) {
    return Print("%d,%d", receiver.settings.startCarrier, receiver.settings.stopCarrier);
}

const std::vector<std::string_view> kCodeRates = {"1,2", "2,3", "3,4", "5,6", "7,8"};

}  // namespace

std::vector<Command> DvbtSettings() {
    return {
        MeasureModeRow(),
        OfdmChoice("SENSe:DVBT:FFT:MODE", &Ofdm::fft, {"F2K", "F8K"}, "AUTO"),
        OfdmChoice("SENSe:DVBT:GUARdinterval", &Ofdm::guard, {"GI4", "GI8", "GI16", "GI32"}, "AUTO"),
        OfdmChoice("SENSe:DVBT:ORDer", &Ofdm::constellation, {"4", "16", "64"}),
        OfdmChoice("SENSe:DVBT:ALPHa", &Ofdm::alpha, {"NH1", "H1", "H2", "H4"}),
        OfdmChoice("SENSe:DVBT:CODE:RATE:HP", &Ofdm::rateHp, kCodeRates),
        OfdmChoice("SENSe:DVBT:CODE:RATE:LP", &Ofdm::rateLp, kCodeRates),
        Choice("SENSe:DVBT:CODE:RATE:MODE", &Settings::codeRateMode, {"AUTO", "MAN", "TPS"}, Effect::Restart),
        Choice("SENSe:DVBT:MPEG:DATA:OUTPut", &Settings::mpegOutput, {"HI", "LO"}, Effect::Restart),
        Choice("SENSe:DVBT:OPTimisation", &Settings::optimisation, {"MOB", "FAST", "HI", "SLOW"}, Effect::Restart),
        Choice("SENSe:DVBT:LOOP:BWIDth:FREQuency", &Settings::loopBandwidth, {"LO", "MED", "HI"}, Effect::Restart),

        Switch("SENSe:DVBT:NOISe:MODE", &Settings::noise, "OFF", "ON", Effect::Restart),
        Number("SENSe:DVBT:NOISe", &Settings::noiseCn, 2, 56, Effect::Restart),
        Whole("SENSe:DVBT:INTegration:COUNt", &Settings::symbolCount, 1, 99999),
        Choice("SENSe:DVBT:BERate:INTegration", &Settings::berIntegration, {"0", "1", "10", "100", "1000"}),
        Action("SENSe:DVBT:BERate:RESet", [](Receiver& receiver) { receiver.ResetBer(); }),

        SpectrumEdge("SENSe:DVBT:SPECtrum:FREQuency:STARt", &Settings::spectrumStart),
        SpectrumEdge("SENSe:DVBT:SPECtrum:FREQuency:STOP", &Settings::spectrumStop),
        Choice("SENSe:DVBT:SPECtrum:DETector", &Settings::detector, {"MIN", "RMS", "MAX"}),
        Switch("SENSe:DVBT:SPECtrum:AVG", &Settings::averaging, "0", "1"),
        Whole("SENSe:DVBT:SPECtrum:AVG:COUNt", &Settings::averageCount, 1, 999),
        {"SENSe:DVBT:CARRier:START_STOP", SetCarriers, Answer("", Carriers).query},
        Action("CONFigure:DVBT:ALARm:RESet", [](Receiver& receiver) { receiver.statistics.Clear(); }),
    };
}

}  // namespace sim
