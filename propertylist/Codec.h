// The two disk forms of a property list: the binary form ("bplist00", as CFBinaryPList.c of the open-source
// CoreFoundation describes it) and the XML form (the "PropertyList-1.0" document type). Both are read and written in
// time and memory in proportion to their size, whatever the input holds: at most about ten times the size of a binary
// file.
//
// Whoever reads on one thread and writes on another needs no lock. docs/property-list.md lists what is accepted.
#pragma once

#include "propertylist/PropertyList.h"

#include <memory>
#include <string>
#include <string_view>

namespace propertylist {

enum class PropertyListFormat { Binary, XML };

// What is wrong with a file.
struct DecodeProblem {
    // In bytes from the file's beginning: in XML the place itself or where the element begins, in the binary form where
    // the object, the reference or the table entry begins. The size of the file where it ends too early.
    std::size_t position = 0;
    const char* reason = nullptr;  // English, within a sentence: "unknown element"; never freed
};

// Reads either form, told apart by the first bytes. Nothing when the input is malformed, truncated, nested deeper than
// PropertyList::kMaximumDepth, holds invalid text, or expands to far more values than its size warrants: there is no
// "as much as could be read". The problem, if asked for, is set then, and else left as it is. The value keeps its own
// copy of what it needs.
PropertyList decodePropertyList(std::string_view bytes, DecodeProblem* problem = nullptr);
// The same without a copy of the bytes: strings and data of a value read from the binary form point into the buffer,
// which every part of it keeps alive. Nothing for a null pointer.
PropertyList decodePropertyList(std::shared_ptr<const std::string> bytes, DecodeProblem* problem = nullptr);

// The encoded form; empty when the value is nothing, is nested deeper than PropertyList::kMaximumDepth, holds the same
// values at so many places that no reader would follow, or (XML only) holds what the form cannot express: a control
// character in a string, a date outside the years 1 to 9999. XML dates lose the fraction of a second.
//
// A value reads back as an equal one, its dictionaries in the same order. The binary form has every equal string and
// number once, but for those that came from one binary file, which are written as they were there.
std::string encodePropertyList(const PropertyList& value, PropertyListFormat format);

}  // namespace propertylist
