// Property lists as JSON, both ways without loss.
//
// Keys keep their order. JSON has no dates, data or special numbers; they stand as objects of one key:
//     {"$date": "2026-01-31T12:00:00.000000Z"}  {"$data": "base64"}  {"$real": "nan"}  (also "inf", "-inf")
// A dictionary whose only key begins with "$", or whose first key is "$dictionary", is itself wrapped:
//     {"$dictionary": {"$date": "not a date"}}
//
// Built without RapidJSON, nothing is written and everything is refused.
#pragma once

#include "platform/PlatformTypes.h"

#include <string>
#include <string_view>

namespace linux {

enum class JsonLayout {
    Indented,
    OneLine,
    Plain  // indented, and no dictionary is wrapped: for JSON that is no property list, such as a schema
};

// Text of a value; "null" for nothing. No final newline. Takes stack for each level of nesting.
std::string jsonText(const platform::PropertyList& value, JsonLayout layout);

struct JsonResult {
    platform::PropertyList value;  // nothing on failure
    std::string error;             // what is wrong, in words for the user
    std::size_t position = 0;      // and where, in bytes
};
// Null, invalid UTF-8, numbers that neither 64 bits nor a double can hold, and nesting beyond
// PropertyList::kMaximumDepth are refused.
JsonResult parseJson(std::string_view text);

}  // namespace linux
