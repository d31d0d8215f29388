// The halves of the two codecs, each in a file of its own.
#pragma once

#include "propertylist/Codec.h"

namespace propertylist {

constexpr std::string_view kBinaryMagic = "bplist0";

PropertyList decodeBinaryPropertyList(std::shared_ptr<const std::string> bytes);
std::string encodeBinaryPropertyList(const PropertyList& value);
// True for a value that holds the same values at so many places that walking it all would never end.
bool expandsTooFar(const PropertyList& value);
PropertyList decodeXMLPropertyList(std::string_view bytes);
std::string encodeXMLPropertyList(const PropertyList& value);

}  // namespace propertylist
