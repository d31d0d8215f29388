// The JSON Schema of the settings domain, made from the tables of settings/DomainSchema.h.
#pragma once

#include "platform/PlatformTypes.h"

namespace tools {

// Draft 2020-12, for JSON as "defaults read" prints it. It refuses what settings::firstBreach() names, at the same
// place, and nothing else. To be printed as linux::JsonLayout::Plain.
platform::PropertyList jsonSchema();

}  // namespace tools
