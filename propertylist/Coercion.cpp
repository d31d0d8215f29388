#include "propertylist/Coercion.h"

#include <algorithm>
#include <charconv>

namespace propertylist {
namespace {

bool equalIgnoringCase(std::string_view text, std::string_view lowerCase) {
    auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(text, lowerCase, {}, lower);
}

std::int64_t decimalInteger(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    std::int64_t value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? value : 0;
}

bool isTrueText(std::string_view text) {
    return equalIgnoringCase(text, "true") || equalIgnoringCase(text, "yes") || text == "1";
}

}  // namespace

bool coercedBoolean(const PropertyList& value) {
    return value.isString() ? isTrueText(value.stringValue()) : value.boolValue();
}

std::int64_t coercedInteger(const PropertyList& value) {
    if (!value.isString()) return value.integerValue();
    return isTrueText(value.stringValue()) ? 1 : decimalInteger(value.stringValue());
}

}  // namespace propertylist
