#include "propertylist/Date.h"

#include "propertylist/ASCII.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace propertylist {
namespace {

constexpr std::int64_t kMicroseconds = 1'000'000;
constexpr std::int64_t kDay = 86'400;
constexpr std::int64_t kSecondsTo2001 = 978'307'200;
constexpr std::int64_t kLatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kEarliest = std::numeric_limits<std::int64_t>::min();

constexpr std::int64_t floorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }
constexpr std::int64_t floorRemainder(std::int64_t a, std::int64_t b) { return a % b + (a % b < 0 ? b : 0); }

bool isLeapYear(std::int64_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int daysInMonth(std::int64_t year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear(year) ? 29 : kDays[month - 1];
}

bool isValid(const CalendarTime& t) {
    auto within = [](int value, int low, int high) { return value >= low && value <= high; };
    return t.year >= -400'000 && t.year <= 400'000 && within(t.month, 1, 12) &&
           within(t.day, 1, daysInMonth(t.year, t.month)) && within(t.hour, 0, 23) && within(t.minute, 0, 59) &&
           within(t.second, 0, 59) && within(t.microsecond, 0, 999'999);
}

std::optional<Date> dateFromParts(std::int64_t seconds, std::int64_t microseconds) {
    std::int64_t total = 0;
    // The second before the earliest one counts down from the next, so that the multiplication cannot overflow.
    if (seconds < 0) seconds += 1, microseconds -= kMicroseconds;
    if (__builtin_mul_overflow(seconds, kMicroseconds, &total) || __builtin_add_overflow(total, microseconds, &total))
        return std::nullopt;
    return Date{total};
}

std::string yearText(std::int64_t year) {
    char text[24];
    bool plain = year >= 1 && year <= 9999;
    std::snprintf(text, sizeof text, "%s%04lld",
                  plain      ? ""
                  : year < 0 ? "-"
                             : "+",
                  static_cast<long long>(year < 0 ? -year : year));
    return text;
}

std::string dateText(const CalendarTime& t, char separator) {
    char rest[64];
    std::snprintf(rest, sizeof rest, "-%02d-%02d%c%02d:%02d:%02d", t.month, t.day, separator, t.hour, t.minute,
                  t.second);
    return yearText(t.year) + rest;
}

// Reads fixed punctuation and digits off the front of a text.
struct FieldReader {
    std::string_view text;
    bool good = true;

    void expect(char c) {
        good = good && text.starts_with(c);
        if (good) text.remove_prefix(1);
    }
    std::int64_t digits(std::size_t least, std::size_t most) {
        std::int64_t value = 0;
        std::size_t count = 0;
        for (; count < most && count < text.size() && isASCIIDigit(text[count]); ++count)
            value = value * 10 + (text[count] - '0');
        good = good && count >= least;
        text.remove_prefix(count);
        return value;
    }
    int two() { return static_cast<int>(digits(2, 2)); }
    std::int64_t year() {
        bool negative = text.starts_with('-'), sign = negative || text.starts_with('+');
        if (sign) text.remove_prefix(1);
        std::int64_t value = digits(4, sign ? 6 : 4);
        return negative ? -value : value;
    }
    int fraction() {
        if (!text.starts_with('.')) return 0;
        text.remove_prefix(1);
        std::size_t before = text.size();
        auto value = digits(1, 6);
        for (std::size_t count = before - text.size(); count < 6; ++count) value *= 10;
        while (good && !text.empty() && isASCIIDigit(text[0])) text.remove_prefix(1);
        return static_cast<int>(value);
    }
};

}  // namespace

std::int64_t daysFromCivil(std::int64_t year, int month, int day) noexcept {
    // Counting years from March puts the leap day at their end; 400 years are 146,097 days.
    year -= month <= 2 ? 1 : 0;
    std::int64_t era = floorDivide(year, 400), yearOfEra = year - era * 400;
    std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146'097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719'468;
}

CalendarTime calendarTime(Date date) noexcept {
    std::int64_t seconds = floorDivide(date.microseconds, kMicroseconds), days = floorDivide(seconds, kDay);
    std::int64_t ofDay = seconds - days * kDay, shifted = days + 719'468;
    std::int64_t era = floorDivide(shifted, 146'097), dayOfEra = shifted - era * 146'097;
    std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
    std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    auto fromMarch = static_cast<int>((5 * dayOfYear + 2) / 153);
    CalendarTime t;
    t.month = fromMarch < 10 ? fromMarch + 3 : fromMarch - 9;
    t.year = yearOfEra + era * 400 + (t.month <= 2 ? 1 : 0);
    t.day = static_cast<int>(dayOfYear - (153 * fromMarch + 2) / 5 + 1);
    t.hour = static_cast<int>(ofDay / 3600);
    t.minute = static_cast<int>(ofDay / 60 % 60);
    t.second = static_cast<int>(ofDay % 60);
    t.microsecond = static_cast<int>(floorRemainder(date.microseconds, kMicroseconds));
    return t;
}

std::optional<Date> dateFromCalendar(const CalendarTime& t) noexcept {
    if (!isValid(t)) return std::nullopt;
    const int ofDay = t.hour * 3600 + t.minute * 60 + t.second;
    const std::int64_t seconds = daysFromCivil(t.year, t.month, t.day) * kDay + ofDay;
    return dateFromParts(seconds, t.microsecond);
}

std::string iso8601FromDate(Date date) {
    CalendarTime t = calendarTime(date);
    char fraction[16];
    std::snprintf(fraction, sizeof fraction, ".%06dZ", t.microsecond);
    return dateText(t, 'T') + fraction;
}

std::optional<Date> dateFromISO8601(std::string_view text) noexcept {
    FieldReader in{text};
    CalendarTime t;
    t.year = in.year(), in.expect('-');
    t.month = in.two(), in.expect('-');
    t.day = in.two(), in.expect('T');
    t.hour = in.two(), in.expect(':');
    t.minute = in.two(), in.expect(':');
    t.second = in.two(), t.microsecond = in.fraction(), in.expect('Z');
    return in.good && in.text.empty() ? dateFromCalendar(t) : std::nullopt;
}

double secondsSince2001(Date date) noexcept {
    // Split, because the count of microseconds has more digits than a double.
    std::int64_t whole = floorDivide(date.microseconds, kMicroseconds);
    auto rest = static_cast<double>(floorRemainder(date.microseconds, kMicroseconds));
    return static_cast<double>(whole - kSecondsTo2001) + rest / 1e6;
}

std::optional<Date> dateFromSecondsSince2001(double seconds) noexcept {
    if (!(std::abs(seconds) < 1e13)) return std::nullopt;
    double whole = std::floor(seconds);
    return dateFromParts(static_cast<std::int64_t>(whole) + kSecondsTo2001, std::llround((seconds - whole) * 1e6));
}

Date dateByAdding(Date date, double seconds) {
    if (std::isnan(seconds)) return date;
    double step = std::nearbyint(seconds * 1e6);
    if (std::abs(step) >= 0x1p63) return {step < 0 ? kEarliest : kLatest};
    std::int64_t sum = 0;
    if (__builtin_add_overflow(date.microseconds, static_cast<std::int64_t>(step), &sum))
        return {step < 0 ? kEarliest : kLatest};
    return {sum};
}

std::string dateDescription(Date date) { return dateText(calendarTime(date), ' ') + " +0000"; }

}  // namespace propertylist
