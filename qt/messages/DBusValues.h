// Property lists as D-Bus values; docs/messages.md has the table.
#pragma once

#include "platform/PlatformTypes.h"

#include <QVariantMap>

#include <optional>

namespace qt {

// The deepest nesting of containers that is sent. D-Bus itself allows little more than twice as much.
inline constexpr int kDeepestUserInfo = 12;

// To be called once before values are sent or received; further calls do nothing.
void registerDBusTypes();

// Empty for nothing and for anything but a dictionary; no value when it is nested too deeply.
std::optional<QVariantMap> dbusDictionary(const platform::PropertyList& dictionary);
// Takes every type that D-Bus can carry, and gives nothing for the few that no property list can hold.
platform::PropertyList propertyListFromDBus(const QVariant& value);

}  // namespace qt
