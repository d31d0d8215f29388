#include "platform/PropertyListCodecParts.h"

namespace platform {
PropertyList decodeXMLPropertyList(std::string_view) { return {}; }
std::string encodeXMLPropertyList(const PropertyList&) { return {}; }
}  // namespace platform
