#include "simulator/CommandRows.h"

#include <algorithm>

#include "simulator/OfdmParameters.h"
#include "simulator/Receiver.h"
#include "simulator/Text.h"

namespace sim {

namespace {

Query WithoutParameters(std::function<std::string(Receiver&)> answer) {
    return [answer = std::move(answer)](Receiver& receiver, const Arguments& arguments) {
        arguments.Expect(0);
        return answer(receiver);
    };
}

void Apply(Receiver& receiver, Effect effect) {
    if (effect == Effect::Restart) receiver.Restart();
}

}  // namespace

int TokenIndex(const std::vector<std::string_view>& tokens, const Arguments& arguments) {
    const std::string text = Upper(arguments.Joined());
    const auto found = std::find(tokens.begin(), tokens.end(), text);
    if (found == tokens.end()) throw ScpiError{-224};
    return static_cast<int>(found - tokens.begin());
}

Command Choice(std::string_view pattern, int Settings::*setting, const std::vector<std::string_view>& tokens,
               Effect effect) {
    return {pattern,
            [=](Receiver& receiver, const Arguments& arguments) {
                receiver.settings.*setting = TokenIndex(tokens, arguments);
                Apply(receiver, effect);
            },
            WithoutParameters([=](const Receiver& receiver) {
                return std::string{tokens[static_cast<size_t>(receiver.settings.*setting)]};
            })};
}

Command OfdmChoice(std::string_view pattern, int Ofdm::*parameter, const std::vector<std::string_view>& tokens,
                   std::string_view automatic) {
    return {pattern,
            [=](Receiver& receiver, const Arguments& arguments) {
                receiver.settings.ofdm.*parameter = TokenIndex(tokens, arguments);
                Settings& settings = receiver.settings;
                settings.stopCarrier = std::min(settings.stopCarrier, LastCarrier(settings.ofdm.fft));
                settings.startCarrier = std::min(settings.startCarrier, settings.stopCarrier);
                receiver.Restart();
            },
            WithoutParameters([=](const Receiver& receiver) {
                const bool manual = receiver.settings.codeRateMode == kRateManual;
                if (!manual && !automatic.empty()) return std::string{automatic};
                return std::string{tokens[static_cast<size_t>(receiver.settings.ofdm.*parameter)]};
            })};
}

Command Switch(std::string_view pattern, bool Settings::*setting, std::string_view off, std::string_view on,
               Effect effect) {
    return {pattern,
            [=](Receiver& receiver, const Arguments& arguments) {
                receiver.settings.*setting = TokenIndex({"OFF", "0", "ON", "1"}, arguments) >= 2;
                Apply(receiver, effect);
            },
            WithoutParameters(
                [=](const Receiver& receiver) { return std::string{receiver.settings.*setting ? on : off}; })};
}

Command Number(std::string_view pattern, double Settings::*setting, double lowest, double highest, Effect effect) {
    return {pattern,
            [=](Receiver& receiver, const Arguments& arguments) {
                arguments.Expect(1);
                receiver.settings.*setting = arguments.Number(0, lowest, highest);
                Apply(receiver, effect);
            },
            WithoutParameters([=](const Receiver& receiver) { return Shortest(receiver.settings.*setting); })};
}

Command Whole(std::string_view pattern, int Settings::*setting, int lowest, int highest) {
    return {pattern,
            [=](Receiver& receiver, const Arguments& arguments) {
                arguments.Expect(1);
                receiver.settings.*setting = arguments.Whole(0, lowest, highest);
            },
            WithoutParameters([=](const Receiver& receiver) { return std::to_string(receiver.settings.*setting); })};
}

Command Checked(Command row, std::function<void(const Receiver&)> check) {
    row.set = [set = std::move(row.set), check = std::move(check)](Receiver& receiver, const Arguments& arguments) {
        const Settings before = receiver.settings;
        set(receiver, arguments);
        try {
            check(receiver);
        } catch (const ScpiError&) {
            receiver.settings = before;
            throw;
        }
    };
    return row;
}

Command Answer(std::string_view pattern, std::function<std::string(Receiver&)> answer) {
    return {pattern, nullptr, WithoutParameters(std::move(answer))};
}

Command Action(std::string_view pattern, std::function<void(Receiver&)> action) {
    return {pattern,
            [action = std::move(action)](Receiver& receiver, const Arguments& arguments) {
                arguments.Expect(0);
                action(receiver);
            },
            nullptr};
}

}  // namespace sim
