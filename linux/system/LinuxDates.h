// Dates as text: by the rules of the user's language with ICU, as plain ISO dates in builds without it.
#pragma once

#include "platform/DateFormatter.h"

namespace linux {

// The language comes from LC_ALL, LC_TIME or LANG, the time zone from TZ or the system; both are read at each call.
class LinuxDates final : public platform::DateFormatter {
public:
    std::optional<std::string> string(platform::Date date, platform::DateStyle dateStyle,
                                      platform::DateStyle timeStyle) override;
};

}  // namespace linux
