#include "simulator/Screen.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "simulator/Canvas.h"
#include "simulator/Echoes.h"
#include "simulator/OfdmParameters.h"
#include "simulator/Pcx.h"
#include "simulator/Random.h"
#include "simulator/Receiver.h"
#include "simulator/Text.h"

namespace sim {

namespace {

constexpr int kWidth = 320, kHeight = 240;
constexpr int kLeft = 34, kTop = 28, kPlotWidth = 276, kPlotHeight = 180;

std::string Title(const Settings& settings) {
    switch (settings.measureMode) {
        case NORM:
        case PAR:
            return "PARAMETERS";
        case CDI:
        case IQ:
            return "CONSTELLATION";
        case SP_1:
        case SP_2:
        case SP_3:
            return "SPECTRUM";
        case IR_1:
        case IR_2:
        case IR_3:
            return "IMPULSE RESPONSE";
        case APH:
            return "AMPLITUDE / PHASE";
        case AGD:
            return "AMPLITUDE / GROUP DELAY";
        case POL:
            return "POLAR RESPONSE";
        case ADIS:
            return "AMPLITUDE DISTRIBUTION";
        case CCDF:
            return "CCDF";
        case CENV:
            return "CREST FACTOR ENVELOPE";
        case HIST:
            return "MER HISTORY";
        case INT:
            return "INTERFERENCE";
        default:
            return "MER OVER CARRIERS";
    }
}

class Painter {
  public:
    explicit Painter(const Receiver& receiver)
        : receiver_(receiver),
          reception_(receiver.Receive()),
          echoes_(receiver.configuration.seed, receiver.settings.frequency),
          random_(Random{receiver.configuration.seed}.At(static_cast<uint64_t>(receiver.Frames()) + 7777)) {}

    Canvas Draw() {
        const Settings& settings = receiver_.settings;
        canvas_.Fill(0, 0, kWidth, 12, kBlue);
        canvas_.Write(4, 3, Title(settings), kWhite);
        canvas_.Write(220, 3, Print("%.3f MHZ", settings.frequency / 1e6), kWhite);
        canvas_.Write(4, kHeight - 10, State(), reception_.tsLocked ? kGreen : kRed);
        if (settings.operatingMode != kDvbt) return canvas_;
        switch (settings.measureMode) {
            case NORM:
            case PAR:
                Parameters();
                break;
            case CDI:
            case IQ:
                Constellation();
                break;
            case SP_1:
            case SP_2:
            case SP_3:
                Spectrum();
                break;
            case IR_1:
            case IR_2:
            case IR_3:
                ImpulseResponse();
                break;
            case POL:
                Polar();
                break;
            default:
                Curves();
                break;
        }
        return canvas_;
    }

  private:
    std::string State() const {
        const char* lock = reception_.tsLocked ? "TS LOCKED" : reception_.locked ? "TS UNLOCKED" : "NO SIGNAL LOCK";
        return Print("%s   LEVEL %.1f DBM", lock, reception_.level);
    }

    double Noise() { return random_.At(next_++).Normal(); }

    void Parameters() {
        const Reception& r = reception_;
        const auto value = [&](const char* format, double number) { return r.locked ? Print(format, number) : "---"; };
        const auto ratio = [&](double ber) { return ber < 1e-8 ? "<1.0E-8" : value("%.1E", ber); };
        const auto name = [&](std::string_view text) { return r.locked ? std::string{text} : "---"; };
        const std::pair<const char*, std::string> lines[] = {
            {"FFT MODE", name(kFftNames[r.ofdm.fft])},
            {"GUARD INTERVAL", name(kGuardNames[r.ofdm.guard])},
            {"QAM ORDER", name(kConstellationNames[r.ofdm.constellation])},
            {"CODE RATE", name(kRateNames[CodeRate(r.ofdm, r.lowPriority)])},
            {"RF LEVEL", Print("%.1f DBM", r.level)},
            {"FREQUENCY OFFSET", value("%.3f KHZ", r.offset / 1e3)},
            {"MER (RMS)", value("%.1f DB", r.mer)},
            {"SIGNAL/NOISE", value("%.1f DB", r.snr)},
            {"PHASE JITTER", value("%.2f DEG", r.phaseJitter)},
            {"BER BEFORE VIT", ratio(r.berBeforeViterbi)},
            {"BER BEFORE RS", ratio(r.berAfterViterbi)},
        };
        int y = kTop;
        for (const auto& [label, text] : lines) {
            canvas_.Write(12, y, label, kWhite);
            canvas_.Write(180, y, text, kYellow);
            y += 17;
        }
    }

    void Axes(std::string_view unit) {
        canvas_.Frame(kLeft, kTop, kPlotWidth, kPlotHeight, kGrey);
        for (int i = 1; i < 4; ++i) {
            canvas_.Line(kLeft, kTop + kPlotHeight * i / 4, kLeft + kPlotWidth - 1, kTop + kPlotHeight * i / 4, kGrey);
        }
        canvas_.Write(2, kTop - 10, unit, kWhite);
    }

    // A curve over the whole width; f gives the height, 0 at the bottom and 1 at the top, for x from 0 to 1.
    void Curve(Colour colour, const std::function<double(double)>& f) {
        int last = 0;
        for (int i = 1; i < kPlotWidth - 1; ++i) {
            const double height = std::clamp(f(static_cast<double>(i) / kPlotWidth), 0.0, 1.0);
            const int y = kTop + kPlotHeight - 2 - static_cast<int>(height * (kPlotHeight - 3));
            if (i > 1) canvas_.Line(kLeft + i - 1, last, kLeft + i, y, colour);
            last = y;
        }
    }

    void Constellation() {
        const int size = kPlotHeight, left = (kWidth - size) / 2;
        canvas_.Frame(left, kTop, size, size, kGrey);
        canvas_.Line(left, kTop + size / 2, left + size - 1, kTop + size / 2, kGrey);
        canvas_.Line(left + size / 2, kTop, left + size / 2, kTop + size - 1, kGrey);
        if (!reception_.present) return;
        constexpr int kSymbols = 1600;
        const int levels = 2 << reception_.ofdm.constellation;
        // Points at odd distances; their mean power is 2 (M - 1) / 3 (EN 300 744, 4.3.5).
        const double power = 2.0 * (levels * levels - 1) / 3;
        const double spread = std::sqrt(power * std::pow(10, -reception_.mer / 10) / 2);
        const double radius = reception_.locked ? 0 : std::sqrt(power);
        for (int i = 0; i < kSymbols; ++i) {
            double point[2];
            for (double& axis : point) {
                const int level = static_cast<int>(random_.At(next_++).Uniform() * levels);
                const double ideal = 2 * level + 1 - levels;
                axis = (radius > 0 ? radius * Noise() / 2 : ideal) + spread * Noise();
            }
            const auto pixel = [&](double v) { return static_cast<int>(std::lround(v * size / (2.2 * levels))); };
            const int x = size / 2 + pixel(point[0]), y = size / 2 - pixel(point[1]);
            if (x > 0 && x < size - 1 && y > 0 && y < size - 1) canvas_.Dot(left + x, kTop + y, kGreen);
        }
    }

    void Spectrum() {
        constexpr double kRange = 80;  // dB over the height
        Axes("DB");
        const Settings& settings = receiver_.settings;
        const double edge = OccupiedBandwidth(reception_.bandwidth) / 2e6;
        const double floor = reception_.present ? -reception_.snr - 10 : -70;
        const double span = (settings.spectrumStop - settings.spectrumStart) / 100;
        Curve(kYellow, [&](double x) {
            const double distance = settings.spectrumStart / 100 + span * x - reception_.offset / 1e6;
            const double outside = std::abs(distance) - edge;
            double level = floor;
            if (reception_.present) {
                level = outside < 0 ? 20 * std::log10(std::abs(echoes_.Gain(distance)))
                                    : std::max(-reception_.shoulders - 20 * outside, floor);
            }
            return 1 - (8 - level - (settings.averaging ? 0.2 : 1.0) * Noise()) / kRange;
        });
        canvas_.Write(kLeft, kTop + kPlotHeight + 6, Print("%.2f MHZ", settings.spectrumStart / 100), kWhite);
        canvas_.Write(kWidth - 66, kTop + kPlotHeight + 6, Print("%.2f MHZ", settings.spectrumStop / 100), kWhite);
    }

    void ImpulseResponse() {
        constexpr double kRange = 50, kLongest = 30;  // dB, us
        Axes("DB");
        if (!reception_.locked) return;
        for (const Echo& path : echoes_.Paths()) {
            const int x = kLeft + 10 + static_cast<int>(path.delay / kLongest * (kPlotWidth - 20));
            const int height = static_cast<int>((1 - path.attenuation / kRange) * (kPlotHeight - 8));
            if (height > 0) {
                canvas_.Line(x, kTop + kPlotHeight - 2, x, kTop + kPlotHeight - 2 - height, kGreen);
            }
        }
        canvas_.Write(kLeft, kTop + kPlotHeight + 6, "0", kWhite);
        canvas_.Write(kWidth - 40, kTop + kPlotHeight + 6, Print("%.0f US", kLongest), kWhite);
    }

    void Polar() {
        const int size = kPlotHeight, left = (kWidth - size) / 2;
        canvas_.Frame(left, kTop, size, size, kGrey);
        canvas_.Line(left, kTop + size / 2, left + size - 1, kTop + size / 2, kGrey);
        if (!reception_.locked) return;
        const double half = OccupiedBandwidth(reception_.bandwidth) / 2e6;
        for (int i = 0; i < 600; ++i) {
            const std::complex<double> gain = echoes_.Gain(half * (i / 300.0 - 1));
            canvas_.Dot(left + size / 2 + static_cast<int>(gain.real() * size / 5),
                        kTop + size / 2 - static_cast<int>(gain.imag() * size / 5), kGreen);
        }
    }

    // Everything else is a curve or two of something over the band, over the level or over time.
    void Curves() {
        const Reception& r = reception_;
        Axes("");
        const double half = OccupiedBandwidth(r.bandwidth) / 2e6;
        const auto amplitude = [&](double x) { return 20 * std::log10(std::abs(echoes_.Gain(half * (2 * x - 1)))); };
        const auto exceeded = [](double db) { return std::exp(-std::pow(10, db / 10)); };  // of a Rayleigh envelope
        const int mode = receiver_.settings.measureMode;
        if (mode == ADIS) {
            Curve(kYellow, [&](double x) { return 4.5 * x * std::exp(-8 * x * x) * 0.8; });
        } else if (mode == CCDF || mode == CENV) {
            Curve(kYellow, [&](double x) { return 1 + std::log10(std::max(exceeded(15 * x), 1e-8)) / 8; });
        } else if (!r.locked) {
            canvas_.Write(kLeft + 8, kTop + 8, kNoValue, kRed);
        } else if (mode == HIST) {
            Curve(kYellow, [&](double) { return (r.mer + 0.1 * Noise()) / 50; });
        } else if (mode == APH || mode == AGD) {
            Curve(kYellow, [&](double x) { return 0.75 + amplitude(x) / 40; });
            Curve(kGreen, [&](double x) {
                const double distance = half * (2 * x - 1);
                return mode == APH ? 0.3 + std::arg(echoes_.Gain(distance)) / 10
                                   : 0.3 + echoes_.GroupDelay(distance) / 20e3;
            });
        } else {
            Curve(kYellow, [&](double x) { return (r.mer + amplitude(x) + 0.2 * Noise()) / 50; });
        }
    }

    const Receiver& receiver_;
    Reception reception_;
    Echoes echoes_;
    Random random_;
    uint64_t next_ = 0;
    Canvas canvas_{kWidth, kHeight};
};

}  // namespace

std::string DrawScreen(const Receiver& receiver) {
    std::string picture = EncodePcx(Painter{receiver}.Draw());
    if (picture.size() > kLongestScreen) throw ScpiError{-310};
    return picture;
}

}  // namespace sim
