#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "driver/Conversions.h"
#include "platform/Framework.h"

namespace tarn4x {

/// Decodes the alarm statistics report of the receiver. Durations are dates: days, 1 h 30 min being 0.0625.
class clsStatistics {
  public:
    explicit clsStatistics(std::shared_ptr<platform::Framework> services) : framework(std::move(services)) {}

    std::string get_Statistics() const { return report; }
    /// Decodes a report of at least 16 fields. Raises, from "XTarn4x", 9 at the first missing field, 13 for a count
    /// that is no number in the user's regional format, 6 for a part of a duration beyond 16 bits or a count beyond a
    /// double; what was decoded before stays.
    void put_Statistics(std::string_view value);

    Date get_MonitoringTime() const { return monitoringTime; }
    Date get_Level() const { return level; }
    Date get_Synchronisation() const { return synchronisation; }
    Date get_BerBeforeVit() const { return berBeforeVit; }
    Date get_BerBeforeRs() const { return berBeforeRs; }
    Date get_BerAfterRs() const { return 0.0; }  // the report has no such field
    Date get_ModErrorRatio() const { return modErrorRatio; }
    Date get_MpegDataErrorTime() const { return mpegDataErrorTime; }
    double get_CorrCntBeforeVit() const { return corrCntBeforeVit; }
    double get_CorrCntBeforeRs() const { return corrCntBeforeRs; }
    double get_MpegDataErrorCntAfterRs() const { return mpegDataErrorCntAfterRs; }

  private:
    Date Duration(std::string_view text) const;

    std::shared_ptr<platform::Framework> framework;
    std::string report;
    Date monitoringTime = 0.0;
    Date level = 0.0;
    Date synchronisation = 0.0;
    Date berBeforeVit = 0.0;
    Date berBeforeRs = 0.0;
    Date modErrorRatio = 0.0;
    Date mpegDataErrorTime = 0.0;
    double corrCntBeforeVit = 0.0;
    double corrCntBeforeRs = 0.0;
    double mpegDataErrorCntAfterRs = 0.0;
};

}  // namespace tarn4x
