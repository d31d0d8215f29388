// printf-style formats that also understand "%@".
#pragma once

#include "propertylist/PropertyList.h"

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace propertylist {

// One argument of a format. An absent object (a null pointer, nothing) prints as "(null)".
class FormatArgument {
public:
    FormatArgument(std::string_view text) : value_(text) {}
    FormatArgument(const std::string& text) : value_(std::string_view(text)) {}
    FormatArgument(const char* text);
    FormatArgument(const PropertyList& value) : value_(&value) {}
    FormatArgument(Date date) : value_(date) {}
    FormatArgument(std::floating_point auto number) : value_(static_cast<double>(number)) {}
    FormatArgument(std::integral auto number) : value_(static_cast<std::int64_t>(number)) {}
    FormatArgument(const void* address) : value_(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(address))) {}
    FormatArgument(std::nullptr_t) {}

    std::string objectText() const;  // for %@ and %s
    std::int64_t integer() const;    // for %d, %u, %x, %X, %c
    double real() const;             // for %f, %g, %e

private:
    std::variant<std::monostate, std::string_view, const PropertyList*, Date, double, std::int64_t> value_;
};

// Understands %@ %s %d %i %u %x %X %c %f %g %e and %%, with flags, width, precision and (ignored) length modifiers, and
// positions ("%2$@") for translators. Arguments are converted by the directive, never trusted to match it: one that is
// missing prints as "(null)" or 0.
std::string formatted(std::string_view format, std::initializer_list<FormatArgument> arguments);

}  // namespace propertylist
