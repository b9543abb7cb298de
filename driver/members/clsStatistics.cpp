#include "driver/members/clsStatistics.h"

#include <cmath>

#include "driver/Dates.h"
#include "driver/RuntimeErrors.h"

namespace tarn4x {

namespace {

template <class Pieces>
std::string_view PieceAt(const Pieces& pieces, std::size_t index) {
    if (index >= pieces.size()) RaiseSubscriptOutOfRange();
    return pieces[index];
}

}  // namespace

Date clsStatistics::Duration(std::string_view text) const {
    const auto parts = Split(text, ":");
    PieceAt(parts, 0);  // an empty text has no hours
    const auto part = [&](std::size_t index) -> int {
        if (index >= parts.size()) return 0;
        const auto number = framework->NumberFromText(parts[index]);
        return number ? ToInteger(*number) : 0;
    };
    const int hours = part(0), minutes = part(1), seconds = part(2);
    return DateFromTime(hours, minutes, seconds);
}

void clsStatistics::put_Statistics(std::string_view value) {
    struct DurationField {
        std::size_t Index;
        Date clsStatistics::*Member;
    };
    struct CountField {
        std::size_t Index;
        double clsStatistics::*Member;
    };
    constexpr DurationField durations[] = {{0, &clsStatistics::monitoringTime},    {1, &clsStatistics::level},
                                           {3, &clsStatistics::synchronisation},   {5, &clsStatistics::modErrorRatio},
                                           {7, &clsStatistics::berBeforeVit},      {9, &clsStatistics::berBeforeRs},
                                           {11, &clsStatistics::mpegDataErrorTime}};
    constexpr CountField counts[] = {{13, &clsStatistics::corrCntBeforeVit},
                                     {14, &clsStatistics::corrCntBeforeRs},
                                     {15, &clsStatistics::mpegDataErrorCntAfterRs}};
    report = value;
    const auto fields = Split(report);
    for (const auto& field : durations) this->*field.Member = Duration(PieceAt(fields, field.Index));
    for (const auto& field : counts) {
        const auto text = PieceAt(fields, field.Index);
        if (text == "---") continue;
        const auto number = framework->NumberFromText(text);
        if (!number) RaiseTypeMismatch();
        if (!std::isfinite(*number)) RaiseOverflow();
        this->*field.Member = *number;
    }
}

}  // namespace tarn4x
