#include "simulator/Script.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "simulator/OfdmParameters.h"
#include "simulator/Text.h"

namespace sim {

namespace {

using std::chrono::milliseconds;

template <class Number>
Number ToNumber(std::string_view text, Number lowest, Number highest) {
    const auto value = ParseNumber(text, lowest, highest);
    if (!value) Refuse("not a number that can be used here:", text);
    return *value;
}

milliseconds ToTime(std::string_view text, double unit) {
    return milliseconds{static_cast<long>(ToNumber(text, 0.0, 86400e3 / unit) * unit)};
}

std::string ToTerminator(std::string_view text) {
    constexpr std::pair<std::string_view, std::string_view> kTerminators[] = {
        {"lf", "\n"}, {"crlf", "\r\n"}, {"cr", "\r"}, {"none", ""}};
    for (const auto& [name, bytes] : kTerminators) {
        if (text == name) return std::string{bytes};
    }
    Refuse("unknown terminator", text);
}

std::string HexBytes(std::string_view text) {
    std::string bytes;
    for (const std::string_view piece : Split(text, ' ')) {
        if (piece.empty()) continue;
        unsigned value = 0;
        const auto [end, error] = std::from_chars(piece.data(), piece.data() + piece.size(), value, 16);
        if (error != std::errc{} || end != piece.data() + piece.size() || value > 255) Refuse("not a byte:", piece);
        bytes += static_cast<char>(value);
    }
    return bytes;
}

// The first word and the rest.
std::pair<std::string_view, std::string_view> FirstWord(std::string_view text) {
    text = Trim(text);
    const size_t end = std::min(text.find_first_of(" \t"), text.size());
    return {text.substr(0, end), Trim(text.substr(end))};
}

SignalChange ToChange(std::string_view text) {
    const auto [name, value] = FirstWord(text);
    SignalChange change{std::string{name}, std::string{value}};
    Signal trial;
    Change(trial, change);  // what it cannot make is refused while the script is read
    return change;
}

}  // namespace

Script::Script(std::string_view text) {
    int number = 0;
    for (const std::string_view line : Split(text, '\n')) {
        ++number;
        try {
            ReadLine(Trim(line));
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument("line " + std::to_string(number) + ": " + error.what());
        }
    }
}

void Script::ReadLine(std::string_view line) {
    if (line.empty() || line.starts_with('#')) return;
    const auto [word, rest] = FirstWord(line);
    if (word == "on") {
        rules_.push_back(ReadRule(rest));
    } else if (word == "signal") {
        signal_.push_back(ToChange(rest));
    } else if (word == "terminator") {
        terminator_ = ToTerminator(rest);
    } else if (word == "refuse" && rest == "connections") {
        refuse_ = true;
    } else {
        Refuse("unknown statement", line);
    }
}

Script::Rule Script::ReadRule(std::string_view text) {
    const std::vector<std::string_view> fields = Split(text, '|');
    Rule rule;
    rule.pattern = Normalise(fields[0]);
    if (rule.pattern.empty()) Refuse("'on' needs a command or 'any':", text);
    if (rule.pattern == "ANY") rule.pattern.clear();
    Treatment& t = rule.treatment;
    for (size_t i = 1; i < fields.size(); ++i) {
        const auto [word, value] = FirstWord(fields[i]);
        if (word == "answer") {
            t.answer = Unescape(value);
        } else if (word == "bytes") {
            t.raw = HexBytes(value);
        } else if (word == "silence") {
            t.silence = true;
        } else if (word == "deaf") {
            t.deaf = true;
        } else if (word == "delay") {
            t.delay = ToTime(value, 1);
        } else if (word == "gap") {
            t.gap = ToTime(value, 1);
        } else if (word == "busy") {
            t.busy = ToTime(value, 1000);
        } else if (word == "split") {
            for (const std::string_view size : Split(value, ',')) {
                t.pieces.push_back(ToNumber<size_t>(Trim(size), 1, 1u << 20));
            }
        } else if (word == "truncate") {
            t.truncate = ToNumber<size_t>(value, 0, 1u << 20);
        } else if (word == "close" || word == "reset") {
            t.reset = word == "reset";
            t.close = value == "before" ? Close::Before : value == "in" ? Close::In : Close::After;
            if (value != "before" && value != "in" && value != "after") Refuse("close or reset when?", value);
        } else if (word == "terminator") {
            t.terminator = ToTerminator(value);
        } else if (word == "error") {
            t.errors.push_back(ToNumber(value, -32768, 32767));
        } else if (word == "signal") {
            t.signal.push_back(ToChange(value));
        } else if (word == "times") {
            rule.times = ToNumber(value, 1, 1'000'000);
        } else if (word == "always") {
            rule.times = kAlways;
        } else if (word == "skip") {
            rule.skip = ToNumber(value, 1, 1'000'000);
        } else {
            Refuse("unknown action", fields[i]);
        }
    }
    return rule;
}

Treatment Script::Treat(std::string_view line) {
    const std::string text = Normalise(line);
    for (Rule& rule : rules_) {
        if (rule.times == 0 || (!rule.pattern.empty() && rule.pattern != text)) continue;
        if (rule.skip > 0) {
            --rule.skip;
            continue;
        }
        if (rule.times != kAlways) --rule.times;
        return rule.treatment;
    }
    return {};
}

void Change(Signal& signal, const SignalChange& change) {
    const std::string& value = change.value;
    constexpr std::pair<std::string_view, double Signal::*> kNumbers[] = {
        {"level", &Signal::level},
        {"cn", &Signal::cn},
        {"offset", &Signal::offset},
        {"jitter", &Signal::phaseJitter},
        {"bitrate", &Signal::bitRateOffset},
        {"iq-phase", &Signal::iqPhaseError},
        {"iq-imbalance", &Signal::iqImbalance},
        {"suppression", &Signal::carrierSuppression},
        {"shoulders", &Signal::shoulders},
    };
    for (const auto& [name, member] : kNumbers) {
        if (change.name == name) {
            signal.*member = ToNumber(value, -1e6, 1e6);
            return;
        }
    }
    const auto choose = [&](const auto& names) {
        const auto found = std::find(std::begin(names), std::end(names), Upper(value));
        if (found == std::end(names)) Refuse("no such value:", value);
        return static_cast<int>(found - std::begin(names));
    };
    static constexpr std::string_view kSwitch[] = {"OFF", "ON"}, kAlphas[] = {"NONE", "1", "2", "4"};
    if (change.name == "present") {
        signal.present = choose(kSwitch) == 1;
    } else if (change.name == "reference") {
        signal.externalReference = choose(kSwitch) == 1;
    } else if (change.name == "fft") {
        signal.ofdm.fft = choose(kFftNames);
    } else if (change.name == "guard") {
        signal.ofdm.guard = choose(kGuardNames);
    } else if (change.name == "qam") {
        signal.ofdm.constellation = choose(kConstellationNames);
    } else if (change.name == "alpha") {
        signal.ofdm.alpha = choose(kAlphas);
    } else if (change.name == "rate") {
        signal.ofdm.rateHp = choose(kRateNames);
    } else if (change.name == "lp-rate") {
        signal.ofdm.rateLp = choose(kRateNames);
    } else {
        Refuse("unknown signal condition", change.name);
    }
}

}  // namespace sim
