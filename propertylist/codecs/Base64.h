// Base64 with padding, RFC 4648, without line breaks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace propertylist {

std::string base64Encoded(std::string_view bytes);
// White space is passed over. Nothing when another character stands in the text, or the padding is not as encoding
// gives it.
std::optional<std::string> base64Decoded(std::string_view text);

}  // namespace propertylist
