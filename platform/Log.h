// The system log.
#pragma once

#include "propertylist/Format.h"

#include <string_view>

namespace platform {

using propertylist::FormatArgument;
using propertylist::formatted;

class Log {
public:
    virtual ~Log() = default;
    // Control characters are made visible, so that one call is one line whatever a name contains.
    virtual void write(std::string_view line) = 0;
    // False: write() would come to nothing at the moment, so that nobody needs to make a line.
    virtual bool isOn() { return true; }
    template <typename... Arguments>
    void operator()(std::string_view format, const Arguments&... arguments) {
        if (isOn()) write(formatted(format, {FormatArgument(arguments)...}));
    }
};

}  // namespace platform
