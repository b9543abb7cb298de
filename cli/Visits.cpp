#include "cli/Visits.h"

#include <algorithm>
#include <iterator>

#include "cli/Enumerations.h"

namespace cli {

namespace {

using tarn4x::TarnMeasureModes;

bool Exists(const Request& request, TarnMeasureModes mode) {
    return !request.Modes().Restricted() || request.Modes().Contain(mode);
}

std::vector<TarnMeasureModes> ModesOf(const Request& request) {
    std::vector<TarnMeasureModes> modes;
    for (const auto& value : ValuesOf("TarnMeasureModes")) {
        const auto mode = static_cast<TarnMeasureModes>(value.Value);
        if (request.Modes().Contain(mode)) modes.push_back(mode);
    }
    return modes;
}

}  // namespace

std::vector<Visit> PlanVisits(std::span<const Request> requests, TarnMeasureModes present) {
    std::vector<std::size_t> left(requests.size());
    for (std::size_t place = 0; place < left.size(); ++place) left[place] = place;
    std::vector<Visit> visits;
    const auto visit = [&](TarnMeasureModes mode) {
        const auto there = std::stable_partition(left.begin(), left.end(),
                                                 [&](std::size_t place) { return !Exists(requests[place], mode); });
        visits.push_back({mode, {there, left.end()}});
        left.erase(there, left.end());
    };
    visit(present);
    while (!left.empty()) {
        const auto choosiest =
            std::ranges::min_element(left, {}, [&](std::size_t place) { return ModesOf(requests[place]).size(); });
        const auto modes = ModesOf(requests[*choosiest]);
        visit(*std::ranges::max_element(modes, {}, [&](TarnMeasureModes mode) {
            return std::ranges::count_if(left, [&](std::size_t place) { return Exists(requests[place], mode); });
        }));
    }
    return visits;
}

std::optional<TarnMeasureModes> ModeForAll(std::span<const Request> requests, TarnMeasureModes present) {
    std::vector<TarnMeasureModes> modes{present};
    for (const auto& request : requests) std::ranges::copy(ModesOf(request), std::back_inserter(modes));
    const auto found = std::ranges::find_if(modes, [&](TarnMeasureModes mode) {
        return std::ranges::all_of(requests, [&](const Request& request) { return Exists(request, mode); });
    });
    return found == modes.end() ? std::nullopt : std::optional(*found);
}

Travel::Travel(Session& session) : session_(session), found_(session.OnLine().get_MeasureMode()), present_(found_) {}

Travel::~Travel() {
    try {
        GoTo(found_);
    } catch (...) {  // the receiver is out of reach, or was in no mode that can be selected
        return;
    }
}

void Travel::GoTo(TarnMeasureModes mode) {
    if (mode == present_) return;
    const Request request{.Name = "Measure mode " + std::string(NameOf("TarnMeasureModes", mode).substr(4)),
                          .Member = &tarn4x::RowOf(tarn4x::Members::MeasureMode)};
    session_.Try(request, [&] {
        session_.Driver().put_MeasureMode(mode);
        present_ = mode;
    });
}

}  // namespace cli
