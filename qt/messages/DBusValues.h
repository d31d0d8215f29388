// Property lists as D-Bus values; docs/messages.md has the table.
#pragma once

#include "platform/PlatformTypes.h"

#include <QVariantMap>

#include <optional>

namespace qt {

// To be called once before values are sent or received; further calls do nothing.
void registerDBusTypes();

// Empty for nothing and for anything but a dictionary; no value when it is nested more deeply than
// platform::kDeepestUserInfo.
std::optional<QVariantMap> dbusDictionary(const platform::PropertyList& dictionary);
// Takes every type that D-Bus can carry, and gives nothing for the few that no property list can hold.
platform::PropertyList propertyListFromDBus(const QVariant& value);

}  // namespace qt
