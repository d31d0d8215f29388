// Calendar arithmetic on Date: the proleptic Gregorian calendar in UTC, with a year 0 before the year 1 and no leap
// seconds. A Date reaches from the year -290308 to 294247.
#pragma once

#include "propertylist/PropertyList.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace propertylist {

struct CalendarTime {
    std::int64_t year = 1970;
    int month = 1, day = 1;  // from 1
    int hour = 0, minute = 0, second = 0, microsecond = 0;
};

// Days since 1970-01-01, negative before; the month (1 to 12) and the day must be in their ranges, which is not
// checked.
std::int64_t daysFromCivil(std::int64_t year, int month, int day) noexcept;
CalendarTime calendarTime(Date date) noexcept;
// Nothing when a field is outside its range (the 30th of February, second 60) or Date cannot hold the result.
std::optional<Date> dateFromCalendar(const CalendarTime& time) noexcept;

// "2026-01-31T12:00:00.000000Z". Years below 1 and beyond 9999 have a sign and at least four digits.
std::string iso8601FromDate(Date date);
// The same form; the fraction may be missing or have any number of digits, of which six count. Nothing for any other
// text, blanks around it included, and for a date that Date cannot hold.
std::optional<Date> dateFromISO8601(std::string_view text) noexcept;

// Seconds since 2001-01-01T00:00:00Z, the form in which property lists store dates.
double secondsSince2001(Date date) noexcept;
// To the nearest microsecond. Nothing for what is not finite or beyond the range of Date.
std::optional<Date> dateFromSecondsSince2001(double seconds) noexcept;

// To the microsecond, held at the ends of Date's range. NaN adds nothing.
Date dateByAdding(Date date, double seconds);
// "2026-01-31 12:00:00 +0000", the form in which logs show a date.
std::string dateDescription(Date date);

}  // namespace propertylist
