// Starting the updater of a module under its lock file.
#pragma once

#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdateServices.h"
#include "platform/AliasClass.h"

#include <optional>
#include <string_view>

namespace twvc {

// Starts "Tarnwick Updater.app" of the module's resources with the module's path as its argument. kParamErr without a
// bundle or an identifier; kBadName when the identifier makes no file name; the status of creating the lock, when
// another process holds it; else that of deleting it, also when nothing could be launched, of which the log tells.
// The reference, which may be null, is written only when the updater was started.
platform::OSStatus runUpdater(const UpdateServices& services, const platform::Bundle* bundle,
                              std::optional<std::string_view> identifier, platform::FSRef* outLaunchedUpdater);

// The lock: the file IDENTIFIER.updater.lock in the folder of temporary items of all users. Nothing when there is no
// such folder, or no file can have that name.
std::optional<std::string> updaterLockPath(const UpdateServices& services, std::string_view identifier);

// The updater that a module brings along; nothing when it has none.
std::optional<std::string> updaterOf(const platform::Bundle& module);

}  // namespace twvc
