#include "propertylist/Codec.h"

#include "propertylist/CodecParts.h"
#include "propertylist/Node.h"

namespace propertylist {

PropertyList decodePropertyList(std::string_view bytes) {
    if (!bytes.starts_with(kBinaryMagic)) return decodeXMLPropertyList(bytes);
    return decodeBinaryPropertyList(std::make_shared<const std::string>(bytes));
}

PropertyList decodePropertyList(std::shared_ptr<const std::string> bytes) {
    if (!bytes) return {};
    if (!bytes->starts_with(kBinaryMagic)) return decodeXMLPropertyList(*bytes);
    return decodeBinaryPropertyList(std::move(bytes));
}

std::string encodePropertyList(const PropertyList& value, PropertyListFormat format) {
    if (!value || value.node()->height > PropertyList::kMaximumDepth) return {};
    if (format == PropertyListFormat::Binary) return encodeBinaryPropertyList(value);
    return expandsTooFar(value) ? std::string() : encodeXMLPropertyList(value);
}

}  // namespace propertylist
