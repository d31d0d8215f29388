// Property lists as D-Bus values; docs/messages.md has the table.
#pragma once

#include "platform/PlatformTypes.h"

#include <dbus/dbus.h>

namespace linux {

// Appends an a{sv}: empty for nothing and for anything but a dictionary. False, and then it is empty too, for one that
// is nested more deeply than platform::kDeepestUserInfo. A string ends at its first U+0000.
bool appendToMessage(DBusMessageIter& to, const platform::PropertyList& dictionary);

// The value at the iterator. Takes every type that D-Bus can carry, and gives nothing for the few that no property list
// can hold.
platform::PropertyList propertyListFromMessage(DBusMessageIter& at);

}  // namespace linux
