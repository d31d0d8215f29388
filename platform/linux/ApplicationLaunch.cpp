// Starting an application by its file.
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/DesktopEntryCommand.h"
#include "platform/linux/DetachedProcess.h"
#include "platform/linux/LinuxApplications.h"
#include "platform/linux/SmallFile.h"

#include <fcntl.h>

namespace platform::posix {
namespace {

std::vector<std::string> commandOfDesktopFile(const ApplicationRecord& record,
                                              const ApplicationEnvironment& environment) {
    SmallFileReader reader;
    std::optional<std::string_view> bytes = reader.read(AT_FDCWD, record.path.c_str());
    std::optional<DesktopEntry> entry = bytes ? readDesktopEntry(*bytes, environment.locale) : std::nullopt;
    if (!entry) return {};
    if (entry->exec.empty() && record.isDBusActivatable) return {"gapplication", "launch", record.identifier};
    return expandCommand(splitCommand(entry->exec), {{}, entry->icon, entry->name, record.path});
}

}  // namespace

OSStatus LinuxApplications::openApplication(std::string_view path) {
    const std::optional<ApplicationRecord> record = recordAtPath(path);
    if (!record || !isNative(*record)) return kFileNotFound;
    return startDetached(record->isBundle ? std::vector{record->program} : commandOfDesktopFile(*record, environment_));
}

}  // namespace platform::posix
