#include "propertylist/Codec.h"

#include "propertylist/Node.h"
#include "propertylist/codecs/CodecParts.h"

namespace propertylist {

PropertyList decodePropertyList(std::string_view bytes, DecodeProblem* problem) {
    DecodeProblem ignored;
    if (!bytes.starts_with(kBinaryMagic)) return decodeXMLPropertyList(bytes, problem ? *problem : ignored);
    return decodeBinaryPropertyList(std::make_shared<const std::string>(bytes), problem ? *problem : ignored);
}

PropertyList decodePropertyList(std::shared_ptr<const std::string> bytes, DecodeProblem* problem) {
    DecodeProblem ignored;
    if (!bytes || !bytes->starts_with(kBinaryMagic))
        return decodePropertyList(bytes ? std::string_view(*bytes) : std::string_view(), problem);
    return decodeBinaryPropertyList(std::move(bytes), problem ? *problem : ignored);
}

std::string encodePropertyList(const PropertyList& value, PropertyListFormat format) {
    if (!value || value.node()->height > PropertyList::kMaximumDepth) return {};
    if (format == PropertyListFormat::Binary) return encodeBinaryPropertyList(value);
    return expandsTooFar(value) ? std::string() : encodeXMLPropertyList(value);
}

}  // namespace propertylist
