// The two disk forms of a property list: the binary form ("bplist00") and the XML form (the "PropertyList-1.0" document
// type). Both are read and written in time and memory in proportion to their size, whatever the input holds.
#pragma once

#include "propertylist/PropertyList.h"

#include <memory>
#include <string>
#include <string_view>

namespace propertylist {

enum class PropertyListFormat { Binary, XML };

// Reads either form, told apart by the first bytes. Nothing when the input is malformed, truncated, nested deeper than
// PropertyList::kMaximumDepth, holds invalid text, or expands to far more values than its size warrants. The value
// keeps its own copy of what it needs.
PropertyList decodePropertyList(std::string_view bytes);
// The same without a copy of the bytes: strings and data of the value point into the buffer, which it keeps alive.
PropertyList decodePropertyList(std::shared_ptr<const std::string> bytes);

// The encoded form; empty when the value is nothing, is nested too deeply, or (XML only) holds what the form cannot
// express: a control character in a string, a date outside the years 1 to 9999. XML dates lose the fraction of a
// second.
std::string encodePropertyList(const PropertyList& value, PropertyListFormat format);

}  // namespace propertylist
