#include "simulator/Replay.h"

#include <algorithm>
#include <climits>
#include <stdexcept>
#include <utility>

#include "simulator/Text.h"

namespace sim {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kErrorQuery = "SYST:ERR?", kNoError = R"(0,"No error")";
constexpr int kReceived = 5, kSending = 6;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsTime(std::string_view text) {
    constexpr std::string_view kShape = "0000-00-00T00:00:00.000Z";
    return std::equal(text.begin(), text.end(), kShape.begin(), kShape.end(),
                      [](char c, char shape) { return shape == '0' ? IsDigit(c) : c == shape; });
}

milliseconds ToDuration(std::string_view text) {
    if (text.empty()) return {};
    const auto value = ParseNumber(text, 0.0, 86400e3);
    if (!value) Refuse("not a duration in milliseconds:", text);
    return std::chrono::round<milliseconds>(std::chrono::duration<double, std::milli>{*value});
}

int ToKind(std::string_view text) {
    const auto value = ParseNumber(text, INT_MIN, INT_MAX);
    if (!value) Refuse("not the kind of an entry:", text);
    return *value;
}

// The bytes that were on the wire: a trace is UTF-8, the instrument speaks Latin-1.
std::string WireBytes(std::string_view field) {
    std::string latin1;
    for (size_t i = 0; i < field.size(); ++i) {
        const unsigned byte = static_cast<unsigned char>(field[i]);
        if (byte < 0x80) {
            latin1 += field[i];
            continue;
        }
        const unsigned next = i + 1 < field.size() ? static_cast<unsigned char>(field[i + 1]) : 0;
        if ((byte != 0xC2 && byte != 0xC3) || (next & 0xC0) != 0x80) Refuse("a character outside Latin-1 in", field);
        latin1 += static_cast<char>((byte & 3) << 6 | (next & 0x3F));
        ++i;
    }
    return Unescape(latin1);
}

// A block is recorded by its length alone: "1024 bytes".
bool IsBlock(std::string_view data) {
    constexpr std::string_view kUnit = " bytes";
    return data.size() > kUnit.size() && data.ends_with(kUnit) &&
           std::all_of(data.begin(), data.end() - kUnit.size(), IsDigit);
}

}  // namespace

void Replay::Add(std::string_view trace) {
    std::vector<std::string_view> lines = Split(trace, '\n');
    const bool cut = !lines.back().empty();
    lines.pop_back();
    int number = 0;
    for (std::string_view line : lines) {
        ++number;
        if (line.ends_with('\r')) line.remove_suffix(1);
        try {
            ReadLine(line);
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument("line " + std::to_string(number) + ": " + error.what());
        }
    }
    if (cut && !open_.empty()) {
        // Its answer may be what was cut: whether there was one is not known.
        const auto history = histories_.find(std::exchange(open_, {}));
        history->second.exchanges.pop_back();
        if (history->second.exchanges.empty()) histories_.erase(history);
    }
}

void Replay::ReadLine(std::string_view line) {
    const std::vector<std::string_view> fields = Split(line, '\t');
    if (fields.size() != 6) {
        throw std::invalid_argument("fields separated by tabs: " + std::to_string(fields.size()) + ", not 6");
    }
    if (!IsTime(fields[0])) Refuse("not a time:", fields[0]);
    const milliseconds duration = ToDuration(fields[1]);
    const int kind = ToKind(fields[2]);
    if (fields[3] != "TARN" || (kind != kSending && kind != kReceived)) return;
    const std::string text = Normalise(WireBytes(fields[4]));
    if (text.empty()) return;  // the rest of a block, which was read without a query

    std::vector<Exchange>& exchanges = histories_[text].exchanges;
    if (kind == kSending) {
        exchanges.emplace_back();  // silence, as long as no answer is found
        open_ = text;
        return;
    }
    // A trace that begins behind the query still tells the answer.
    if (exchanges.empty() || exchanges.back().outcome != Outcome::Silence) exchanges.emplace_back();
    const bool block = IsBlock(fields[5]);
    exchanges.back() = {block ? Outcome::Block : Outcome::Answer, block ? "" : WireBytes(fields[5]), duration};
    if (open_ == text) open_.clear();
}

void Replay::Apply(std::string_view line, bool timing, Treatment& treatment) {
    if (Empty()) return;
    const std::string text = Normalise(line);
    const auto history = histories_.find(text);
    const bool known = history != histories_.end();
    Exchange exchange;
    if (known && history->second.next < history->second.exchanges.size()) {
        exchange = history->second.exchanges[history->second.next++];
    } else if (text == kErrorQuery) {
        exchange = {Outcome::Answer, std::string{kNoError}};
    } else if (known) {
        exchange = history->second.exchanges.back();
    } else {
        return;
    }
    if (timing && treatment.delay.count() == 0) treatment.delay = exchange.duration;
    if (treatment.answer || treatment.raw) return;
    if (exchange.outcome == Outcome::Answer) treatment.answer = exchange.answer;
    if (exchange.outcome == Outcome::Silence) treatment.silence = true;
}

}  // namespace sim
