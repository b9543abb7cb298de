#pragma once

#include "simulator/Settings.h"

namespace sim {

/// The signal on the air. Scripts change it while the instrument is measuring.
struct Signal {
    bool present = true;
    double level = -47;              // dBm at the input, on channel 21
    double cn = 27.5;                // dB
    double offset = 350;             // Hz, the transmitter's frequency error
    double bitRateOffset = 1.4;      // ppm
    double phaseJitter = 0.45;       // degrees rms
    double iqPhaseError = 0.21;      // degrees
    double iqImbalance = 0.35;       // per cent of the amplitude
    double carrierSuppression = 46;  // dB
    double shoulders = 43;           // dB
    bool externalReference = false;  // a 10 MHz reference is plugged in
    Ofdm ofdm;
};

/// What reaches the demodulator and how well it copes: everything that follows from signal and settings, without noise.
struct Reception {
    bool present = false;   // there is a signal at the port
    double level = 0;       // dBm at the port
    double offset = 0;      // Hz
    double bandwidth = 8;   // MHz of the channel
    int attenuator = 0;     // dB in use on the RF port
    double mixerLevel = 0;  // dBm behind the attenuator
    bool under = false, over = false;

    Ofdm ofdm;                 // what is demodulated
    bool lowPriority = false;  // the stream at the output
    bool locked = false;       // carriers and TPS
    bool tsLocked = false;     // MPEG transport stream
    double snr = 0, mer = 0;   // dB
    double berBeforeViterbi = 0.5, berAfterViterbi = 0.5, berAfterReedSolomon = 0.5;
    double phaseJitter = 0;  // degrees rms
    double shoulders = 0;    // dB, mean of both sides
    double carrierSuppression = 0;
};

/// The signal model. Every channel of bands III (7 MHz) and IV/V (8 MHz) carries a signal, which is the given one on
/// channel 21 (474 MHz) and up to 20 dB weaker elsewhere, as the seed says.
Reception Receive(const Signal& signal, const Settings& settings, unsigned seed);

/// A level in dBm in another unit; the impedance (50 or 75 ohm) counts for the units of voltage.
double ConvertLevel(double dbm, int unit, double impedance);

}  // namespace sim
