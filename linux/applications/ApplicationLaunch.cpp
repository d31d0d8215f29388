#include "linux/applications/ApplicationLaunch.h"

#include "linux/applications/DesktopEntry.h"
#include "linux/applications/DesktopEntryCommand.h"
#include "linux/applications/LinuxApplications.h"
#include "linux/files/SmallFile.h"
#include "linux/processes/DetachedProcess.h"

#include <fcntl.h>

namespace linux {

using namespace platform;

namespace {

std::optional<StartDescription> startOfDesktopFile(const ApplicationRecord& record,
                                                   const ApplicationEnvironment& environment) {
    SmallFileReader reader;
    std::optional<std::string_view> bytes = reader.read(AT_FDCWD, record.path.c_str());
    std::optional<DesktopEntry> entry = bytes ? readDesktopEntry(*bytes, environment.locale) : std::nullopt;
    if (!entry) return {};
    StartDescription start{{}, record.name, entry->icon, entry->workingFolder, entry->isTerminal};
    if (entry->exec.empty() && record.isDBusActivatable)
        start.words = {"gapplication", "launch", record.identifier};
    else
        start.words = expandCommand(splitCommand(entry->exec), {{}, entry->icon, entry->name, record.path});
    return start.words.empty() ? std::nullopt : std::optional(std::move(start));
}

std::optional<StartDescription> startOf(const ApplicationRecord& record, const ApplicationEnvironment& environment) {
    if (!record.isBundle) return startOfDesktopFile(record, environment);
    return StartDescription{{record.program}, record.name, record.iconName, {}, false};
}

}  // namespace

std::optional<StartDescription> startDescription(std::string_view path, const ApplicationEnvironment& environment) {
    if (!path.starts_with('/') || path.find('\0') != path.npos) return {};
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    const std::string plain(path);
    int error = 0;
    const std::optional<ApplicationRecord> record = readApplicationRecord(plain, environment, error);
    ProgramLookup programs(environment);
    if (!record)
        return programs.isExecutable(plain)
                   ? std::optional(StartDescription{{plain}, displayedLastComponent(plain), {}, {}, false})
                   : std::nullopt;
    if (!record->isApplication || (record->isBundle && !programs.isExecutable(record->program))) return {};
    return startOf(*record, environment);
}

OSStatus LinuxApplications::openApplication(std::string_view path) {
    const std::optional<ApplicationRecord> record = recordAtPath(path);
    if (!record || !isNative(*record)) return kFileNotFound;
    const std::optional<StartDescription> start = startOf(*record, environment_);
    return start ? startDetached(start->words) : kFileNotFound;
}

}  // namespace linux
