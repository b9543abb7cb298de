#include "driver/Recipes.h"

#include <algorithm>
#include <cmath>

#include "driver/RuntimeErrors.h"

namespace tarn4x {

std::string_view TokenOf(std::span<const Token> tokens, std::int32_t value) {
    const auto token = std::ranges::find(tokens, value, &Token::Value);
    return token == tokens.end() ? std::string_view() : token->Text;
}

std::optional<std::int32_t> ValueOf(std::span<const Token> tokens, std::string_view text) {
    const auto token = std::ranges::find(tokens, text, &Token::Text);
    return token == tokens.end() ? std::nullopt : std::optional(token->Value);
}

bool clsTarn4x::InModeOf(Members member) {
    const auto& modes = RowOf(member).Modes;
    bool allowed = false;
    for (int i = 0; i < modes.Comparisons; ++i) allowed |= modes.Contain(get_MeasureMode());
    return allowed;
}

void clsTarn4x::RequireMode(Members member, std::string_view source) {
    const bool aborted = AbortRequested();
    if (!InModeOf(member) && !aborted) RaiseWrongMode(source.empty() ? NameOf(member) : source);
}

void clsTarn4x::RaiseWrongMode(std::string_view source) {
    RaiseFor(source, xtarnBadMeasureMode, "Wrong measurement mode selected");
}

void clsTarn4x::RequireManualCodeRate(Members member) {
    const bool aborted = AbortRequested();
    const bool manual = get_StatusOfdmCodeRateMode() == tarnMan;
    if (!manual && !aborted) RaiseFor(member, xtarnBadCodeRateMode, "Code rate mode does not support operation");
}

void clsTarn4x::Prepare(const Read& read) {
    ForgetPrefix();
    if (RowOf(read.Member).Modes.Restricted()) RequireMode(read.Member, read.ModeSource);
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
    return Asked(read, [&](const std::string& text) {
        const double number = read.Scale * LeadingNumber(text);
        if (!std::isfinite(number)) RaiseOverflow();
        return number;
    });
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
    const auto value = ValueOf(tokens, *text);
    if (!value && !read.Unknown.empty()) RaiseUnknown(read, read.AsItCame ? *text : answer.Raw);
    return value.value_or(read.Otherwise);
}

void clsTarn4x::RaiseUnknown(const Read& read, std::string_view raw) {
    RaiseFor(read.Member, read.UnknownCode, std::string(read.Unknown).append(raw).append(read.UnknownEnd));
}

void clsTarn4x::Tell(const Write& write, std::string_view argument) {
    Guarded(LetOf(write.Member, write.FailsAs),
            [&] { channel.SendCommand(std::string(write.Command).append(argument)); });
}

void clsTarn4x::WriteToken(const Write& write, std::span<const Token> tokens, std::int32_t value) {
    const auto token = TokenOf(tokens, value);
    if (token.empty() && write.Refuses) {
        RaiseInvalid(write.Member, std::to_string(value), write.Refusal);
    }
    Tell(write, token);
}

void clsTarn4x::PutParameter(const Write& write, std::span<const Token> tokens, std::int32_t value,
                             const Bounds& bounds) {
    if (write.NeedsManualCodeRate) RequireManualCodeRate(write.Member);
    RequireRange(write.Member, value, bounds);
    WriteToken(write, tokens, value);
}

void clsTarn4x::RequireRange(Members member, std::int32_t value, const Bounds& bounds, std::string_view argument) {
    if (value < bounds.Lowest || value > bounds.Highest) RaiseOutOfRange(member, argument);
}

void clsTarn4x::RaiseOutOfRange(Members member, std::string_view argument) {
    const auto name = argument.empty() ? NameOf(member) : argument;
    RaiseFor(member, xtarnInvalidPropertyValue, std::string(name).append(" value out of range"));
}

void clsTarn4x::RaiseInvalid(Members member, std::string_view value, std::string_view refusal) {
    std::string text(refusal);
    if (text.empty()) text.append("Invalid property value (").append(NameOf(member)).append(" = ");
    RaiseFor(member, xtarnInvalidPropertyValue, text.append(value).append(")"));
}

}  // namespace tarn4x
