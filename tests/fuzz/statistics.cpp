// A report is decoded, or raises 6, 9 or 13; what it decodes to depends on the report alone.
#include <array>
#include <cmath>

#include "driver/members/clsStatistics.h"
#include "host/Framework.h"
#include "tests/fuzz/Fuzz.h"

namespace {

using tarn4x::clsStatistics;

constexpr double LongestDuration = 32768.0 * (3600.0 + 60.0 + 1.0) / 86400.0;  // days; three 16-bit numbers

std::array<double, 7> Durations(const clsStatistics& statistics) {
    return {statistics.get_MonitoringTime(),   statistics.get_Level(),        statistics.get_Synchronisation(),
            statistics.get_ModErrorRatio(),    statistics.get_BerBeforeVit(), statistics.get_BerBeforeRs(),
            statistics.get_MpegDataErrorTime()};
}

std::array<double, 3> Counts(const clsStatistics& statistics) {
    return {statistics.get_CorrCntBeforeVit(), statistics.get_CorrCntBeforeRs(),
            statistics.get_MpegDataErrorCntAfterRs()};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto framework = std::make_shared<host::Framework>();
    const auto report = fuzz::Text(data, size);
    clsStatistics statistics(framework);
    const auto raised = fuzz::Raised([&] { statistics.put_Statistics(report); });
    REQUIRE(fuzz::IsOneOf(raised, {0, 6, 9, 13}));
    REQUIRE(raised != 0 || std::ranges::count(report, ',') >= 15);
    REQUIRE(statistics.get_Statistics() == report && statistics.get_BerAfterRs() == 0.0);
    for (const double duration : Durations(statistics)) REQUIRE(std::abs(duration) <= LongestDuration);
    for (const double count : Counts(statistics)) REQUIRE(std::isfinite(count));

    const auto durations = Durations(statistics);
    const auto counts = Counts(statistics);
    REQUIRE(fuzz::Raised([&] { statistics.put_Statistics(report); }) == raised);
    REQUIRE(Durations(statistics) == durations && Counts(statistics) == counts);
    return 0;
}
