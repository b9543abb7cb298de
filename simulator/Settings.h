#pragma once

namespace sim {

/// The order of the tokens that SENSe:DVBT:MEASure takes.
enum MeasureMode {
    NORM,
    CDI,
    MDB,
    MPCT,
    INT,
    IQ,
    APH,
    AGD,
    POL,
    SP_1,
    SP_2,
    SP_3,
    ADIS,
    CCDF,
    IR_1,
    IR_2,
    IR_3,
    HIST,
    PAR,
    CENV
};

// The other lists of tokens whose members the program has to tell apart, in the order of their tokens.
enum OperatingMode { kFirstMode = 0, kDvbt = 12, kLastMode = 14 };
enum CodeRateMode { kRateAuto, kRateManual, kRateTps };
enum Port { kPortRf, kPortDemodulator, kPortIf };
enum LevelUnit { kDbmv, kDbpw, kDbuw, kDbm, kDbuv, kMv };
enum Saw { kSawOff };  // then 6, 7 and 8 MHz
enum DemodAttenuator { kDemodAuto, kDemodLowAttenuator, kDemodLowPreamplifier, kDemodHigh };

/// The OFDM transmission parameters of EN 300 744, as indices of the lists in OfdmParameters.h.
struct Ofdm {
    int fft = 1;            // 2K, 8K
    int guard = 1;          // 1/4, 1/8, 1/16, 1/32
    int constellation = 2;  // QPSK, 16-QAM, 64-QAM
    int alpha = 0;          // not hierarchical, 1, 2, 4
    int rateHp = 1;         // 1/2, 2/3, 3/4, 5/6, 7/8
    int rateLp = 1;

    friend bool operator==(const Ofdm&, const Ofdm&) = default;
};

/// Everything that commands set, with the values that a reset gives.
struct Settings {
    int operatingMode = kDvbt;
    int measureMode = NORM;
    double frequency = 474e6;  // Hz

    int port = kPortRf;
    bool attenuatorAuto = true;
    int attenuator = 0;      // dB, in use while attenuatorAuto is off
    int attenuatorMode = 1;  // low noise, normal, low distortion, lowest distortion
    int impedance = 1;       // 50, 75 ohm
    int demodAttenuator = kDemodAuto;
    bool highAdjacentPower = false;

    Ofdm ofdm;  // what manual mode demodulates
    int codeRateMode = kRateAuto;
    int mpegOutput = 0;  // high, low priority
    int optimisation = 3;

    bool noise = false;
    double noiseCn = 30;  // dB
    int symbolCount = 100;
    double spectrumStart = -448, spectrumStop = 448;  // in 10 kHz
    int detector = 1;
    bool averaging = false;
    int averageCount = 10;
    int startCarrier = 0, stopCarrier = 6816;

    int loopBandwidth = 1;
    int berIntegration = 2;  // external, 1, 10, 100, 1000
    int saw = 3;
    int channelBandwidth = 2;  // 6, 7, 8 MHz
    int externalReference = 0;
    int levelUnit = kDbm;

    int statusEnable = 0, eventEnable = 0;
};

}  // namespace sim
