// printf-style formats that also understand "%@", for log lines and for texts that people read. The C library does the
// numbers; which functions it is called with is never up to the format, so that a translator's mistake, or a name with
// a
// "%" in it, can harm nobody.
#pragma once

#include "propertylist/PropertyList.h"

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace propertylist {

// One argument of a format. An absent object (a null pointer, nothing) prints as "(null)". It refers to texts and
// values and is good for the call it is made in.
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

    std::string objectText() const;  // for %@ and %s: a value's description()
    std::int64_t integer() const;    // for %d, %u, %x, %X, %c: 0 for a text, a real cut off towards zero
    double real() const;             // for %f, %g, %e: 0 for a text

private:
    std::variant<std::monostate, std::string_view, const PropertyList*, Date, double, std::int64_t> value_;
};

// Understands %@ %s %d %i %u %x %X %c %f %g %e and %%, with flags, width, precision and (ignored) length modifiers, and
// positions ("%2$@") for translators. Arguments are converted by the directive, never trusted to match it: one that is
// missing prints as "(null)" or 0, one too many is left out, and an unknown directive prints as nothing. Numbers have
// 64 bits; widths, precisions and positions are held at 512. Precision cuts "%s" by bytes.
std::string formatted(std::string_view format, std::initializer_list<FormatArgument> arguments);

}  // namespace propertylist
