// Values that people or scripts stored as text, read as booleans and integers.
#pragma once

#include "propertylist/PropertyList.h"

#include <cstdint>

namespace propertylist {

// Booleans and numbers as they are; of strings true/yes/1 and false/no/0 in any case of letters, and for integers
// decimal numbers that fit into 64 bits, too. Anything else reads as false and 0.
bool coercedBoolean(const PropertyList& value);
std::int64_t coercedInteger(const PropertyList& value);

}  // namespace propertylist
