// Standard output.
#pragma once

#include <string_view>

namespace tools {

// Writes the text and flushes. Throws Refusal when that fails.
void print(std::string_view text);
// Of what others have written there. Throws Refusal when something of it was lost.
void flushOutput();

}  // namespace tools
