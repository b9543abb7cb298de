#include "driver/Dates.h"

#include <chrono>
#include <cmath>

#include "driver/RuntimeErrors.h"

namespace tarn4x {

namespace {

using std::chrono::sys_days;

constexpr int SecondsPerDay = 86400;
constexpr sys_days DayZero = std::chrono::year(1899) / 12 / 30;

struct DateParts {
    int Days;
    int Seconds;
};

constexpr Date FirstDay = -657434.0;    // 1 January 100
constexpr Date BehindLast = 2958466.0;  // 1 January 10000

/// Raises 5 for what is no automation date.
Date Checked(Date date) {
    if (!(date > FirstDay - 1.0 && date < BehindLast)) RaiseInvalidProcedureCall();
    return date;
}

DateParts SplitDate(Date date) {
    Checked(date);
    const double days = std::trunc(date);
    DateParts split{static_cast<int>(days), static_cast<int>(std::lround(std::abs(date - days) * SecondsPerDay))};
    if (split.Seconds == SecondsPerDay) split = {split.Days + 1, 0};
    return split;
}

}  // namespace

CalendarDay DayOf(Date date) {
    const int days = SplitDate(date).Days;
    const std::chrono::year_month_day day(DayZero + std::chrono::days(static_cast<int>(Checked(days))));
    return {int(day.year()), int(unsigned(day.month())), int(unsigned(day.day()))};
}

TimeOfDay TimeOf(Date date) {
    const int seconds = SplitDate(date).Seconds;
    return {seconds / 3600, seconds / 60 % 60, seconds % 60};
}

Date DateFromTime(int hour, int minute, int second) { return ((hour * 60.0 + minute) * 60.0 + second) / SecondsPerDay; }

Date DateFromDay(int year, int month, int day) {
    if (year >= 0 && year < 100) year += year < 30 ? 2000 : 1900;
    const auto ofMonth = std::chrono::year(year) / 1 + std::chrono::months(month - 1);
    const sys_days date = sys_days(ofMonth / 1) + std::chrono::days(day - 1);
    return Checked(static_cast<double>((date - DayZero).count()));
}

}  // namespace tarn4x
