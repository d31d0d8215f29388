// The schedule of update checks on top of the platform. TWVC.h is the same for foreign callers.
#pragma once

#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdateSchedule.h"
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdateServices.h"
#include "platform/AliasClass.h"

#include <optional>
#include <string>
#include <string_view>

namespace twvc {

// Of the whole process, for its one thread that checks.
extern std::string gBundleName;          // the tag of log lines; empty until the first module was looked at
extern bool gLogStuff;                   // verbose; off at first
extern std::uint32_t sBCDSystemVersion;  // kept by systemVersion(); 0: not known yet

// Into the runtime's log, else the system's. The line's end belongs to the format.
void writeLog(const UpdateServices& services, const std::string& line);
template <typename... Arguments>
void log(const UpdateServices& services, std::string_view format, const Arguments&... arguments) {
    writeLog(services, platform::formatted(format, {platform::FormatArgument(arguments)...}));
}

// The preference domain of a module's schedule, "PlinthModuleID" or the bundle's identifier; empty without both.
std::string moduleIdentifier(const platform::Bundle& bundle);
// The bundle's name, else its executable's, as stored: a string, unless the bundle is broken.
platform::PropertyList moduleName(const platform::Bundle& bundle);

// Launches the updater (runUpdater) when a check is due, and records it. kParamErr without a bundle; else kNoErr or the
// launch's result.
platform::OSStatus checkForUpdate(const UpdateServices& services, const platform::Bundle* bundle,
                                  bool isCheckingFromPlinth, platform::FSRef* outLaunchedUpdater);
// What checkForUpdate would decide on; changes nothing but the caches.
ScheduleState scheduleState(const UpdateServices& services, std::string_view identifier, std::string_view moduleVersion,
                            bool isCheckingFromPlinth);

// In decimal nibbles, 10.4.11 as 0x100411; 0 when the system does not say. Kept for the life of the process.
std::uint32_t systemVersion(const UpdateServices& services);
// When the user's session began; nothing where no process is the login window.
std::optional<platform::Date> loginWindowLaunchDate(const UpdateServices& services);
// Records now and the system's version. Not synchronised: the launch of an updater, or the host, writes the values to
// the disk.
void setVersionDatePreferences(const UpdateServices& services, std::string_view identifier);
// In the user's language and time zone. Nothing for what is no date, and when there is no text for it.
std::optional<std::string> stringFromDate(const UpdateServices& services, const platform::PropertyList& date,
                                          platform::DateStyle dateStyle, platform::DateStyle timeStyle);

}  // namespace twvc
