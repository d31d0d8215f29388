// The applications of a Linux machine: desktop entries and .app bundles. docs/applications.md tells what counts.
#pragma once

#include "linux/applications/ApplicationIndex.h"
#include "platform/Applications.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace linux {

// Lives on one thread. A change on the disk shows within ApplicationIndex::kFolderInterval; one written in place into
// an existing file within kFileInterval, or with the next installedApplications().
class LinuxApplications final : public platform::ApplicationServices {
public:
    explicit LinuxApplications(ApplicationEnvironment environment = ApplicationEnvironment::current(),
                               ApplicationIndex::Clock clock = std::chrono::steady_clock::now);
    LinuxApplications(const LinuxApplications&) = delete;  // the members refer to each other

    // An application whose program is missing is not found. The identifiers "com.apple.Console" and
    // "com.apple.FontBook" also find the desktop's log viewer and font manager.
    std::optional<std::string> findApplication(const platform::ApplicationQuery& query) override;
    // Reads the item anew. kParamErr for a path that is not absolute; kPermissionErr and kIOErr when the item or its
    // description cannot be read. Folders, documents and malformed descriptions have no flags.
    platform::OSStatus itemInformation(std::string_view path, platform::ItemInformation& information) override;
    // A desktop file outside the folders of applications has its file name without ".desktop" as identifier.
    std::optional<std::string> bundleIdentifier(std::string_view path) override;
    std::string displayName(std::string_view path) override;  // safe to show
    std::vector<platform::ApplicationFacts> allApplications() override;
    platform::OSStatus openApplication(std::string_view path) override;

    // What a chooser offers: the native applications that the current desktop shows, by name.
    std::vector<ApplicationRecord> installedApplications();
    // The application that a file stands for, installed or not; nothing when it stands for none.
    std::optional<ApplicationRecord> applicationAtPath(std::string_view path);
    // The application that runs as this executable (an absolute path, as /proc/PID/exe gives it): of several the one
    // that menus show and that needs the fewest arguments. Nothing for shells, interpreters and the like.
    std::optional<ApplicationRecord> applicationForProgram(std::string_view executable);
    // The installed application whose windows are of this class (WM_CLASS), whatever the case: one that says so, else
    // one of that identifier.
    std::optional<ApplicationRecord> applicationForWindowClass(std::string_view windowClass);

private:
    void refresh();
    void forgetPrograms();
    const ApplicationRecord* firstInstalled(const ApplicationIndex::Candidates& candidates);
    const ApplicationRecord* knownOrStandIn(const std::string& identifier);
    const std::string& program(const std::string& name);
    bool isInstalled(const ApplicationRecord& record);
    bool isNative(const ApplicationRecord& record);
    const ApplicationRecord* recordAtPath(std::string_view path);
    void indexPrograms();

    const ApplicationEnvironment environment_;
    ApplicationIndex index_;
    std::optional<ApplicationRecord> outside_;               // what was last asked for that is in none of the folders
    std::unordered_map<std::string, std::string> programs_;  // where they are, by what commands call them
    std::unordered_map<std::string, const ApplicationRecord*> byProgram_;  // by resolved path
    bool isProgramIndexFresh_ = false;
};

}  // namespace linux
