// Marks a text that is looked up in the localised strings elsewhere, as in a table of texts.
#pragma once

namespace platform {

constexpr const char* localizable(const char* english) { return english; }

}  // namespace platform
