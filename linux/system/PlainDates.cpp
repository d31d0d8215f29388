#include "linux/system/LinuxDates.h"

#include "platform/RunLoop.h"
#include "propertylist/Date.h"

#include <ctime>

namespace linux {

using namespace platform;
using namespace propertylist;

namespace {

// The calendar works in UTC; the zone's offset at that moment moves it.
Date localDate(Date date) {
    auto seconds = static_cast<std::time_t>(date.microseconds / 1'000'000);
    std::tm local = {};
    if (!::localtime_r(&seconds, &local)) return date;
    return dateByAdding(date, static_cast<double>(local.tm_gmtoff));
}

}  // namespace

std::optional<std::string> LinuxDates::string(Date date, DateStyle dateStyle, DateStyle timeStyle) {
    std::string text = iso8601FromDate(localDate(date));
    std::size_t separator = text.find('T');
    std::string day = dateStyle == DateStyle::None ? "" : text.substr(0, separator);
    std::string time =
        timeStyle == DateStyle::None ? "" : text.substr(separator + 1, timeStyle > DateStyle::Short ? 8 : 5);
    return day + (day.empty() || time.empty() ? "" : " ") + time;
}

}  // namespace linux
