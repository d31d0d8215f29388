// Values that several tests look at.
#pragma once

#include "propertylist/Codec.h"
#include "tests/support/Check.h"

namespace samples {

using propertylist::PropertyList;

inline PropertyList everything() {
    const PropertyList integers = PropertyList::array({0, 255, 256, -1, 65536, 1LL << 40, INT64_MIN, UINT64_MAX}),
                       twice = PropertyList::array({"a", "a"}), none = PropertyList::array({}),
                       keys =
                           PropertyList::array({PropertyList::dictionary({{"one", 1}, {"last", "ASCII up to \u00E9"}}),
                                                PropertyList::dictionary({{"one", 1}, {"other", 2}})});
    // clang-format off
    return PropertyList::dictionary({
        {"string", "plain"}, {"wide", "h\u00e9llo \U0001F600"}, {"empty", ""}, {"fifteen", "123456789012345"},
        {"zero inside", std::string_view("a\0b", 3)}, {"long", std::string(70'000, 'x')}, {"true", true},
        {"integers", integers}, {"real", -0.25}, {"date", propertylist::Date{1'769'860'800'123'456}},
        {"data", PropertyList::data(std::string(300, '\x7F'))},
        {"keys", keys},
        {"nested", PropertyList::dictionary({{"none", none}, {"", twice}})}});
    // clang-format on
}

// Arrays in arrays; the depth counts the innermost one too.
inline PropertyList nested(unsigned depth) {
    PropertyList value = PropertyList::array({});
    for (unsigned i = 1; i < depth; ++i) value = PropertyList::array({std::move(value)});
    return value;
}

// 2 to the power of `levels` strings, stored once.
inline PropertyList doubled(unsigned levels) {
    PropertyList value = "leaf";
    for (unsigned i = 0; i < levels; ++i) value = PropertyList::array({value, value});
    return value;
}

}  // namespace samples
