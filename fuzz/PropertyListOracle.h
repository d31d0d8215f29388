// What must hold for every value that a codec made of foreign bytes.
#pragma once

#include "propertylist/Codec.h"

#include <cstdlib>

inline void expect(bool holds) {
    if (!holds) std::abort();
}

// What is nothing has a problem, which stands somewhere in the input.
inline propertylist::PropertyList decoded(std::string_view bytes) {
    propertylist::DecodeProblem problem;
    propertylist::PropertyList value = propertylist::decodePropertyList(bytes, &problem);
    expect(static_cast<bool>(value) == !problem.reason && problem.position <= bytes.size());
    return value;
}

// What was read can be written, and reads as the same value.
inline void expectRoundTrip(const propertylist::PropertyList& value, propertylist::PropertyListFormat format) {
    std::string bytes = encodePropertyList(value, format);
    expect(!bytes.empty() && propertylist::decodePropertyList(bytes) == value);
}

// Every element and every key is found where it stands.
inline void expectLookUps(const propertylist::PropertyList& value) {
    for (std::size_t i = 0; i < value.size() && value.isArray(); ++i) expect(value[i] == value.elements()[i]);
    for (const auto& entry : value.entries()) expect(value[entry.key.stringValue()] == entry.value);
}
