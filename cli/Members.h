#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Values.h"
#include "driver/MemberTable.h"

namespace tarn4x {
class clsStatistics;
class clsTarn4x;
}  // namespace tarn4x

namespace cli {

/// An argument of a member, as driver/Members.def declares it.
struct Parameter {
    std::string_view Name, Type;
};
std::vector<Parameter> ParametersOf(const tarn4x::MemberRow& member);

/// A result in the alarm statistics, asked for as "AlarmStatistics.Level".
struct StatisticsRow {
    std::string_view Name, Type, Text;
    Value (*Get)(const tarn4x::clsStatistics& statistics);
};
std::span<const StatisticsRow> AllStatistics();

/// One thing that the driver can be asked for: a member with its arguments.
struct Request {
    std::string Name;  ///< "ImpulseResponseAtten(5)", as the list of members writes it
    const tarn4x::MemberRow* Member;
    const StatisticsRow* Part = nullptr;  ///< of the alarm statistics
    std::vector<double> Arguments = {};

    /// Whether it is about an echo of the impulse response, which is measured as a whole.
    bool IsEcho() const;
    std::string_view Type() const { return Part ? Part->Type : Member->Type; }
    std::string_view Unit() const;
    /// The measure modes in which it can be had.
    const tarn4x::AllowedModes& Modes() const;
};

/// What a user's word asks for, in any letter case: "RF", "StatusOfdmCodeRate(high)". A member without its argument is
/// all there is of it, "ImpulseResponse" all echoes and "AlarmStatistics" all its parts. Throws Failure for an unknown
/// member, with the nearest ones, and for wrong arguments.
std::vector<Request> RequestsFor(std::string_view word);

/// Reads a property other than the alarm statistics, or calls a method or function. Throws what the member raises.
Value GetOrCall(tarn4x::clsTarn4x& driver, const Request& request);
/// Writes a property. Throws what the member raises.
void Put(tarn4x::clsTarn4x& driver, const Request& request, double value);

}  // namespace cli
