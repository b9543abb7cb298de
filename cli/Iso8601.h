#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "driver/Dates.h"

namespace cli {

/// An automation date: "2025-01-31", a date on day zero as a time of day: "12:34:56", and anything else as
/// "2025-01-31T12:34:56". Raises 5 outside of the years 100 to 9999.
std::string IsoDate(tarn4x::Date date);
/// A duration in days: "PT26H3M10S".
std::string IsoDuration(tarn4x::Date days);
/// The date that a text of one of the forms of IsoDate means, seconds optional; nothing when it is none.
std::optional<tarn4x::Date> DateFromIso(std::string_view text);
/// Now, in UTC: "2025-01-31T12:34:56.789Z".
std::string IsoNow();

}  // namespace cli
