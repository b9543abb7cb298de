#include "cli/Iso8601.h"

#include <chrono>
#include <cmath>
#include <cstdio>

namespace cli {

namespace {

using tarn4x::Date;

/// Reads numbers and the characters between them from the front of a text.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    /// A number of exactly so many digits.
    std::optional<int> Number(std::size_t digits) {
        if (rest_.size() < digits) return {};
        int number = 0;
        for (const char c : rest_.substr(0, digits)) {
            if (c < '0' || c > '9') return {};
            number = number * 10 + (c - '0');
        }
        rest_.remove_prefix(digits);
        return number;
    }
    /// Whether that character is next; passes it.
    bool Pass(char c) {
        if (!rest_.starts_with(c)) return false;
        rest_.remove_prefix(1);
        return true;
    }
    bool AtEnd() const { return rest_.empty(); }

  private:
    std::string_view rest_;
};

std::optional<Date> ScanDay(Scanner& scanner) {
    const auto year = scanner.Number(4);
    if (!year || !scanner.Pass('-')) return {};
    const auto month = scanner.Number(2);
    if (!month || !scanner.Pass('-')) return {};
    const auto day = scanner.Number(2);
    if (!day || *year < 100) return {};
    const std::chrono::year_month_day date(std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day)));
    if (!date.ok()) return {};
    return tarn4x::DateFromDay(*year, *month, *day);
}

std::optional<Date> ScanTime(Scanner& scanner) {
    const auto hour = scanner.Number(2);
    if (!hour || !scanner.Pass(':')) return {};
    const auto minute = scanner.Number(2);
    const auto second = scanner.Pass(':') ? scanner.Number(2) : 0;
    if (!minute || !second || *hour > 23 || *minute > 59 || *second > 59) return {};
    return tarn4x::DateFromTime(*hour, *minute, *second);
}

template <class... Numbers>
std::string Print(const char* format, Numbers... numbers) {
    char text[64];
    std::snprintf(text, sizeof text, format, numbers...);
    return text;
}

}  // namespace

std::string IsoDate(Date date) {
    const auto day = tarn4x::DayOf(date);
    const auto time = tarn4x::TimeOf(date);
    const auto days = Print("%04d-%02d-%02d", day.Year, day.Month, day.Day);
    auto clock = Print("%02d:%02d:%02d", time.Hour, time.Minute, time.Second);
    if (std::trunc(date) == 0.0) return clock;
    return date == std::trunc(date) ? days : days + 'T' + clock;
}

std::string IsoDuration(Date days) {
    const auto seconds = std::llround(days * 86400.0);
    return Print("PT%lldH%lldM%lldS", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

std::optional<Date> DateFromIso(std::string_view text) {
    Scanner scanner(text);
    const bool onlyTime = text.find('-') == text.npos;
    auto date = onlyTime ? ScanTime(scanner) : ScanDay(scanner);
    if (date && !onlyTime && scanner.Pass('T')) {
        const auto time = ScanTime(scanner);
        if (!time) return {};
        *date += *time;
    }
    return date && scanner.AtEnd() ? date : std::nullopt;
}

std::string IsoNow() {
    const auto now = std::chrono::time_point_cast<std::chrono::milliseconds>(std::chrono::system_clock::now());
    const auto midnight = std::chrono::floor<std::chrono::days>(now);
    const std::chrono::year_month_day day(midnight);
    const std::chrono::hh_mm_ss time(now - midnight);
    return Print("%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", int(day.year()), int(unsigned(day.month())),
                 int(unsigned(day.day())), int(time.hours().count()), int(time.minutes().count()),
                 int(time.seconds().count()), int(time.subseconds().count()));
}

}  // namespace cli
