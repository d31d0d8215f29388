// Where the links of rich text lead.
#pragma once

#include <string>
#include <string_view>

namespace qt {

// The address in a field's instruction, as in: HYPERLINK "https://example.com/". Empty when the field is none, or when
// the address is not one of those that may be opened from a text: http, https and mailto, in plain ASCII without
// blanks.
std::string richTextLink(std::string_view instruction);

}  // namespace qt
