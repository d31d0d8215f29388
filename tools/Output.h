// Standard output.
#pragma once

#include "platform/PlatformTypes.h"

#include <string>
#include <string_view>

namespace tools {

// Writes the text and flushes. Throws Refusal when that fails.
void print(std::string_view text);
void printLine(std::string text);                     // and ends the line
void printJson(const platform::PropertyList& value);  // indented, over several lines
// Of what others have written there. Throws Refusal when something of it was lost.
void flushOutput();

}  // namespace tools
