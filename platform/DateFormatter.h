// Dates as text for people, in the language and the time zone of the user.
#pragma once

#include "platform/PlatformTypes.h"

#include <optional>
#include <string>

namespace platform {

enum class DateStyle { None, Short, Medium, Long, Full };

class DateFormatter {
public:
    virtual ~DateFormatter() = default;
    // Empty with both styles None; nothing when the language's rules cannot be had.
    virtual std::optional<std::string> string(Date date, DateStyle dateStyle, DateStyle timeStyle) = 0;
};

}  // namespace platform
