#include "cli/Reading.h"

#include <algorithm>

#include "cli/Enumerations.h"
#include "driver/members/clsStatistics.h"

namespace cli {

namespace {

/// Whether it is a number that the instrument gives with a marker and a remark.
bool IsMeasured(const Request& request) {
    const auto type = request.Type();
    return !request.Part && (type == "Double" || type == "Long" || type == "Integer");
}

/// The level's unit is a setting of the instrument.
std::string UnitOf(tarn4x::clsTarn4x& driver, const Request& request) {
    if (request.Member != &tarn4x::RowOf(tarn4x::Members::MeasureRfLevel)) return std::string(request.Unit());
    const auto units = ValuesOf("TarnSetupLevelUnits");
    const auto unit = std::ranges::find(units, driver.get_SetupLevelUnit(), &NamedValue::Value);
    return unit == units.end() ? std::string() : std::string(unit->Help);
}

}  // namespace

bool Reading::HasValue() const {
    constexpr std::string_view none[] = {"---", "UNDER", "OVER", "NORF"};
    return !Error && std::ranges::find(none, Prefix) == std::end(none);
}

std::optional<double> Reading::Number() const {
    const auto* number = std::get_if<double>(&Result);
    return number && HasValue() && IsMeasured(Asked) ? std::optional(*number) : std::nullopt;
}

std::string Reading::Text() const {
    if (!HasValue()) return Prefix;
    auto text = ShowValue(Result, Asked.Type());
    if (!Prefix.empty()) text = Prefix + ' ' + text;
    if (const auto* number = std::get_if<double>(&Result); number && !ValuesOf(Asked.Type()).empty()) {
        if (!NameOf(Asked.Type(), static_cast<std::int32_t>(*number)).empty()) {
            text += " (" + ShowValue(*number, "Long") + ')';
        }
    } else if (!Unit.empty()) {
        text += ' ' + Unit;
    }
    if (!Postfix.empty()) text += ' ' + Postfix;
    return text;
}

Reading Reader::Read(const Request& request) {
    Reading reading{.Asked = request};
    try {
        session_.Try(request, [&] {
            auto& driver = session_.OnLine();
            reading.Unit = UnitOf(driver, request);
            reading.Result = Ask(request);
            if (!IsMeasured(request)) return;
            reading.Prefix = driver.get_Prefix();
            // The driver has no remarks on echoes; what it keeps is about another answer.
            if (!request.IsEcho()) reading.Postfix = driver.get_Postfix();
        });
    } catch (const Failure& failure) {
        if (failure.Ends != Refused) throw;
        reading.Error = failure;
    }
    return reading;
}

Value Reader::Ask(const Request& request) {
    auto& driver = session_.Driver();
    if (request.Part) {
        if (!statistics_) statistics_ = driver.get_AlarmStatistics();
        return request.Part->Get(*statistics_);
    }
    if (request.IsEcho() && !echoesAreMeasured_) {
        driver.MeasureTdImpulseResponse();
        echoesAreMeasured_ = true;
    }
    return GetOrCall(driver, request);
}

std::vector<Request> PropertiesFor(std::span<const std::string> words) {
    std::vector<Request> properties;
    for (const auto& word : words) {
        for (auto& request : RequestsFor(word)) {
            const auto access = request.Member->Allows;
            if (access != tarn4x::Access::Read && access != tarn4x::Access::ReadAndWrite) {
                throw Misuse(std::string(request.Member->Name) + " cannot be read, it is called",
                             "tarn4x call " + std::string(request.Member->Name));
            }
            properties.push_back(std::move(request));
        }
    }
    return properties;
}

}  // namespace cli
