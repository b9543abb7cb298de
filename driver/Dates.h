#pragma once

#include "driver/Conversions.h"

namespace tarn4x {

struct CalendarDay {
    int Year;
    int Month;
    int Day;
};

struct TimeOfDay {
    int Hour;
    int Minute;
    int Second;
};

/// The day and the time of an automation date, to the nearest second. The time of a negative date counts forwards from
/// its day, as in -1.25: 29 December 1899, 6 o'clock. Raises 5 outside of the years 100 to 9999.
CalendarDay DayOf(Date date);
TimeOfDay TimeOf(Date date);

/// A duration of hours, minutes and seconds; each may exceed its unit.
Date DateFromTime(int hour, int minute, int second);
/// A calendar day; months and days beyond their range carry. Years 0 to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999.
/// Raises 5 outside of the years 100 to 9999.
Date DateFromDay(int year, int month, int day);

}  // namespace tarn4x
