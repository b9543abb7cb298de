#include "cli/Commands.h"
#include "cli/Visits.h"

namespace cli {

namespace {

/// Reads in one measure mode after the other; the readings stand in the order in which they were asked for.
void ReadEverywhere(Session& session, Travel& travel, std::span<const Request> requests,
                    std::vector<std::optional<Reading>>& readings) {
    Reader reader(session);
    for (const auto& visit : PlanVisits(requests, travel.Found())) {
        travel.GoTo(visit.Mode);
        for (const auto place : visit.Places) readings[place] = reader.Read(requests[place]);
    }
}

void ReadHere(Session& session, std::span<const Request> requests, std::vector<std::optional<Reading>>& readings) {
    Reader reader(session);
    for (std::size_t place = 0; place < requests.size(); ++place) readings[place] = reader.Read(requests[place]);
}

Outcome Show(Context& context, const std::vector<std::optional<Reading>>& readings) {
    Outcome outcome;
    std::vector<std::vector<std::string>> rows;
    for (const auto& reading : readings) {
        if (!reading) continue;
        outcome.Results.push_back(ToJson(*reading));
        if (reading->Error) {
            outcome.Errors.push_back(*reading->Error);
        } else {
            rows.push_back({reading->Asked.Name, reading->Text()});
        }
    }
    if (context.Out.IsJson()) return outcome;
    for (const auto& line : InColumns(rows)) context.Out.Line(line);
    return outcome;
}

}  // namespace

Outcome Get(Context& context, const GetOptions& options) {
    const auto requests = PropertiesFor(options.Members);
    std::vector<std::optional<Reading>> readings(requests.size());
    std::optional<Failure> end;
    std::optional<Travel> travel;  // goes back when the results have been shown
    try {
        if (options.Switch) {
            ReadEverywhere(context.Receiver, travel.emplace(context.Receiver), requests, readings);
        } else {
            ReadHere(context.Receiver, requests, readings);
        }
    } catch (const Stopped&) {  // what was measured is kept
        end = StoppedByUser();
    } catch (const Failure& failure) {
        end = failure;
    }
    auto outcome = Show(context, readings);
    if (end) outcome.Errors.insert(outcome.Errors.begin(), *end);
    return outcome;
}

Outcome Identify(Context& context) {
    return Get(context,
               {.Members = {"Manufacturer", "ModelNumber", "SerialNumber", "FirmwareVersion", "InstalledHardware"}});
}

}  // namespace cli
