#include "core/Recipes.h"

#include <algorithm>

namespace tarn4x {

std::string_view TokenOf(std::span<const Token> tokens, std::int32_t value) {
    const auto token = std::ranges::find(tokens, value, &Token::Value);
    return token == tokens.end() ? std::string_view() : token->Text;
}

void clsTarn4x::RequireMode(std::string_view member, const AllowedModes& modes) {
    bool allowed = AbortRequested();
    for (const auto mode : modes.AnyOf) allowed |= get_MeasureMode() == mode;
    if (modes.AnyOf.size() == 0) {
        const bool above = get_MeasureMode() >= modes.From;
        const bool below = get_MeasureMode() <= modes.To;
        allowed |= above && below;
    }
    if (!allowed) RaiseWrongMode(member);
}

void clsTarn4x::RaiseWrongMode(std::string_view member) {
    RaiseFor(member, xtarnBadMeasureMode, "Wrong measurement mode selected");
}

void clsTarn4x::RequireManualCodeRate(std::string_view member) {
    const bool aborted = AbortRequested();
    const bool manual = get_StatusOfdmCodeRateMode() == tarnMan;
    if (!manual && !aborted) RaiseFor(member, xtarnBadCodeRateMode, "Code rate mode does not support operation");
}

void clsTarn4x::Prepare(const Read& read) {
    ForgetPrefix();
    if (read.Modes.Restricted()) RequireMode(read.ModeSource.empty() ? read.Member : read.ModeSource, read.Modes);
    if (read.NeedsManualCodeRate) RequireManualCodeRate(read.Member);
}

std::optional<std::string> clsTarn4x::AskRaw(std::string_view query, std::string_view expected,
                                             std::string_view delimiter) {
    std::string response = "---";
    channel.SendCommand(query, response, expected.empty() ? CommandChannel::Expected() : expected, delimiter);
    if (AbortRequested()) return {};
    return response;
}

std::optional<std::string> clsTarn4x::Ask(std::string_view query, std::string_view expected,
                                          std::string_view delimiter) {
    auto response = AskRaw(query, expected, delimiter);
    if (response) *response = answer.ParseResponse(*response);
    return response;
}

double clsTarn4x::ReadNumber(const Read& read) {
    return Asked(read, [](const std::string& text) { return LeadingNumber(text); });
}

std::int16_t clsTarn4x::ReadInteger(const Read& read) {
    return Asked(read, [](const std::string& text) { return ToInteger(LeadingNumber(text)); });
}

std::int32_t clsTarn4x::ReadLong(const Read& read) {
    return Asked(read, [](const std::string& text) { return ToLong(LeadingNumber(text)); });
}

std::optional<std::int32_t> clsTarn4x::AskToken(const Read& read, std::span<const Token> tokens) {
    const auto text = Asked(read, [](std::string came) { return std::optional(std::move(came)); });
    if (!text) return {};
    const auto token = std::ranges::find(tokens, *text, &Token::Text);
    if (token != tokens.end()) return token->Value;
    if (!read.Unknown.empty()) RaiseUnknown(read);
    return read.Otherwise;
}

void clsTarn4x::RaiseUnknown(const Read& read) {
    RaiseFor(read.Member, read.UnknownCode, std::string(read.Unknown).append(answer.Raw).append(read.UnknownEnd));
}

void clsTarn4x::Tell(const Write& write, std::string_view argument) {
    Guarded(LetOf(write.FailsAs.empty() ? write.Member : write.FailsAs),
            [&] { channel.SendCommand(std::string(write.Command).append(argument)); });
}

void clsTarn4x::WriteToken(const Write& write, std::span<const Token> tokens, std::int32_t value) {
    const auto token = TokenOf(tokens, value);
    if (token.empty() && !write.Invalid.empty()) RaiseInvalid(write.Member, write.Invalid, std::to_string(value));
    Tell(write, token);
}

void clsTarn4x::RequireRange(std::string_view member, std::int32_t value, std::int32_t lowest, std::int32_t highest,
                             std::string_view argument) {
    if (value >= lowest && value <= highest) return;
    RaiseFor(member, xtarnInvalidPropertyValue,
             std::string(argument.empty() ? member : argument).append(" value out of range"));
}

void clsTarn4x::RaiseInvalid(std::string_view member, std::string_view text, std::string_view value) {
    RaiseFor(member, xtarnInvalidPropertyValue, std::string(text).append(value).append(")"));
}

}  // namespace tarn4x
