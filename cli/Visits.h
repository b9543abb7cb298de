#pragma once

#include <optional>
#include <span>
#include <vector>

#include "cli/Members.h"
#include "cli/Session.h"

namespace cli {

/// Requests, by their places, that are read in one measure mode.
struct Visit {
    tarn4x::TarnMeasureModes Mode;
    std::vector<std::size_t> Places;
};

/// The visits in which all requests can be read, the first one in the present mode. A member that is choosy about its
/// mode decides for the others: few modes are enough for all.
std::vector<Visit> PlanVisits(std::span<const Request> requests, tarn4x::TarnMeasureModes present);

/// A measure mode in which all of them can be read, the present one if possible.
std::optional<tarn4x::TarnMeasureModes> ModeForAll(std::span<const Request> requests, tarn4x::TarnMeasureModes present);

/// Goes to measure modes, and back to the one it found when it ends.
class Travel {
  public:
    /// Throws what reading the measure mode raises.
    explicit Travel(Session& session);
    ~Travel();
    Travel(const Travel&) = delete;
    Travel& operator=(const Travel&) = delete;

    tarn4x::TarnMeasureModes Found() const { return found_; }
    /// Throws Failure and Stopped.
    void GoTo(tarn4x::TarnMeasureModes mode);
    /// Asks the receiver anew where it is: it may have been switched off meanwhile. Throws as the constructor does.
    void LookAround() { present_ = session_.OnLine().get_MeasureMode(); }

  private:
    Session& session_;
    const tarn4x::TarnMeasureModes found_;
    tarn4x::TarnMeasureModes present_;
};

}  // namespace cli
